#include "filter/FrameWatch.h"

#include "support/TimecodeFrames.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace scenedetect {

namespace {

// Deliberate: lower case only, although negotiation takes "DVSD", too.
constexpr DWORD kDvFourcc = MAKEFOURCC('d', 'v', 's', 'd');
constexpr int kDcImageMode = 2;    // the smallest
constexpr int kDcImageVariant = 1; // frames as they arrive from the stream
constexpr std::int64_t kFirst625LineHeight = 481;
constexpr std::int32_t kGridBlock = 8;
// No header means more than this; the grid of a picture that large would only eat memory.
constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;
// Deliberate: later hours start no scene, but the next frame is compared with them.
constexpr unsigned kLastRecordingHour = 24;
// 29.97 frames per second is 333666 or 333667 units, by the source's rounding.
constexpr LONGLONG kNtscFrameDuration = 333666;

// In 64 bits: the lowest height has no positive counterpart in 32.
std::int64_t AbsoluteHeight(const BITMAPINFOHEADER& header) {
    return std::abs(std::int64_t{header.biHeight});
}

} // namespace

struct FrameWatch::Watched {
    RunFrame frame;
    const Dib& dib;
    const PixelRows* rows;
    const BITMAPINFOHEADER* header = dib.GetInfo(); // null when the media type has none
    std::span<const std::uint8_t> data{dib.GetBits(), dib.GetBitsExtent()};

    bool IsFirst() const { return frame.number == 0; }
    bool Is625Lines() const { return header && AbsoluteHeight(*header) >= kFirst625LineHeight; }
};

void FrameWatch::SetFrameDuration(LONGLONG duration) {
    // Deliberate: 29.97 is the only rate taken as 30; exactly 30 frames per second counts as 25.
    const std::int32_t rate = (duration & ~LONGLONG{1}) == kNtscFrameDuration ? 30 : 25;
    m_nFramesPerSecond = rate;
    m_detector.SetFrameRate(rate);
}

void FrameWatch::Watch(const RunFrame& number, const StreamFrame& frame) {
    const Watched watched{number, frame.picture, frame.rows};
    // Deliberate: settled here for the whole run, whatever type a later frame brings along.
    if (watched.IsFirst()) {
        m_bIsDV = watched.header && watched.header->biCompression == kDvFourcc;
        m_reducedSize.Halve();
        m_run.MarkFrame(number);
        m_detector.SetParameters(m_run.RunParameters());
        m_bHaveFirstTimecode = false;
    }
    if (m_bIsDV)
        ReadTimecode(watched.data);

    SceneMoment moment;
    moment.start = frame.start;
    moment.duration = frame.duration;
    moment.frameDuration = frame.frameDuration;
    if (IsSceneStart(watched))
        m_run.AddScene(number, frame.picture, moment);
    if (m_run.IsScenePending())
        m_run.AddScene(number, frame.picture, moment);
}

void FrameWatch::ReadTimecode(std::span<const std::uint8_t> data) {
    const bool readEvery = m_run.m_bReadTimecode;
    const std::int32_t rate = m_nFramesPerSecond;
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    if (!m_bHaveFirstTimecode && m_dvutil.GetTimeCode(data, hours, minutes, seconds, frames)) {
        const std::int32_t number = TimeToFrames(hours, minutes, seconds, frames, rate);
        m_nFirstTimecodeFrame = number;
        m_nFirstTimecodeFrameDF = CorrectDropFrame(number, rate);
        m_bHaveFirstTimecode = true;
    }
    if (readEvery && m_dvutil.GetTimeCode(data, hours, minutes, seconds, frames))
        m_nTimecodeOffset = CorrectDropFrame(TimeToFrames(hours, minutes, seconds, frames, rate), rate) -
                            m_nFirstTimecodeFrameDF;
}

bool FrameWatch::IsSceneStart(const Watched& watched) {
    const std::uint32_t method = m_run.m_nMethod;
    if (method == KxMethodVideo && watched.IsFirst())
        SettleGrid(watched);
    // Without a header there is no telling what the frame holds.
    if (!watched.header)
        return false;
    switch (method) {
    case KxMethodTimestamp:
        return m_bIsDV && IsRecordingTimeJump(watched);
    case KxMethodVideo:
        return IsPictureChange(watched);
    case KxMethodInterval: {
        const std::int32_t interval = m_run.m_nInterval;
        return interval != 0 && watched.frame.number % interval == 0;
    }
    default: // "Manual" and unknown methods
        return false;
    }
}

bool FrameWatch::IsRecordingTimeJump(const Watched& watched) {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    if (!m_dvutil.GetRecordingTime(watched.data, hours, minutes, seconds, frames))
        return false;
    const std::int32_t rate = m_nFramesPerSecond;
    const std::int32_t current = TimeToFrames(hours, minutes, seconds, frames, rate);
    const bool jump = static_cast<unsigned>(hours) <= kLastRecordingHour && !watched.IsFirst() &&
                      IsRecordingBreak(m_nPrevRecordingFrame, current, rate);
    m_nPrevRecordingFrame = current;
    return jump;
}

bool FrameWatch::IsPictureChange(const Watched& watched) {
    // Pictures smaller than one block can't be compared.
    if (m_detector.GetSampleCount() == 0)
        return false;
    std::uint8_t* slot = m_detector.NextFrame();
    if (m_bIsDV)
        LoadDcImage(watched, slot);
    else if (watched.rows)
        m_detector.ExtractLuminance(*watched.rows, slot);
    else
        m_detector.ExtractLuminance(watched.dib, slot);
    std::optional<Distances> distances;
    if (m_distances.IsOpen())
        distances = m_distances.Measure(m_detector);
    const Judgement judgement = m_detector.Judge();
    m_run.NoteFigures(watched.frame, judgement, distances ? &*distances : nullptr);
    return AddsVideoScene(watched.frame.number, judgement);
}

void FrameWatch::SettleGrid(const Watched& watched) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    if (m_bIsDV) {
        // An area's samples are there in either line system, whichever comes first.
        const bool isTall = watched.Is625Lines() || !m_run.RunParameters().HasWholeArea();
        const auto size = m_dvDecoder.Create(kDcImageMode, isTall, kDcImageVariant, {});
        width = size->width;
        height = size->height;
    } else if (watched.header && watched.header->biWidth > 0 &&
               AbsoluteHeight(*watched.header) <= kMostPixels / watched.header->biWidth) {
        width = watched.header->biWidth / kGridBlock;
        height = static_cast<std::int32_t>(AbsoluteHeight(*watched.header) / kGridBlock);
    }
    m_detector.SetGridWidth(width);
    m_detector.SetGridHeight(height);
    m_detector.Reset();
    if (m_bIsDV)
        SettleDvArea(watched);
    else if (watched.header)
        m_detector.SettleArea({watched.header->biWidth, AbsoluteHeight(*watched.header), kGridBlock, width,
                               m_detector.GetSampleCount()});
    if (m_run.RunMeasuresDistances())
        m_distances.Begin(m_detector.GetSampleCount());
    else
        m_distances.End();
}

void FrameWatch::SettleDvArea(const Watched& watched) {
    m_areaOf625Lines = watched.Is625Lines();
    m_detector.SettleArea(DvDcImage::Places(m_areaOf625Lines));
}

void FrameWatch::LoadDcImage(const Watched& watched, std::uint8_t* slot) {
    if (watched.Is625Lines() != m_areaOf625Lines)
        SettleDvArea(watched);
    const std::span<const std::uint8_t> before(m_detector.GetFrame(-1),
                                               static_cast<std::size_t>(m_detector.GetSampleCount()));
    const auto image = watched.data.empty() ? nullptr
                                            : m_dvDecoder.Create(kDcImageMode, watched.Is625Lines(),
                                                                 kDcImageVariant, watched.data);
    std::size_t size = 0;
    if (image) {
        size = std::min(before.size(),
                        static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height));
        std::copy_n(image->pixels, size, slot);
    }
    // Deliberate: what the picture does not fill repeats the one before. The lower rows, when 525 lines
    // follow 625 in a run, and all of a damaged frame then show no change.
    std::ranges::copy(before.subspan(size), slot + size);
}

} // namespace scenedetect
