// What the packs of DV frames say: timecode, date and time of the recording, aspect, audio format, the
// recorder's marks.
#pragma once

#include "reading/dv/DvFrame.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>

namespace scenedetect {

struct DvTimecode {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    bool isDropFrame = false;

    friend bool operator==(const DvTimecode&, const DvTimecode&) = default;
};

/// Frames that a second of timecode counts.
[[nodiscard]] constexpr int DvTimecodeRate(DvSystem system) {
    return system == DvSystem::Lines625 ? 25 : 30;
}

/// The real frames from 00:00:00:00 on.
[[nodiscard]] std::int64_t FrameCountOf(const DvTimecode& timecode, DvSystem system);

/// How the picture is to be shown (docs/dv.md has the codes).
enum class DvAspect {
    Full4By3,
    Full14By9,
    Full16By9,
    Letterbox14By9, ///< and other letterboxes: within 4:3
    Letterbox16By9,
    LetterboxWider,
};

/// How the audio of a frame is coded, from the AAUX source pack (IEC 61834-4, SMPTE 314M).
struct DvAudioFormat {
    int samplingRate = 0;  ///< 48000, 44100 or 32000 Hz
    int bits = 0;          ///< of a sample: 16, linear; 12, nonlinear; 20, linear
    int channels = 0;      ///< that there is room for: 2, or 4 where each audio block carries a pair
    bool isLocked = false; ///< the sampling clock is tied to the video's

    friend bool operator==(const DvAudioFormat&, const DvAudioFormat&) = default;
    /// Equal but for the clock.
    [[nodiscard]] bool IsCodedAs(const DvAudioFormat& other) const {
        return samplingRate == other.samplingRate && bits == other.bits && channels == other.channels;
    }
};

/// Two-digit years from this on are of the 20th century.
inline constexpr int kFirstYearOf1900s = 75;

// Of one pack, whose header is not looked at; nothing for what is no such value.
[[nodiscard]] std::optional<DvTimecode> TimecodeOf(DifPack pack, DvSystem system);
[[nodiscard]] std::optional<std::chrono::year_month_day> DateOf(DifPack pack);
[[nodiscard]] std::optional<std::chrono::seconds> TimeOf(DifPack pack); ///< of the day
[[nodiscard]] std::optional<DvAspect> AspectOf(DifPack pack);
[[nodiscard]] std::optional<DvAudioFormat> AudioFormatOf(DifPack pack);

/// What one frame says, each where it has a valid pack of the kind.
struct DvPacks {
    std::optional<DvTimecode> timecode;
    std::optional<std::chrono::year_month_day> date;
    std::optional<std::chrono::seconds> time;
    std::optional<DvAspect> aspect;
    std::optional<DvAudioFormat> audio;
    bool isRecordingStart = false;
    bool isRecordingEnd = false;

    friend bool operator==(const DvPacks&, const DvPacks&) = default;
};

/// Every sequence repeats the packs; what most of the valid ones of a kind say is taken, so that a damaged
/// sequence, or one left over from another recording, changes nothing. `frame` is whole; of a shorter one
/// nothing is read.
[[nodiscard]] DvPacks ReadDvPacks(std::span<const std::uint8_t> frame, DvSystem system);

/// What a whole frame tells by its size and its packs.
struct DvFrameInfo {
    DvSystem system = DvSystem::Lines525;
    DvPacks packs;
};

} // namespace scenedetect
