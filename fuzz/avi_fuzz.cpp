// AVI files as they come: every frame that is handed out lies in the file, whatever that claims.
#include "fuzz/Input.h"
#include "reading/base/HostError.h"
#include "reading/readers/AviPictures.h"
#include "tests/MemoryInput.h"

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Console console("avi_fuzz");
    try {
        AviPictures pictures(std::make_unique<testing_support::MemoryInput>(std::span(data, size)),
                             DamageLog(console, "file"));
        Picture picture;
        FilePlace before{-1, -1, -1};
        while (pictures.Next(picture)) {
            const std::size_t bytes = picture.Bytes().size();
            Require(bytes != 0 && bytes == picture.format.imageBytes);
            Require(picture.place.frame > before.frame && picture.place.byteOffset > before.byteOffset);
            Require(static_cast<std::size_t>(picture.place.byteOffset) + bytes <= size);
            // What the filter's side and the output are then told.
            Require(!SecondsText(picture.place.time, pictures.Scale()).empty());
            Require(!TimecodeText(picture.place.time, pictures.Scale()).empty());
            before = picture.place;
        }
    } catch (const HostError&) {
        // an answer like any other
    }
    return 0;
}
