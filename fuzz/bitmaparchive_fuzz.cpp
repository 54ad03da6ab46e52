// Archives that may be anything: a bitmap, or objects.
#include "engine/Dib.h"
#include "fuzz/Input.h"
#include "fuzz/MemoryFile.h"
#include "platform/File.h"
#include "support/Archive.h"
#include "support/RefObject.h"

#include <algorithm>
#include <new>

using namespace scenedetect;
using fuzz::Require;

namespace {

void LoadPicture(const fuzz::MemoryFile& input, std::size_t size) {
    File file;
    Require(file.Open(input.Path(), File::Mode::Read));
    Archive archive(file, Archive::Mode::Load);
    Dib picture;
    try {
        picture.Serialize(archive);
        Require(picture.IsValid());
        // The pixels of a header that calls itself shorter than it is begin within it.
        const auto* block = reinterpret_cast<const std::uint8_t*>(picture.GetInfo());
        const auto end = static_cast<std::size_t>(picture.GetBits() - block) + picture.GetBitsExtent();
        Require(std::max(picture.GetInfoExtent(), end) <= size);
        static_cast<void>(picture.GetPixel(0, 0));
        static_cast<void>(picture.HasGreyPalette());
    } catch (const ArchiveException& error) {
        Require(error.GetCause() == ArchiveException::badIndex && !picture.IsValid());
    } catch (const std::bad_alloc&) {
        Require(!picture.IsValid());
    }
}

void LoadObjects(const fuzz::MemoryFile& input) {
    File file;
    Require(file.Open(input.Path(), File::Mode::Read));
    Archive archive(file, Archive::Mode::Load);
    try {
        for (;;) {
            RefObject* object = nullptr;
            archive >> object;
        }
    } catch (const ArchiveException&) { // every input ends this way
    }
    RefObject::DeleteOrphans();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile input(data, size);
    LoadPicture(input, size);
    LoadObjects(input);
    return 0;
}
