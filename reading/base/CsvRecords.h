// The records of a CSV text, after RFC 4180.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace scenedetect {

/// Reads from front to back. Lines end with LF or CR LF; a byte order mark is stepped over.
class CsvRecords {
  public:
    /// `text` must outlive the object.
    explicit CsvRecords(std::string_view text);

    /// Fills `fields` with the next record; false at the end. HostError, a text that goes beyond the line's
    /// number, for quotes in the wrong place and for a last line without an end.
    [[nodiscard]] bool Next(std::vector<std::string>& fields);
    /// Number of the line, from 1, at which the record begins that was read last.
    [[nodiscard]] std::int64_t Line() const { return m_line; }

  private:
    void ReadQuoted(std::string& field);
    void ReadPlain(std::string& field);

    std::string_view m_rest;
    std::int64_t m_line = 0;
    std::int64_t m_nextLine = 1;
};

} // namespace scenedetect
