// Bitmap files that may be anything: recognised, and stepped over.
#include "engine/Dib.h"
#include "fuzz/Input.h"
#include "platform/File.h"

#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int memory = memfd_create("bitmap", MFD_CLOEXEC);
    Require(memory != -1 && write(memory, data, size) == static_cast<ssize_t>(size));
    const std::wstring path = L"/proc/self/fd/" + std::to_wstring(memory);

    File file;
    Require(file.Open(path, File::Mode::Read));
    Dib picture;
    const bool skipped = picture.SkipInFile(file);
    Require(!picture.IsValid());
    constexpr std::size_t kHeaders = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    Require(!skipped || (size >= kHeaders && data[0] == 'B' && data[1] == 'M'));
    close(memory);
    return 0;
}
