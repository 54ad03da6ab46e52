#include "platform/WideFormat.h"
#include "tests/Testing.h"

namespace {

constexpr std::size_t kCapacity = 16;

struct Formatted {
    int result;
    std::wstring text;
};

// Formats into 16 places, with guards after them.
Formatted Format(const wchar_t* format, ...) {
    wchar_t buffer[kCapacity + 2];
    std::fill(std::begin(buffer), std::end(buffer), L'#');
    std::va_list arguments;
    va_start(arguments, format);
    const int result = FormatWide(buffer, kCapacity, format, arguments);
    va_end(arguments);
    EXPECT_EQ(std::wstring(buffer + kCapacity, 2), L"##") << "written past the buffer";
    return {result, buffer};
}

void Expect(const Formatted& formatted, const std::wstring& text) {
    EXPECT_EQ(formatted.text, text);
    EXPECT_EQ(formatted.result, static_cast<int>(text.size()));
}

} // namespace

TEST(WideFormat, TextArgumentsAreWideUnlessMarkedNarrow) {
    Expect(Format(L"%s-%ls", L"\u00e9", L"\u65e5"), L"\u00e9-\u65e5");
    Expect(Format(L"%S-%hs", "narrow", "too"), L"narrow-too");
    Expect(Format(L"%c%C%hc", L'\u00e9', 'b', 'c'), L"\u00e9bc");
    Expect(Format(L"[%-4s|%4.2s]", L"ab", L"xyz"), L"[ab  |  xy]");
    Expect(Format(L"%*.*s", 5, 3, L"xyzzy"), L"  xyz");
    Expect(Format(L"100%%s %s", L"is text"), L"100%s is text");
}

TEST(WideFormat, NumbersPassAsTheyAre) {
    Expect(Format(L"%4.1f %lld", 2.5, 1ll << 33), L" 2.5 8589934592");
    Expect(Format(L"%02d:%02x", 7, 255), L"07:ff");
}

TEST(WideFormat, WhatDoesNotFitIsCut) {
    Expect(Format(L"%s", L"fifteen letters"), L"fifteen letters");
    const Formatted cut = Format(L"%s", L"sixteen letters!");
    EXPECT_LT(cut.result, 0);
    EXPECT_EQ(cut.text, L"sixteen letters");
    const Formatted longFormat = Format((std::wstring(2000, L'x') + L"%s").c_str(), L"y");
    EXPECT_LT(longFormat.result, 0);
    EXPECT_EQ(longFormat.text, std::wstring(kCapacity - 1, L'x'));
}

TEST(WideFormat, WhatCannotBeFormattedIsEmpty) {
    // Some systems have a character for this byte in the "C" locale, in which tests run, and some have not.
    Expect(Format(L"before %hs", "\xFF"), std::btowc(0xFF) == WEOF ? L"" : L"before \u00ff");
    Expect(Format(L""), L"");
}
