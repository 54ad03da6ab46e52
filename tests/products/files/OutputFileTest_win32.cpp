#include "tests/products/files/OutputFileTest.h"

#include <windows.h>

namespace {

TEST_F(OutputFileTest, NamesThatTheSystemForbidsAreRefused) {
    for (const char* const name :
         {"out.csv:stream", "a<b", "a?", "a*b", "dot.", "space ", "nul.csv", "com1", "LPT9.txt"})
        EXPECT_THAT(MessageOf([&] { RequireWritable(In(name), Existing::Replace); }),
                    HasSubstr("Windows has no such names"))
            << name;
    for (const char* const name : {".dots...x", "console", "COM", "com0.csv", "lpt1x"})
        WriteFile(In(name), Existing::Keep, name);
    EXPECT_EQ(FileCount(), 5);
}

TEST_F(OutputFileTest, WhatCannotBeReplacedShowsBeforehand) {
    WriteFile(m_path, Existing::Keep, "old");
    const auto obstacle = [&] { return MessageOf([&] { RequireWritable(m_path, Existing::Replace); }); };
    SetFileAttributesA(m_path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_THAT(obstacle(), HasSubstr("; it or its folder is write-protected, or a program has it open"));
    SetFileAttributesA(m_path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const HANDLE other =
        CreateFileA(m_path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_THAT(obstacle(), HasSubstr("; a program has it open: close it there"));
    CloseHandle(other);
    EXPECT_EQ(obstacle(), "");
}

} // namespace
