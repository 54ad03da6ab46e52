#include "platform/DynamicLibrary.h"
#include "support/DebugLog.h"
#include "support/LogLibrary.h"
#include "tests/support/LogChild.h"

#include <cstdio>
#include <filesystem>

using namespace scenedetect;
namespace fs = std::filesystem;

TEST(AbsentLog, NothingHappensThenOrLater) {
    const fs::path file = fs::path(LIBRARY_FOLDER) / kLogLibraryFile;
    fs::remove(file);
    const auto useThenInstall = [&] {
        DebugPrint(L"lost");
        const bool before = IsDebugLevelActive(702, 31);
        fs::copy_file(COMPLETE_LIBRARY, file);
        DebugPrint(L"lost");
        const bool after = IsDebugLevelActive(702, 31);
        std::fprintf(stderr, "%d%d", before, after);
        // It could be found by now, or "never tried again" would mean nothing.
        DynamicLibrary library;
        std::fprintf(stderr, "%d", library.Open(kLogLibraryFile));
    };
    EXPECT_CHILD_PRINTS(useThenInstall(), testing::StrEq("00{loaded}1{released}"));
    fs::remove(file);
}
