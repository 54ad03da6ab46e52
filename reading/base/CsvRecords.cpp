#include "reading/base/CsvRecords.h"

#include "reading/base/HostError.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

CsvRecords::CsvRecords(std::string_view text) : m_rest(text) {
    if (m_rest.starts_with(kByteOrderMark))
        m_rest.remove_prefix(kByteOrderMark.size());
}

bool CsvRecords::Next(std::vector<std::string>& fields) {
    if (m_rest.empty())
        return false;
    m_line = m_nextLine;
    for (std::size_t count = 1;; ++count) {
        fields.resize(std::max(fields.size(), count));
        std::string& field = fields[count - 1];
        field.clear();
        if (m_rest.starts_with('"'))
            ReadQuoted(field);
        else
            ReadPlain(field);
        if (m_rest.starts_with("\r\n"))
            m_rest.remove_prefix(1);
        if (m_rest.empty())
            throw HostError("the line has no end: the file is cut short");
        const char after = m_rest.front();
        m_rest.remove_prefix(1);
        if (after == ',')
            continue;
        if (after != '\n')
            throw HostError("a quote or a line end in the wrong place: the file is damaged");
        ++m_nextLine;
        fields.resize(count);
        return true;
    }
}

void CsvRecords::ReadPlain(std::string& field) {
    const std::size_t end = std::min(m_rest.find_first_of(",\"\r\n"), m_rest.size());
    field = m_rest.substr(0, end);
    m_rest.remove_prefix(end);
}

void CsvRecords::ReadQuoted(std::string& field) {
    m_rest.remove_prefix(1);
    for (;;) {
        const std::size_t end = m_rest.find('"');
        if (end == std::string_view::npos)
            throw HostError("a quote is not closed: the file is damaged or cut short");
        field += m_rest.substr(0, end);
        m_nextLine += std::ranges::count(m_rest.substr(0, end), '\n');
        m_rest.remove_prefix(end + 1);
        if (!m_rest.starts_with('"'))
            return;
        // Two stand for one.
        field += '"';
        m_rest.remove_prefix(1);
    }
}

} // namespace scenedetect
