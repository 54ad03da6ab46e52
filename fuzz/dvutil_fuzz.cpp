// The metadata readers over DV frames of any length and content.
#include "engine/Dif.h"
#include "filter/Dvutil.h"
#include "fuzz/Input.h"

using namespace scenedetect;
using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kLengthUnit = 4; // up to 262 140 bytes; a 625-line frame has 144 000
    fuzz::Input input(data, size);
    const std::size_t length = input.Take<std::uint16_t>() * kLengthUnit;
    const std::vector<std::uint8_t> frame = input.Repeated(length);
    const auto sequences = static_cast<std::size_t>(AnnouncedDifSequences(frame));
    const bool isWhole = sequences != 0 && length >= sequences * kDifSequenceBytes;

    const Dvutil reader;
    std::uint32_t word = 0;
    bool flag = false;
    const bool hasTimecode = reader.GetTimeCodeInBCD(frame, word, flag);
    Require(!hasTimecode || (isWhole && (word & ~0x3F7F7F3Fu) == 0));
    int hours = -1, minutes = -1, seconds = -1, frames = -1;
    if (reader.GetTimeCode(frame, hours, minutes, seconds, frames))
        Require(hasTimecode && hours >= 0 && hours <= 3 && minutes >= 0 && minutes <= 60 && seconds >= 0 &&
                seconds <= 60 && frames >= 0 && frames <= 30);
    if (reader.GetRecordingTime(frame, hours, minutes, seconds, frames))
        Require(isWhole && frames >= 0 && frames < 45);
    double ratio = 0;
    if (reader.GetDisplayAspect(frame, ratio))
        Require(length >= kDifSequenceBytes && (ratio == 4.0 / 3 || ratio == 14.0 / 9 || ratio == 16.0 / 9));
    return 0;
}
