#include "library/DetectorHandle.h"

#include "engine/Dib.h"
#include "engine/Luminance.h"
#include "library/Settings.h"
#include "reading/dv/DvCheck.h"
#include "reading/dv/DvPacks.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

namespace {

using namespace scenedetect;

// The plus turns enumerators into numbers.
static_assert(+KXSCENES_TIMESTAMP == +KxMethodTimestamp && +KXSCENES_VIDEO == +KxMethodVideo &&
              +KXSCENES_INTERVAL == +KxMethodInterval && +KXSCENES_MANUAL == +KxMethodManual);
static_assert(+KXSCENES_FILLED == +KxFrameFilled && +KXSCENES_DARK == +KxFrameDark &&
              +KXSCENES_CUT == +KxFrameCut);

constexpr LONGLONG kTicksPerSecond = 10000000;

/// In the order of the formats.
constexpr PixelLayout kLayouts[] = {PixelLayout::Planar, PixelLayout::Luma16, PixelLayout::Yuy2,
                                    PixelLayout::Uyvy,   PixelLayout::Rgb24,  PixelLayout::Rgb32};

/// Whether the rows neither overlap nor reach further than memory can.
bool IsStrideValid(const kxscenes_frame& frame, PixelLayout layout) {
    const std::int64_t rowBytes = std::int64_t{frame.width} * FactsOf(layout).pixelPitch;
    const std::int64_t most = (PTRDIFF_MAX - rowBytes) / frame.height;
    return frame.stride >= -most && frame.stride <= most &&
           (frame.stride >= rowBytes || frame.stride <= -rowBytes);
}

std::int32_t CheckFrame(const kxscenes_frame& frame) {
    if (!frame.data)
        return KXSCENES_ERROR_NULL;
    if (frame.format == KXSCENES_DV)
        return frame.dv_size < 0 ? KXSCENES_ERROR_VALUE : KXSCENES_OK;
    constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;
    if (frame.format < 0 || frame.format > KXSCENES_DV || frame.width < 1 || frame.height < 1 ||
        std::int64_t{frame.width} * frame.height > kMostPixels ||
        (frame.format == KXSCENES_LUMA16 && (frame.shift < 0 || frame.shift > 8)))
        return KXSCENES_ERROR_VALUE;
    return IsStrideValid(frame, kLayouts[frame.format]) ? KXSCENES_OK : KXSCENES_ERROR_STRIDE;
}

bool AreOfOneKind(const kxscenes_frame& a, const kxscenes_frame& b) {
    return a.format == b.format &&
           (a.format == KXSCENES_DV || (a.width == b.width && a.height == b.height && a.shift == b.shift));
}

kxscenes_scene Untold() {
    return {.struct_size = sizeof(kxscenes_scene),
            .method = 0,
            .frame = 0,
            .reserved = 0,
            .time = KXSCENES_NO_TIME,
            .timecode = {-1, -1, -1, -1, 0},
            .recorded = {-1, -1, -1, -1, -1, -1}};
}

void Tell(const DvPacks& packs, kxscenes_scene& scene) {
    if (const auto& code = packs.timecode)
        scene.timecode = {code->hours, code->minutes, code->seconds, code->frames, code->isDropFrame ? 1 : 0};
    if (const auto& date = packs.date) {
        scene.recorded.year = static_cast<int>(date->year());
        scene.recorded.month = static_cast<int>(static_cast<unsigned>(date->month()));
        scene.recorded.day = static_cast<int>(static_cast<unsigned>(date->day()));
    }
    if (packs.time) {
        const std::chrono::hh_mm_ss time(*packs.time);
        scene.recorded.hours = static_cast<int>(time.hours().count());
        scene.recorded.minutes = static_cast<int>(time.minutes().count());
        scene.recorded.seconds = static_cast<int>(time.seconds().count());
    }
}

BITMAPINFOHEADER HeaderOf(LONG width, LONG height, DWORD compression) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biCompression = compression;
    return header;
}

} // namespace

using Lock = std::lock_guard<std::mutex>;

kxscenes_detector::kxscenes_detector(const kxscenes_settings& settings) : m_settings(settings) {
    m_run.m_bKeepScenePictures = FALSE;
    Apply(settings);
    m_run.EnableDetection(true);
}

kxscenes_settings kxscenes_detector::Settings() {
    const Lock lock(m_mutex);
    return m_settings;
}

void kxscenes_detector::Change(const kxscenes_settings& settings) {
    const Lock lock(m_mutex);
    Apply(settings);
}

void kxscenes_detector::Apply(const kxscenes_settings& settings) {
    m_run.EnableFigures(settings.keep_figures != 0);
    m_run.m_nMethod = static_cast<std::uint32_t>(settings.method);
    m_run.m_nInterval = settings.interval;
    m_run.SetParameters(ParametersOf(settings));
    if (settings.rate_numerator != 0)
        m_watch.SetFrameDuration(kTicksPerSecond * settings.rate_denominator / settings.rate_numerator);
    m_settings = settings;
}

std::int32_t kxscenes_detector::Push(const kxscenes_frame& frame) {
    if (const std::int32_t result = CheckFrame(frame); result != KXSCENES_OK)
        return result;
    const Lock lock(m_mutex);
    const auto number = m_run.BeginFrame();
    if (!number)
        return KXSCENES_ERROR_ENDED;
    if (number->number == 0)
        m_firstFrame = frame;
    else if (!AreOfOneKind(frame, m_firstFrame))
        return KXSCENES_ERROR_CHANGED;
    try {
        Watch(*number, frame);
    } catch (...) {
        m_run.ClearSceneList(); // they could not be taken over
        m_run.EndFrame(*number);
        throw;
    }
    m_run.EndFrame(*number);
    return KXSCENES_OK;
}

void kxscenes_detector::Watch(const RunFrame& number, const kxscenes_frame& frame) {
    kxscenes_scene& scene = m_latest[static_cast<std::size_t>(number.number) % m_latest.size()];
    scene = Untold();
    scene.frame = number.number;
    scene.time = frame.time;
    if (frame.format == KXSCENES_DV)
        WatchDv(number, frame, scene);
    else
        WatchPicture(number, frame);
    TakeOverScenes();
}

void kxscenes_detector::WatchDv(const RunFrame& number, const kxscenes_frame& frame, kxscenes_scene& scene) {
    const std::span bytes(static_cast<const std::uint8_t*>(frame.data),
                          static_cast<std::size_t>(frame.dv_size));
    const bool is625 = VoteDvSystem(bytes).value_or(bytes.size() < DvFrameBytes(DvSystem::Lines625)
                                                        ? DvSystem::Lines525
                                                        : DvSystem::Lines625) == DvSystem::Lines625;
    const DvSystem system = is625 ? DvSystem::Lines625 : DvSystem::Lines525;
    if (m_settings.rate_numerator == 0)
        m_watch.SetFrameDuration(kTicksPerSecond * DvFrameTicks(system) / kDvTicksPerSecond);
    if (m_settings.read_timecode != 0)
        Tell(ReadDvPacks(bytes, system), scene);
    const BITMAPINFOHEADER header = HeaderOf(720, is625 ? 576 : 480, MAKEFOURCC('d', 'v', 's', 'd'));
    m_watch.Watch(number, {.picture = Dib(&header, sizeof header, const_cast<std::uint8_t*>(bytes.data()),
                                          bytes.size())});
}

void kxscenes_detector::WatchPicture(const RunFrame& number, const kxscenes_frame& frame) {
    const BITMAPINFOHEADER header = HeaderOf(frame.width, frame.height, BI_RGB);
    const PixelRows rows{kLayouts[frame.format],
                         static_cast<const std::uint8_t*>(frame.data),
                         static_cast<std::ptrdiff_t>(frame.stride),
                         frame.width,
                         frame.height,
                         frame.shift};
    m_watch.Watch(number, {.picture = Dib(&header, sizeof header, nullptr, 0), .rows = &rows});
}

/// Positions are counts of frames, since no durations were told: each is that of one of the latest.
void kxscenes_detector::TakeOverScenes() {
    while (const RealtimeScene* found = m_run.CheckOutScene()) {
        kxscenes_scene scene = m_latest[found->m_nPos % m_latest.size()];
        scene.method = m_settings.method;
        m_scenes.push_back(scene);
        m_run.ReleaseScene();
    }
}

std::int32_t kxscenes_detector::Mark() {
    const Lock lock(m_mutex);
    if (!m_run.BeginFrame())
        return KXSCENES_ERROR_ENDED;
    m_run.MarkScene();
    return KXSCENES_OK;
}

std::int32_t kxscenes_detector::TakeScene(kxscenes_scene& scene) {
    const Lock lock(m_mutex);
    if (m_scenes.empty())
        return KXSCENES_NOTHING;
    scene = m_scenes.front();
    m_scenes.pop_front();
    return KXSCENES_OK;
}

std::int32_t kxscenes_detector::TakeFigures(kxscenes_figures* figures, std::int32_t capacity,
                                            std::int32_t& taken) {
    const Lock lock(m_mutex);
    taken = 0;
    KxFrameFigures some[64];
    while (taken < capacity) {
        const std::size_t wanted =
            std::min<std::size_t>(std::size(some), static_cast<std::size_t>(capacity - taken));
        const std::size_t count = m_run.TakeFigures({some, wanted});
        for (std::size_t i = 0; i < count; ++i)
            figures[taken++] = {sizeof(kxscenes_figures), static_cast<std::int32_t>(some[i].dwPosition),
                                some[i].nDifference,      some[i].nLevel,
                                some[i].nFilled,          static_cast<std::int32_t>(some[i].dwFlags)};
        if (count < wanted)
            break;
    }
    return taken != 0 ? KXSCENES_OK : KXSCENES_NOTHING;
}

std::int32_t kxscenes_detector::FrameCount() {
    const Lock lock(m_mutex);
    return m_run.FrameCount();
}

void kxscenes_detector::End() {
    const Lock lock(m_mutex);
    if (m_run.BeginFrame())
        m_run.EnableDetection(false);
}

void kxscenes_detector::Restart() {
    const Lock lock(m_mutex);
    m_scenes.clear();
    m_run.EnableDetection(true);
}
