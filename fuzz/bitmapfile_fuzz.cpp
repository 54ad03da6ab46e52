// Bitmap files that may be anything: recognised, and stepped over.
#include "engine/Dib.h"
#include "fuzz/Input.h"
#include "fuzz/MemoryFile.h"
#include "platform/File.h"

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile input(data, size);
    File file;
    Require(file.Open(input.Path(), File::Mode::Read));
    Dib picture;
    const bool skipped = picture.SkipInFile(file);
    Require(!picture.IsValid());
    constexpr std::size_t kHeaders = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    Require(!skipped || (size >= kHeaders && data[0] == 'B' && data[1] == 'M'));
    return 0;
}
