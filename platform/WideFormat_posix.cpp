#include "platform/WideFormat.h"

#include <algorithm>
#include <cwchar>
#include <span>

namespace scenedetect {
namespace {

constexpr wchar_t kModifiers[] = L"-+ #0123456789.*'";
constexpr wchar_t kLengths[] = L"hlLqjzt";

bool IsOneOf(wchar_t character, const wchar_t* set) {
    return character != 0 && std::wcschr(set, character) != nullptr;
}

// A translated format in a buffer of fixed size.
class Translation {
  public:
    explicit Translation(std::span<wchar_t> buffer) : m_buffer(buffer) { m_buffer[0] = 0; }

    // Plain text is cut where the buffer ends; false when it was.
    bool AddText(const wchar_t* begin, const wchar_t* end) {
        const auto length = static_cast<std::size_t>(end - begin);
        const std::size_t fitting = std::min(length, m_buffer.size() - 1 - m_length);
        std::wmemcpy(&m_buffer[m_length], begin, fitting);
        m_length += fitting;
        m_buffer[m_length] = 0;
        return fitting == length;
    }

    // A placeholder is kept whole or, with false, not at all.
    bool AddPlaceholder(const wchar_t* begin, const wchar_t* end, const wchar_t* conversion) {
        const std::size_t before = m_length;
        if (AddText(begin, end) && AddText(conversion, conversion + std::wcslen(conversion)))
            return true;
        m_buffer[m_length = before] = 0;
        return false;
    }

  private:
    std::span<wchar_t> m_buffer;
    std::size_t m_length = 0;
};

// What the system's own printf calls a text or character argument that the format means by `conversion`;
// empty for every other conversion.
const wchar_t* NativeConversion(const wchar_t* lengths, const wchar_t* conversion) {
    const bool isLong = lengths != conversion && *lengths == L'l';
    const bool isShort = lengths != conversion && *lengths == L'h';
    switch (*conversion) {
    case L's':
        return isShort ? L"s" : L"ls";
    case L'S':
        return isLong ? L"ls" : L"s";
    case L'c':
        return isShort ? L"c" : L"lc";
    case L'C':
        return isLong ? L"lc" : L"c";
    default:
        return L"";
    }
}

// False when the format is too long to be translated whole.
bool Translate(const wchar_t* format, Translation& translation) {
    while (*format) {
        const wchar_t* percent = format;
        while (*percent && *percent != L'%')
            ++percent;
        if (!translation.AddText(format, percent))
            return false;
        if (!*percent)
            break;
        const wchar_t* lengths = percent + 1;
        while (IsOneOf(*lengths, kModifiers))
            ++lengths;
        const wchar_t* conversion = lengths;
        while (IsOneOf(*conversion, kLengths))
            ++conversion;
        format = *conversion ? conversion + 1 : conversion;
        const wchar_t* native = NativeConversion(lengths, conversion);
        if (!translation.AddPlaceholder(percent, *native ? lengths : format, native))
            return false;
    }
    return true;
}

} // namespace

int FormatWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
               std::va_list arguments) noexcept {
    wchar_t native[1024];
    Translation translation(native);
    const bool whole = Translate(format, translation);

    // The system reports a text that is too long and one that cannot be formatted alike, and terminates
    // neither; only the first has reached the last place but one.
    buffer[0] = 0;
    wchar_t& last = buffer[capacity - 2];
    last = 0;
    const int length = std::vswprintf(buffer, capacity, native, arguments);
    buffer[capacity - 1] = 0;
    if (length >= 0)
        return whole ? length : -1;
    if (last != 0)
        return -1;
    buffer[0] = 0;
    return 0;
}

} // namespace scenedetect
