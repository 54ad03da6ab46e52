// The tape log as text: CSV (RFC 4180) or JSON (docs/tape-log.md has the schema).
#pragma once

#include "products/tape/TapeRow.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace scenedetect {

enum class TapeLogFormat { Csv, Json };

/// By its suffix, in either case; CSV for "-", nothing for another than ".csv" and ".json".
[[nodiscard]] std::optional<TapeLogFormat> TapeLogFormatOf(std::string_view path);

/// Gives pieces of text, each whole rows in UTF-8. Nothing is given before the first row or End.
class TapeLogText {
  public:
    using Sink = std::function<void(std::string_view)>;

    /// `source` is the input's name.
    TapeLogText(TapeLogFormat format, std::string source, Sink sink);

    void Add(const TapeRow& row);
    /// Once, at the end: until then JSON is not whole.
    void End();

  private:
    void Begin();

    const TapeLogFormat m_format;
    const std::string m_source;
    const Sink m_sink;
    std::string m_text; // of the piece in work
    bool m_hasBegun = false;
    bool m_hasRows = false;
};

} // namespace scenedetect
