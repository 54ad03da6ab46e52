#include "products/tape/TapeLogText.h"

#include "reading/base/CsvField.h"
#include "reading/base/ListText.h"
#include "reading/dv/PackText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <utility>

namespace scenedetect {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

std::string DetailOf(const TapeRow& row) {
    if (!row.before.empty())
        return "from " + row.before;
    std::string detail;
    const auto append = [&detail](std::int64_t count, const std::string& what) {
        if (count != 0)
            AppendToList(detail, ", ", what + std::to_string(count));
    };
    append(row.blocks.fromPrevious, "from the previous frame ");
    append(row.blocks.fromNext, "from the next frame ");
    append(row.blocks.unspecified, "unspecified ");
    append(row.blocks.errors, "errors ");
    append(row.blocks.reserved, "reserved values ");
    return detail;
}

// Rounded to milliseconds, so that the shortest text that gives the number has no more digits than these.
double SecondsOf(const TapeRow& row, DvSystem system) {
    constexpr double kTicksPerMillisecond = kDvTicksPerSecond / 1000.0;
    return std::round(static_cast<double>(row.frames * DvFrameTicks(system)) / kTicksPerMillisecond) / 1000;
}

template <typename Value>
Json TextOrNull(const std::optional<Value>& value) {
    return value ? Json(TextOf(*value)) : Json();
}

// The columns of both forms, in their order; null where there is nothing to tell.
Json Members(const TapeRow& row) {
    const TapeEventKind& kind = KindOf(row.event);
    const std::string detail = DetailOf(row);
    return {{"frame", row.frame},
            {"byte_offset", row.byteOffset >= 0 ? Json(row.byteOffset) : Json()},
            {"timecode", TextOrNull(row.packs.timecode)},
            {"recording_date", TextOrNull(row.packs.date)},
            {"recording_time", TextOrNull(row.packs.time)},
            {"aspect", TextOrNull(row.packs.aspect)},
            {"lines", row.system ? Json(DvLines(*row.system)) : Json()},
            {"event", kind.name},
            {"size", row.size ? Json(*row.size) : Json()},
            {"unit", row.size ? Json(kind.unit) : Json()},
            {"frames", row.frames},
            {"last_frame", row.lastFrame},
            {"seconds", row.system ? Json(SecondsOf(row, *row.system)) : Json()},
            {"detail", detail.empty() ? Json() : Json(detail)},
            {"audio", TextOrNull(row.packs.audio)}};
}

std::string FieldOf(const Json& value) {
    if (value.is_null())
        return "";
    if (value.is_number_float()) {
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%.3f", value.get<double>());
        return text.data();
    }
    if (!value.is_string())
        return value.dump();
    return CsvField(value.get_ref<const std::string&>());
}

} // namespace

std::optional<TapeLogFormat> TapeLogFormatOf(std::string_view path) {
    const auto hasSuffix = [path](std::string_view suffix) {
        return path.size() > suffix.size() &&
               std::ranges::equal(path.substr(path.size() - suffix.size()), suffix, [](char a, char b) {
                   return std::tolower(static_cast<unsigned char>(a)) == b;
               });
    };
    if (path == "-" || hasSuffix(".csv"))
        return TapeLogFormat::Csv;
    return hasSuffix(".json") ? std::optional(TapeLogFormat::Json) : std::nullopt;
}

TapeLogText::TapeLogText(TapeLogFormat format, std::string source, Sink sink)
    : m_format(format), m_source(std::move(source)), m_sink(std::move(sink)) {}

void TapeLogText::Add(const TapeRow& row) {
    Begin();
    const Json members = Members(row);
    if (m_format == TapeLogFormat::Csv) {
        std::string line;
        for (const Json& member : members)
            AppendToList(line, ",", FieldOf(member));
        m_text += line + "\r\n";
    } else {
        m_text += (m_hasRows ? ",\n" : "\n") + members.dump();
    }
    m_hasRows = true;
    m_sink(std::exchange(m_text, {}));
}

void TapeLogText::End() {
    Begin();
    if (m_format == TapeLogFormat::Json)
        m_text += m_hasRows ? "\n]}\n" : "]}\n";
    if (!m_text.empty())
        m_sink(std::exchange(m_text, {}));
}

void TapeLogText::Begin() {
    if (std::exchange(m_hasBegun, true))
        return;
    if (m_format == TapeLogFormat::Json) {
        const Json source = m_source;
        m_text = "{\"tape_log\": " + std::to_string(kVersion) +
                 ", \"source\": " + source.dump(-1, ' ', false, Json::error_handler_t::replace) +
                 ", \"rows\": [";
        return;
    }
    const Json members = Members({});
    for (const auto& [name, value] : members.items())
        AppendToList(m_text, ",", name);
    m_text += "\r\n";
}

} // namespace scenedetect
