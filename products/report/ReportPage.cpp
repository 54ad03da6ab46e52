#include "products/report/ReportPage.h"

#include "platform/Text.h"
#include "products/report/ReportStyle.h"

extern "C" {
#include <libavutil/base64.h>
}

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <utility>

namespace scenedetect {
namespace {

// Units of the plot's height: a panel for differences above one for levels.
constexpr int kPanel = 256;
constexpr int kGap = 16;
constexpr int kPlotHeight = 2 * kPanel + kGap;
constexpr int kTicks = 9;

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char each : Utf8FromWide(WideFromUtf8(text)))
        switch (each) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += each;
        }
    return escaped;
}

std::string Element(const std::string& name, const std::string& attributes, const std::string& content) {
    return '<' + name + (attributes.empty() ? "" : ' ' + attributes) + '>' + content + "</" + name + ">\n";
}

std::string Counted(std::size_t count, const char* what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// The plot has a frame of the nominal rate each unit, so that it is as long as the run also at a variable
// rate.
std::int64_t EndFrame(const SceneTable& table) {
    return table.scenes.empty() ? 0 : EditFrame(table.scenes.back().end, table.scale);
}
std::int64_t FirstFrame(const SceneTable& table) {
    return table.scenes.empty() ? 0 : EditFrame(table.scenes.front().start, table.scale);
}

std::string LengthText(const SceneSpan& scene, const TimeScale& scale) {
    return SecondsText(scene.end.time - scene.start.time, scale) + " s";
}

// The plot's lines; x is the frame of the nominal rate since the first, so that the script can zoom by
// frames.
class Plot {
  public:
    explicit Plot(const ReportContent& content)
        : m_content(content),
          m_first(FirstFrame(content.table)),
          m_frames(std::max<std::int64_t>(1, EndFrame(content.table) - m_first)) {
        for (const TimelinePoint& point : content.timeline.Points())
            m_mostDifference = std::max(m_mostDifference, point.mostDifference);
    }

    /// At the upper end of the panel: most material stays far below the 255 that a difference can be.
    [[nodiscard]] int MostDifference() const { return m_mostDifference; }

    [[nodiscard]] std::string Svg() const {
        const std::string size = "0 0 " + std::to_string(m_frames) + ' ' + std::to_string(kPlotHeight);
        char rate[32];
        std::snprintf(rate, sizeof rate, "%.9g", m_content.table.scale.rate.Value());
        return Element("svg",
                       "viewBox=\"" + size + "\" preserveAspectRatio=\"none\" role=\"img\" data-frames=\"" +
                           std::to_string(m_frames) + "\" data-first=\"" + std::to_string(m_first) +
                           "\" data-rate=\"" + rate + "\" data-lines=\"" + std::to_string(kMostSceneLines) +
                           '"' + (HasConstantRate(m_content.table) ? "" : " data-variable=\"\"") +
                           (m_content.table.scenes.size() > kMostSceneLines ? " class=\"dense\"" : ""),
                       Element("title", "", "Difference and level of each frame") + Lines());
    }

    [[nodiscard]] std::string Ticks() const {
        std::string ticks;
        for (int i = 0; i < kTicks; ++i) {
            const auto frame = m_first + m_frames * i / (kTicks - 1);
            const auto seconds =
                static_cast<std::int64_t>(static_cast<double>(frame) / m_content.table.scale.rate.Value());
            char text[120];
            std::snprintf(text, sizeof text, "<span style=\"left:%g%%\">%lld:%02lld:%02lld</span>",
                          100.0 * i / (kTicks - 1), static_cast<long long>(seconds / 3600),
                          static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
            ticks += text;
        }
        return Element("div", "class=\"ticks\"", ticks);
    }

  private:
    [[nodiscard]] std::int64_t X(std::int64_t frame) const { return frame - m_first; }
    [[nodiscard]] int DifferenceY(int value) const {
        return kPanel - std::clamp(value, 0, m_mostDifference) * (kPanel - 1) / m_mostDifference;
    }
    [[nodiscard]] static int LevelY(int value) { return kPlotHeight - std::clamp(value, 0, kPanel - 1); }

    [[nodiscard]] std::string Across(const char* kind, int y) const {
        return "<line class=\"" + std::string(kind) + "\" x1=\"0\" x2=\"" + std::to_string(m_frames) +
               "\" y1=\"" + std::to_string(y) + "\" y2=\"" + std::to_string(y) + "\"/>\n";
    }

    [[nodiscard]] std::string Lines() const {
        std::string lines;
        std::string marks;
        for (const SceneSpan& scene : m_content.table.scenes) {
            const std::string x =
                'M' + std::to_string(X(EditFrame(scene.start, m_content.table.scale))) + ' ';
            lines += x + "0V" + std::to_string(kPlotHeight);
            marks += x + std::to_string(kPanel + 2) + 'v' + std::to_string(kGap - 4);
        }
        std::string svg = Across("frame", kPanel + kGap / 2) + Path("cut far", lines) + Path("cut", marks);
        if (m_content.timeline.Points().empty())
            return svg;
        svg += Across("threshold", DifferenceY(m_content.cutThreshold)) +
               Across("threshold", LevelY(m_content.darkLevel));
        std::string difference;
        std::string lowest;
        std::vector<std::string> highest; // from the right to the left
        std::string dark;
        for (const TimelinePoint& point : m_content.timeline.Points()) {
            const std::string x = std::to_string(X(point.frame)) + ' ';
            difference +=
                (difference.empty() ? 'M' : 'L') + x + std::to_string(DifferenceY(point.mostDifference));
            lowest += (lowest.empty() ? 'M' : 'L') + x + std::to_string(LevelY(point.leastLevel));
            highest.push_back('L' + x + std::to_string(LevelY(point.mostLevel)));
            if (point.isDark)
                dark += 'M' + x + std::to_string(kPlotHeight) + 'v' + std::to_string(-kPanel / 8);
        }
        // The band between the darkest and the brightest frame of each point.
        const std::string back = std::accumulate(highest.rbegin(), highest.rend(), std::string());
        return svg + Path("band", lowest + back + 'Z') + Path("level", lowest) +
               Path("difference", difference) + Path("dark", dark);
    }

    [[nodiscard]] static std::string Path(const char* kind, const std::string& steps) {
        return "<path class=\"" + std::string(kind) + "\" d=\"" + steps + "\"/>\n";
    }

    const ReportContent& m_content;
    const std::int64_t m_first;
    const std::int64_t m_frames;
    int m_mostDifference = 64; // at least
};

std::string TimelineSection(const ReportContent& content) {
    const Plot plot(content);
    const auto key = [](const char* variable, const std::string& text) {
        return "<span><i style=\"border-color:var(--" + std::string(variable) + ")\"></i>" + text + "</span>";
    };
    std::string legend = key("cut", "start of a scene");
    if (!content.timeline.Points().empty())
        legend += key("difference", "difference to the frame before (0 to " +
                                        std::to_string(plot.MostDifference()) + "), dashed: cut threshold " +
                                        std::to_string(content.cutThreshold)) +
                  key("level", "level (0 to 255), dashed: dark level " + std::to_string(content.darkLevel)) +
                  key("dark", "darkest of a fade");
    return Element("h2", "", "Timeline") + Element("div", "class=\"plot\"", plot.Svg()) + plot.Ticks() +
           Element("div", "class=\"legend\"", legend) +
           Element("p", "class=\"facts screen\"",
                   "Turn the wheel to zoom, drag to move, click twice to see all. <span id=\"here\"></span>");
}

std::string PictureSource(const std::vector<std::uint8_t>& jpeg) {
    std::string text(static_cast<std::size_t>(AV_BASE64_SIZE(jpeg.size())), '\0');
    av_base64_encode(text.data(), static_cast<int>(text.size()), jpeg.data(), static_cast<int>(jpeg.size()));
    text.resize(std::char_traits<char>::length(text.c_str()));
    return "data:image/jpeg;base64," + text;
}

std::string Joined(const std::string& one, const std::string& separator, const std::string& other) {
    return one + (one.empty() || other.empty() ? "" : separator) + other;
}

// What the tape and the source's timecode say, a line each.
std::string SourceText(const SceneTable& table, const SceneSpan& scene) {
    const TapeTexts& tape = scene.tape;
    const std::string timecode = SceneTimecode(tape, scene.start, table.scale, table.startTimecode);
    std::string lines;
    for (const std::string& line : {timecode.empty() ? "" : "timecode " + timecode,
                                    Joined(tape.date, " ", tape.time), Joined(tape.aspect, ", ", tape.audio)})
        lines += line.empty() ? "" : Element("span", "", Escaped(line));
    return lines;
}

std::string SceneText(const ReportContent& content, std::size_t index) {
    const SceneSpan& scene = content.table.scenes[index];
    return Element("div", "",
                   "<b>" + std::to_string(index + 1) + "</b>" +
                       TimecodeText(scene.start.time, content.table.scale) + "<span>frame " +
                       std::to_string(scene.start.frame) + ", " + LengthText(scene, content.table.scale) +
                       "</span><span>" + Escaped(scene.method) + "</span>" +
                       SourceText(content.table, scene));
}

bool HasPicture(const ReportContent& content, std::size_t index) {
    return index < content.pictures.size() && !content.pictures[index].empty();
}

// A card a scene; where not every scene has a picture, those without go with the one before.
std::string SceneCards(const ReportContent& content, std::size_t count) {
    std::string cards;
    for (std::size_t i = 0; i < count;) {
        std::string card;
        if (HasPicture(content, i))
            card = "<img loading=\"lazy\" alt=\"First frame of scene " + std::to_string(i + 1) + "\" src=\"" +
                   PictureSource(content.pictures[i]) + "\">\n";
        std::string texts;
        do
            texts += SceneText(content, i++);
        while (i < count && !content.pictures.empty() && !HasPicture(content, i));
        cards += Element("figure", "", card + Element("figcaption", "", texts));
    }
    return cards;
}

std::string SceneSection(const ReportContent& content) {
    const std::size_t count = content.table.scenes.size();
    const std::size_t shown = std::min(count, kMostReportScenes);
    std::string section =
        Element("h2", "", "Scenes") + Element("div", "class=\"sheet\"", SceneCards(content, shown));
    if (count > shown)
        section += Element("p", "class=\"facts\"",
                           "Of " + Counted(count, "scene") + " the first " + std::to_string(shown) +
                               " are shown; other outputs have them all.");
    return section;
}

std::string SettingsSection(const ReportContent& content) {
    std::string rows;
    for (const auto& [name, value] : content.settings)
        rows += Element("tr", "", Element("th", "", Escaped(name)) + Element("td", "", Escaped(value)));
    return Element("h2", "", "Settings") + Element("table", "", rows);
}

std::string SummaryText(const SceneTable& table) {
    char rate[32];
    std::snprintf(rate, sizeof rate, "%.5g", table.scale.rate.Value());
    const SceneSpan whole{table.scenes.empty() ? FilePlace{} : table.scenes.front().start,
                          table.scenes.empty() ? FilePlace{} : table.scenes.back().end, "", 0};
    auto [width, height] = std::pair(table.width, table.height);
    if (table.quarterTurns % 2 != 0)
        std::swap(width, height);
    return (table.partial.empty() ? "" : Element("strong", "", "Partial: " + table.partial) + "; ") +
           Counted(table.scenes.size(), "scene") + " in " +
           Counted(static_cast<std::size_t>(whole.FrameCount()), "frame") + ", " +
           LengthText(whole, table.scale) + ", " + rate + " frames a second" +
           (table.width > 0 ? ", " + std::to_string(width) + " &times; " + std::to_string(height) : "");
}

} // namespace

std::string MakeReportPage(const ReportContent& content) {
    const std::string title = Escaped(content.table.name);
    return "<!DOCTYPE html>\n<html lang=\"en\">\n" +
           Element("head", "",
                   "<meta charset=\"utf-8\">\n<meta name=\"viewport\" content=\"width=device-width\">\n" +
                       Element("title", "", title + ": scenes") + Element("style", "", kReportStyle)) +
           Element("body", "",
                   Element("h1", "", title) + Element("p", "class=\"facts\"", SummaryText(content.table)) +
                       TimelineSection(content) + SceneSection(content) + SettingsSection(content) +
                       Element("script", "", kReportScript)) +
           "</html>\n";
}

} // namespace scenedetect
