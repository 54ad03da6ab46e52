#include "platform/DynamicLibrary.h"
#include "platform/WideFormat.h"
#include "support/DebugLog.h"
#include "support/LogLibrary.h"
#include "tests/Testing.h"
#include "tests/support/LogChild.h"

namespace fs = std::filesystem;

static int g_formatted = 0;

// Stands in for the platform library's, which the linker then leaves out.
int scenedetect::FormatWide(wchar_t* buffer, std::size_t, const wchar_t*, std::va_list) noexcept {
    *buffer = 0;
    ++g_formatted;
    return 0;
}

TEST(AbsentLog, NothingHappensThenOrLater) {
    const fs::path file = fs::path(LIBRARY_FOLDER) / kLogLibraryFile;
    fs::remove(file);
    const auto useThenInstall = [&] {
        DebugPrint(L"lost");
        const bool before = IsDebugLevelActive(702, 31);
        fs::copy_file(COMPLETE_LIBRARY, file);
        DebugPrint(L"lost");
        const bool after = IsDebugLevelActive(702, 31);
        std::fprintf(stderr, "%d%d, %d formatted", before, after, g_formatted);
        // It could be found by now, or "never tried again" would mean nothing.
        DynamicLibrary library;
        std::fprintf(stderr, "%d", library.Open(kLogLibraryFile));
    };
    EXPECT_CHILD_PRINTS(useThenInstall(), StrEq("00, 2 formatted{loaded}1{released}"));
    fs::remove(file);
}
