#include "platform/Text.h"
#include "tests/Testing.h"

// U+00E9, U+20AC and U+1F3AC need 2, 3 and 4 bytes of UTF-8 and 1, 1 and 2 units of UTF-16.
TEST(Text, EveryLengthOfCharacter) {
    EXPECT_EQ(Utf8FromWide(L"a\u00e9\u20ac\U0001F3AC"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC");
    EXPECT_EQ(WideFromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC"), L"a\u00e9\u20ac\U0001F3AC");
    EXPECT_EQ(Utf8FromUtf16(u"\u20ac\xD83C\xDFAC"), "\xE2\x82\xAC\xF0\x9F\x8E\xAC");
}

TEST(Text, WhatIsNoCharacterIsReplaced) {
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(Utf8FromUtf16(u"a\xD83Cz"), "a" + replaced + "z") << "high surrogate alone";
    EXPECT_EQ(Utf8FromUtf16(u"\xDFAC\xD83C"), replaced + replaced) << "a pair the wrong way round";
    if (WCHAR_MAX > 0xFFFF) {
        EXPECT_EQ(Utf8FromWide(std::wstring{static_cast<wchar_t>(0x110000), L'z'}), replaced + "z");
    }
    EXPECT_EQ(Utf8FromWide(std::wstring{static_cast<wchar_t>(0xD83C)}), replaced);

    struct Case {
        const char* name;
        std::string_view bytes;
        const wchar_t* expected;
    };
    const Case cases[] = {
        {"following byte without a lead", "\x80z", L"\uFFFDz"},
        {"cut at the end", "\xE2\x82", L"\uFFFD"},
        {"cut by another character", "\xE2\x82z", L"\uFFFDz"},
        {"cut by another lead", "\xE2\xC3\xA9", L"\uFFFD\u00e9"},
        {"overlong slash", "\xC0\xAF", L"\uFFFD"},
        {"surrogate in UTF-8", "\xED\xA0\x80", L"\uFFFD"},
        {"beyond U+10FFFF", "\xF4\x90\x80\x80", L"\uFFFD"},
        {"byte that never occurs", "\xFFz", L"\uFFFDz"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(WideFromUtf8(c.bytes), c.expected) << c.name;
}

TEST(Text, BoundedConversionKeepsCharactersWhole) {
    std::array<char16_t, 4> target;
    target.fill(u'#');
    EXPECT_EQ(Utf16FromWide(L"ab\U0001F3AC", target), 2u) << "the pair does not fit beside the terminator";
    EXPECT_EQ(target, (std::array<char16_t, 4>{u'a', u'b', 0, u'#'}));
    EXPECT_EQ(Utf16FromWide(L"a\U0001F3AC", target), 3u);
    EXPECT_EQ(target, (std::array<char16_t, 4>{u'a', 0xD83C, 0xDFAC, 0}));
}
