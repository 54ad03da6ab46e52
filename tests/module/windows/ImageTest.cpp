// The module's file: what it lets out, what it needs, and what it says about itself.
#include "platform/Text.h"
#include "tests/Testing.h"

#include <windows.h>

namespace {

/// The module as the system has laid it out in memory.
class Image : public Test {
  protected:
    void SetUp() override {
        m_base = reinterpret_cast<const char*>(LoadLibraryW(WideFromUtf8(MODULE_PATH).c_str()));
        ASSERT_NE(m_base, nullptr);
    }
    void TearDown() override { FreeLibrary(Handle()); }

    HMODULE Handle() const { return reinterpret_cast<HMODULE>(const_cast<char*>(m_base)); }
    template <typename Part>
    const Part* At(DWORD offset) const {
        return reinterpret_cast<const Part*>(m_base + offset);
    }
    /// The part that an entry of the header's table tells of.
    template <typename Part>
    const Part* Directory(int index) const {
        const auto* header = At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
        return At<Part>(header->OptionalHeader.DataDirectory[index].VirtualAddress);
    }

    const char* m_base = nullptr;
};

TEST_F(Image, LetsOutItsFiveEntryPointsOnly) {
    const auto* exported = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    std::vector<std::string> names;
    for (DWORD i = 0; i < exported->NumberOfNames; ++i)
        names.emplace_back(At<char>(At<DWORD>(exported->AddressOfNames)[i]));
    EXPECT_THAT(names, UnorderedElementsAre("DllCanUnloadNow", "DllGetClassObject", "DllMain",
                                            "DllRegisterServer", "DllUnregisterServer"));
    EXPECT_EQ(exported->NumberOfFunctions, 5u) << "nor any without a name";
}

TEST_F(Image, NeedsTheSystemsLibrariesOnly) {
    wchar_t folder[MAX_PATH];
    ASSERT_NE(GetSystemDirectoryW(folder, MAX_PATH), 0u);
    int count = 0;
    for (const auto* needed = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
         needed->Name != 0; ++needed, ++count) {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleA(At<char>(needed->Name)), path, MAX_PATH);
        EXPECT_THAT(std::wstring(path), StartsWith(folder)) << At<char>(needed->Name);
    }
    EXPECT_GT(count, 0);
}

TEST_F(Image, BearsItsVersion) {
    const HRSRC found = FindResourceW(Handle(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    ASSERT_NE(found, nullptr);
    const void* block = LockResource(LoadResource(Handle(), found));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block, L"\\", &value, &length));
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    const std::string version = std::to_string(HIWORD(fixed->dwFileVersionMS)) + '.' +
                                std::to_string(LOWORD(fixed->dwFileVersionMS)) + '.' +
                                std::to_string(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(version, MODULE_VERSION);
    ASSERT_TRUE(VerQueryValueW(block, L"\\StringFileInfo\\040904B0\\FileDescription", &value, &length));
    EXPECT_STREQ(static_cast<const wchar_t*>(value), L"Tamrak Scene Detect Filter");
}

} // namespace
