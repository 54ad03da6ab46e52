#include "products/files/NamePattern.h"

#include "tests/MessageOf.h"
#include "tests/Testing.h"

namespace {

const NameFields kFull{"Holiday 1", 7,      "timestamp+video", 1234,        "10:00:00;02", "2004-07-17",
                       "10:30:05",  "16:9", "48000 Hz",        "To the sea"};

struct NameCase {
    const char* name;
    std::string pattern;
    NameFields fields;
    std::string suffix;
    std::string expected;
};

NameFields Named(const std::string& name) {
    NameFields fields;
    fields.name = name;
    return fields;
}

const NameCase kNames[] = {
    {"Plain", "list.xml", kFull, "", "list.xml"},
    {"AllFields", "{name}_{scene}_{method}_{frame}_{timecode}_{date}_{time}_{aspect}_{audio}_{title}", kFull,
     ".dv",
     "Holiday 1_0007_timestamp+video_0001234_10-00-00-02_2004-07-17_10-30-05_16-9_48000 Hz_To the sea.dv"},
    {"WhatIsNotKnown", "{date} {time} {timecode} {title}", NameFields{}, "",
     "undated untimed no-timecode untitled"},
    {"Braces", "{{{scene}}}", kFull, "", "{0007}"},
    {"LongNumbers", "{scene}-{frame}", {"", 12345, "", 123456789, "", "", ""}, "", "12345-123456789"},
    {"FoldersOfThePattern", "../lists/{name}.xml", kFull, "", "../lists/Holiday 1.xml"},
    {"NoFoldersInValues", "{name}/{method}", {"a/b\\c", 1, "../x", 0, "", "", ""}, "", "a-b-c/..-x"},
    {"NotTheFolderAbove", "{name}/x", Named(".."), "", "__/x"},
    {"NotTheFolderItself", "{name}", Named("."), "", "_"},
    {"NoName", "{name}", Named("  "), ".dv", "unnamed.dv"},
    {"BytesThatAreNoText", "{name}", Named("\xFF\xE9*\xA0"), ".dv", "\xFF\xE9_\xA0.dv"},
};

class NameTest : public TestWithParam<NameCase> {};

TEST_P(NameTest, Expands) {
    EXPECT_EQ(NamePattern(GetParam().pattern).Expand(GetParam().fields, GetParam().suffix),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Names, NameTest, ValuesIn(kNames), kByName);

TEST(NamePatternTest, WrongPatternsAreTold) {
    const std::pair<const char*, const char*> cases[] = {
        {"{nme}", "{nme} is not a field; there are {name}, {scene}"},
        {"{}", "{} is not a field"},
        {"{name", "{ without its }"},
        {"{na{scene}", "{ without its }"},
        {"name}", "} without its {"},
        {"", "a file's name is missing"},
        {"clips/", "a file's name is missing"},
    };
    for (const auto& [pattern, error] : cases) {
        EXPECT_THAT(NamePattern::ErrorIn(pattern), HasSubstr(error)) << pattern;
        EXPECT_THROW(NamePattern{pattern}, std::invalid_argument) << pattern;
    }
    EXPECT_EQ(NamePattern::ErrorIn("{name}-{{x}}"), "");
}

TEST(NamePatternTest, NamesThatNoFileSystemTakesAreRefused) {
    const NamePattern pattern("lists/{name}");
    EXPECT_EQ(pattern.Expand(Named(std::string(252, 'x')), ".dv"), "lists/" + std::string(252, 'x') + ".dv");
    EXPECT_THAT(MessageOf([&] { (void)pattern.Expand(Named(std::string(253, 'x')), ".dv"); }),
                HasSubstr("255 bytes at the most"));
}

} // namespace
