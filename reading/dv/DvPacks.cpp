#include "reading/dv/DvPacks.h"

#include "support/TimecodeFrames.h"

#include <algorithm>
#include <array>

namespace scenedetect {
namespace {

// A byte of two decimal digits, beside flags.
struct Field {
    std::uint8_t bits;
    int limit;
};
constexpr Field kSeconds{0x7F, 60};
constexpr Field kMinutes{0x7F, 60};
constexpr Field kHours{0x3F, 24};
constexpr Field kDay{0x3F, 32};
constexpr Field kMonth{0x1F, 13}; // the day of the week is above it
constexpr Field kYear{0xFF, 100};
constexpr std::uint8_t kTimecodeFrames = 0x3F;
constexpr std::uint8_t kDropFrame = 0x40;

// Recording marks in PC2 of the audio source control; 0 is yes.
constexpr std::uint8_t kNoRecordingStart = 0x80;
constexpr std::uint8_t kNoRecordingEnd = 0x40;

std::optional<int> Number(std::uint8_t byte, const Field& field) {
    const int high = (byte & field.bits) >> 4;
    const int low = byte & field.bits & 0x0F;
    const int number = high * 10 + low;
    return low <= 9 && number < field.limit ? std::optional(number) : std::nullopt;
}

// What more than half of the valid packs say; if there is no such, what one of them says.
template <typename Value>
class Majority {
  public:
    template <typename Read>
    void Add(DifPack pack, Read read) {
        // Nearly all are alike.
        if (m_lead > 0 && std::ranges::equal(pack, m_pack)) {
            ++m_lead;
            return;
        }
        const std::optional<Value> value = read(pack);
        if (!value)
            return;
        if (m_lead == 0) {
            m_value = value;
            std::ranges::copy(pack, m_pack.begin());
        }
        m_lead += value == m_value ? 1 : -1;
    }
    [[nodiscard]] const std::optional<Value>& Winner() const { return m_value; }

  private:
    std::optional<Value> m_value;
    std::array<std::uint8_t, 5> m_pack{};
    int m_lead = 0;
};

void ReadVaux(std::span<const std::uint8_t> frame, DvSystem system, DvPacks& result) {
    Majority<std::chrono::year_month_day> date;
    Majority<std::chrono::seconds> time;
    Majority<DvAspect> aspect;
    for (const DifPack pack : DifPacks(frame, kVauxPacks, DvSequences(system))) {
        if (pack[0] == kPackRecordingDate)
            date.Add(pack, DateOf);
        else if (pack[0] == kPackRecordingTime)
            time.Add(pack, TimeOf);
        else if (pack[0] == kPackSourceControl)
            aspect.Add(pack, AspectOf);
    }
    result.date = date.Winner();
    result.time = time.Winner();
    result.aspect = aspect.Winner();
}

void ReadSubcode(std::span<const std::uint8_t> frame, DvSystem system, DvPacks& result) {
    Majority<DvTimecode> timecode;
    const auto read = [system](DifPack pack) { return TimecodeOf(pack, system); };
    for (const DifPack pack : DifPacks(frame, kSubcodePacks, DvSequences(system)))
        if (pack[0] == kPackTimecode)
            timecode.Add(pack, read);
    result.timecode = timecode.Winner();
}

// Each half of the sequences carries an audio channel, or pair of them, with packs of its own. The first half
// decides, the other where it has none, so that audio dubbed on the second channel marks nothing.
void ReadAaux(std::span<const std::uint8_t> frame, DvSystem system, DvPacks& result) {
    const int sequences = DvSequences(system) / 2;
    std::optional<int> marks;
    const auto readMarks = [](DifPack pack) {
        return std::optional(pack[2] & (kNoRecordingStart | kNoRecordingEnd));
    };
    for (const std::size_t first : {0, sequences}) {
        Majority<int> halfMarks;
        Majority<DvAudioFormat> audio;
        for (const DifPack pack : DifPacks(frame.subspan(first * kDifSequenceBytes), kAauxPacks, sequences))
            if (pack[0] == kPackAudioSourceControl)
                halfMarks.Add(pack, readMarks);
            else if (pack[0] == kPackAudioSource)
                audio.Add(pack, AudioFormatOf);
        if (!marks)
            marks = halfMarks.Winner();
        if (!result.audio)
            result.audio = audio.Winner();
    }
    if (marks) {
        result.isRecordingStart = (*marks & kNoRecordingStart) == 0;
        result.isRecordingEnd = (*marks & kNoRecordingEnd) == 0;
    }
}

} // namespace

std::int64_t FrameCountOf(const DvTimecode& timecode, DvSystem system) {
    const int rate = DvTimecodeRate(system);
    const std::int32_t number =
        TimeToFrames(timecode.hours, timecode.minutes, timecode.seconds, timecode.frames, rate);
    return timecode.isDropFrame ? CorrectDropFrame(number, rate) : number;
}

std::optional<DvTimecode> TimecodeOf(DifPack pack, DvSystem system) {
    const auto time = TimeOf(pack);
    const auto frames = Number(pack[1], {kTimecodeFrames, DvTimecodeRate(system)});
    if (!time || !frames)
        return std::nullopt;
    const std::chrono::hh_mm_ss parts(*time);
    return DvTimecode{static_cast<int>(parts.hours().count()), static_cast<int>(parts.minutes().count()),
                      static_cast<int>(parts.seconds().count()), *frames, (pack[1] & kDropFrame) != 0};
}

std::optional<std::chrono::year_month_day> DateOf(DifPack pack) {
    const auto day = Number(pack[2], kDay);
    const auto month = Number(pack[3], kMonth);
    const auto year = Number(pack[4], kYear);
    if (!day || !month || !year)
        return std::nullopt;
    const std::chrono::year_month_day date(
        std::chrono::year(*year + (*year >= kFirstYearOf1900s ? 1900 : 2000)),
        std::chrono::month(static_cast<unsigned>(*month)), std::chrono::day(static_cast<unsigned>(*day)));
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::optional<std::chrono::seconds> TimeOf(DifPack pack) {
    const auto hours = Number(pack[4], kHours);
    const auto minutes = Number(pack[3], kMinutes);
    const auto seconds = Number(pack[2], kSeconds);
    if (!hours || !minutes || !seconds)
        return std::nullopt;
    return std::chrono::hours(*hours) + std::chrono::minutes(*minutes) + std::chrono::seconds(*seconds);
}

std::optional<DvAspect> AspectOf(DifPack pack) {
    constexpr std::uint8_t kDisplaySelect = 0x07;
    constexpr std::uint8_t kBroadcastSystem = 0x03;
    constexpr std::uint8_t kSystemOfEn300294 = 1;
    constexpr std::uint8_t kNoInformation = 0xFF;
    // Cameras and programs write 2 and 7 for the whole picture of 16:9 under either system.
    switch (pack[2] & kDisplaySelect) {
    case 0:
        return DvAspect::Full4By3;
    case 1:
        return (pack[3] & kBroadcastSystem) == kSystemOfEn300294 ? DvAspect::Letterbox14By9
                                                                 : DvAspect::Letterbox16By9;
    case 3:
    case 4:
        return DvAspect::Letterbox16By9;
    case 5:
        return DvAspect::LetterboxWider;
    case 6:
        return DvAspect::Full14By9;
    default:
        // A pack that was never filled is no picture of 16:9.
        return pack[2] == kNoInformation ? std::nullopt : std::optional(DvAspect::Full16By9);
    }
}

std::optional<DvAudioFormat> AudioFormatOf(DifPack pack) {
    constexpr std::array kRates = {48000, 44100, 32000}; // SMP
    constexpr std::array kBits = {16, 12, 20};           // QU
    constexpr std::uint8_t kUnlocked = 0x80;             // LF
    constexpr std::uint8_t kPairs = 0x20;                // CHN: 0 or 1, others are reserved
    constexpr std::uint8_t kChannels = 0x60;
    const std::size_t rate = pack[4] >> 3 & 7;
    const std::size_t bits = pack[4] & 7;
    const int channels = pack[2] & kChannels;
    if (rate >= kRates.size() || bits >= kBits.size() || (channels != 0 && channels != kPairs))
        return std::nullopt;
    return DvAudioFormat{kRates[rate], kBits[bits], channels == kPairs ? 4 : 2, (pack[1] & kUnlocked) == 0};
}

DvPacks ReadDvPacks(std::span<const std::uint8_t> frame, DvSystem system) {
    DvPacks result;
    if (frame.size() < DvFrameBytes(system))
        return result;
    ReadVaux(frame, system, result);
    ReadSubcode(frame, system, result);
    ReadAaux(frame, system, result);
    return result;
}

} // namespace scenedetect
