#include "products/listed/ListReaders.h"
#include "products/listed/SceneList.h"
#include "reading/base/CsvRecords.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace scenedetect {
namespace {

using Fields = std::vector<std::string>;

constexpr const char* kWanted = "a header with a column \"Start Frame\", \"Start Time (seconds)\" or \"Start "
                                "Timecode\", or a list of times, is wanted";

// The columns of a point, in the order in which they count: a frame, seconds, a time as it is written.
struct PointColumns {
    std::array<const char*, 3> names; // lower case
    std::int64_t firstFrame;          // what the column of frames calls the file's first
};

// Others' lists, and this program's own, count from 1; their end frame is the last of the scene, which is the
// one after it counted from 0. What is printed counts from 0.
constexpr PointColumns kStart{{"start frame", "start time (seconds)", "start timecode"}, 1};
constexpr PointColumns kEnd{{"end frame", "end time (seconds)", "end timecode"}, 0};
constexpr PointColumns kPrinted{{"frame", "seconds", "timecode"}, 0};

std::string Plain(std::string text) {
    const auto isSpace = [](char letter) { return letter == ' ' || letter == '\t'; };
    text.erase(text.begin(), std::ranges::find_if_not(text, isSpace));
    while (!text.empty() && isSpace(text.back()))
        text.pop_back();
    return text;
}

std::string Lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter;
    });
    return text;
}

class Table {
  public:
    explicit Table(const Fields& header) {
        std::ranges::transform(header, std::back_inserter(m_names), Lower);
    }

    [[nodiscard]] bool Has(const PointColumns& columns) const {
        return std::ranges::any_of(columns.names,
                                   [this](const char* name) { return Find(name) < m_names.size(); });
    }

    /// The field in this column, empty where there is none.
    [[nodiscard]] std::string Field(const Fields& fields, std::string_view name) const {
        const std::size_t index = Find(name);
        return index < m_names.size() && index < fields.size() ? fields[index] : "";
    }

    [[nodiscard]] std::optional<ListedPoint> Point(const Fields& fields, const PointColumns& columns) const {
        const auto& [frameName, secondsName, textName] = columns.names;
        const std::string frame = Field(fields, frameName);
        const std::string seconds = Field(fields, secondsName);
        const std::string text = Field(fields, textName);
        ListedPoint point;
        if (!seconds.empty()) {
            point.point = ParseTimePoint(seconds + 's');
            point.clock = std::get<ClockPoint>(point.point.point);
        }
        if (frame.empty())
            return !seconds.empty() ? std::optional(point)
                   : !text.empty()  ? std::optional(ListedPoint{ParseTimePoint(text), {}})
                                    : std::nullopt;
        point.point = ParseTimePoint(frame);
        auto* const number = std::get_if<FramePoint>(&point.point.point);
        if (!number || number->frame < columns.firstFrame)
            throw HostError("\"" + frame + "\" is no frame number; the first is " +
                            std::to_string(columns.firstFrame));
        number->frame -= columns.firstFrame;
        return point;
    }

  private:
    [[nodiscard]] std::size_t Find(std::string_view name) const {
        return static_cast<std::size_t>(std::ranges::find(m_names, name) - m_names.begin());
    }

    std::vector<std::string> m_names;
};

class Reader {
  public:
    /// The scene of a record; nothing for a header.
    std::optional<ListedScene> Take(const Fields& fields) {
        if (!m_hasBegun && Lower(fields[0]).starts_with("timecode list:"))
            return std::nullopt;
        if (!std::exchange(m_hasBegun, true) && BeginTable(fields))
            return std::nullopt;
        ListedScene scene;
        scene.method = kListedMethod;
        if (!m_table) {
            if (fields.size() > 1)
                throw HostError(kWanted);
            scene.start.point = ParseTimePoint(fields[0]);
            return scene;
        }
        const auto start = m_table->Point(fields, m_start);
        if (!start)
            throw HostError("no start stands there");
        scene.start = *start;
        scene.end = m_table->Point(fields, kEnd);
        if (const std::string method = m_table->Field(fields, "method"); !method.empty())
            scene.method = method;
        scene.name = m_table->Field(fields, "name");
        return scene;
    }

  private:
    bool BeginTable(const Fields& fields) {
        const Table table(fields);
        m_start = table.Has(kStart) ? kStart : kPrinted;
        if (table.Has(m_start))
            m_table = table;
        else if (!TimePointFault(fields[0]).empty())
            throw HostError(kWanted);
        return m_table.has_value();
    }

    bool m_hasBegun = false;
    std::optional<Table> m_table; // none: a list of bare points
    PointColumns m_start = kStart;
};

} // namespace

void ReadCsvList(std::string_view text, SceneList& list) {
    // Whoever writes a list by hand may leave out the last line's end.
    const std::string whole = std::string(text) + (text.ends_with('\n') ? "" : "\n");
    CsvRecords records(whole);
    Reader reader;
    Fields fields;
    try {
        while (records.Next(fields)) {
            std::ranges::transform(fields, fields.begin(), Plain);
            if (std::ranges::all_of(fields, &std::string::empty))
                continue;
            if (auto scene = reader.Take(fields)) {
                scene->where = "line " + std::to_string(records.Line());
                list.scenes.push_back(std::move(*scene));
            }
        }
    } catch (const HostError& error) {
        FailInList(list.path, "line " + std::to_string(std::max<std::int64_t>(records.Line(), 1)),
                   error.what());
    }
}

} // namespace scenedetect
