// The same material through the filter and through the C interface: the same positions and figures.
#include "tests/DvFrame.h"
#include "tests/filter/WatchedFilter.h"
#include "tests/library/Detection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace scenedetect {
namespace {

using namespace testing_support;

using Bytes = std::vector<std::uint8_t>;
using Numbers = std::vector<std::uint32_t>;

constexpr int kFrames = 40;
constexpr int kMarked = 25;
constexpr int kInterval = 7;
// Neither is a multiple of 8: the grid has 8 x 6 blocks.
constexpr int kLumaWidth = 67;
constexpr int kLumaHeight = 53;

// Cuts at 6 and 14, a fade to black from 22 on, a repeated frame amid the motion.
std::uint8_t LumaAt(int frame, int x, int y) {
    const int shown = frame == 31 ? 30 : frame;
    const int base = frame < 6 ? 60 : frame < 14 ? 170 : std::max(0, 110 - std::max(0, frame - 22) * 12);
    const unsigned noise = static_cast<unsigned>(shown * 7919 + x * 104729 + y * 1299709) * 2654435761u >> 27;
    return static_cast<std::uint8_t>(base + static_cast<int>(noise));
}

/// A picture in one of the formats of the C interface, its rows `padding` bytes apart; bottom-up with `up`.
struct Form {
    const char* name;
    std::int32_t format;
    int padding = 0;
    bool up = false;
    int shift = 0;

    [[nodiscard]] int PixelBytes() const {
        return format == KXSCENES_LUMA8 ? 1 : format == KXSCENES_RGB24 ? 3 : format == KXSCENES_RGB32 ? 4 : 2;
    }
};

void SetPixel(const Form& form, std::uint8_t luma, std::uint8_t* pixel) {
    switch (form.format) {
    case KXSCENES_LUMA16: {
        const auto word = static_cast<std::uint16_t>(luma << form.shift | ((1 << form.shift) - 1));
        std::memcpy(pixel, &word, sizeof word);
        break;
    }
    case KXSCENES_UYVY:
        pixel[1] = luma;
        break;
    case KXSCENES_RGB24:
    case KXSCENES_RGB32:
        pixel[2] = luma; // and the others not: the mean differs from the luma
        [[fallthrough]];
    default:
        pixel[0] = luma;
    }
}

/// The bytes are allocated exactly: sanitizers see one that is read beyond.
Bytes Draw(const Form& form, int frame, int width, int height) {
    const int stride = width * form.PixelBytes() + form.padding;
    Bytes bytes(static_cast<std::size_t>(stride * height - form.padding), 0xA5);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            SetPixel(form, LumaAt(frame, x, y),
                     &bytes[static_cast<std::size_t>((form.up ? height - 1 - y : y) * stride +
                                                     x * form.PixelBytes())]);
    return bytes;
}

kxscenes_frame View(const Form& form, const Bytes& bytes, int width, int height) {
    const int stride = width * form.PixelBytes() + form.padding;
    kxscenes_frame frame = LumaFrame(bytes, width, height, form.up ? -stride : stride);
    frame.format = form.format;
    frame.shift = form.shift;
    if (form.up)
        frame.data = &bytes[static_cast<std::size_t>((height - 1) * stride)];
    return frame;
}

template <typename BytesOf>
Found ThroughFilter(const CMediaType& type, std::uint32_t method, BytesOf bytesOf) {
    WatchedFilter filter(method, type);
    filter->SetSceneInterval(kInterval);
    filter->EnableFrameFigures(TRUE);
    filter->EnableDetection(TRUE);
    for (int i = 0; i < kFrames; ++i) {
        if (i == kMarked)
            filter->MarkScene();
        filter.Send(bytesOf(i));
    }
    Found found;
    for (const ULONG position : filter.Drain())
        found.positions.push_back(static_cast<std::uint32_t>(position));
    filter->EnableDetection(FALSE);
    found.figures = filter.Figures();
    return found;
}

template <typename PushOne>
Found ThroughLibrary(std::int32_t method, PushOne pushOne, std::int32_t rate = 0) {
    kxscenes_settings settings = Defaults();
    settings.method = method;
    settings.rate_numerator = rate;
    settings.rate_denominator = rate != 0 ? 1 : 0;
    settings.interval = kInterval;
    settings.keep_figures = 1;
    Detection detection(settings);
    for (int i = 0; i < kFrames; ++i) {
        if (i == kMarked) {
            EXPECT_EQ(kxscenes_mark(detection.get()), KXSCENES_OK);
        }
        pushOne(detection, i);
    }
    return detection.End();
}

Found PicturesThroughLibrary(std::int32_t method, const Form& form, int width, int height) {
    return ThroughLibrary(method, [&](Detection& detection, int i) {
        const Bytes bytes = Draw(form, i, width, height);
        detection.Push(View(form, bytes, width, height));
    });
}

TEST(SameAsFilter, LumaOfAllForms) {
    constexpr int kCropped = kLumaWidth / 8 * 8;
    const Form yuy2{"", KXSCENES_YUY2};
    const Form forms[] = {
        {"luma", KXSCENES_LUMA8},
        {"luma, odd stride", KXSCENES_LUMA8, 6},
        {"luma, bottom-up", KXSCENES_LUMA8, 14, true},
        {"10 bits below", KXSCENES_LUMA16, 0, false, 2},
        {"10 bits above", KXSCENES_LUMA16, 5, false, 8},
        {"YUY2", KXSCENES_YUY2, 3},
        {"UYVY, bottom-up", KXSCENES_UYVY, 0, true},
    };
    for (const std::int32_t method :
         {KXSCENES_VIDEO, KXSCENES_INTERVAL, KXSCENES_MANUAL, KXSCENES_TIMESTAMP}) {
        const Found filter =
            ThroughFilter(FourccType("YUY2", kCropped, kLumaHeight, 16), static_cast<std::uint32_t>(method),
                          [&](int i) { return Draw(yuy2, i, kCropped, kLumaHeight); });
        EXPECT_EQ(filter.figures.size(), method == KXSCENES_VIDEO ? kFrames : 0u);
        for (const Form& form : forms)
            EXPECT_EQ(PicturesThroughLibrary(method, form, kLumaWidth, kLumaHeight), filter)
                << form.name << ", method " << method;
        if (method == KXSCENES_VIDEO) {
            EXPECT_THAT(filter.positions, testing::IsSupersetOf({0, 6, 14, kMarked - 2}))
                << "a comparison of nothing";
        }
    }
}

TEST(SameAsFilter, Rgb) {
    constexpr LONG kWidth = 52; // rows of a DIB without a gap
    for (const std::int32_t format : {KXSCENES_RGB24, KXSCENES_RGB32})
        for (const bool isUp : {true, false}) {
            const Form form{"", format, 0, isUp};
            const bool isWide = format == KXSCENES_RGB32;
            const Found filter =
                ThroughFilter(RgbType(isWide ? MEDIASUBTYPE_RGB32 : MEDIASUBTYPE_RGB24, kWidth,
                                      isUp ? kLumaHeight : -kLumaHeight, isWide ? 32 : 24),
                              KxMethodVideo, [&](int i) { return Draw(form, i, kWidth, kLumaHeight); });
            EXPECT_EQ(PicturesThroughLibrary(KXSCENES_VIDEO, form, kWidth, kLumaHeight), filter)
                << format << (isUp ? ", bottom-up" : "");
            if (!isWide) {
                const Form apart{"", format, 5, isUp};
                EXPECT_EQ(PicturesThroughLibrary(KXSCENES_VIDEO, apart, kWidth, kLumaHeight), filter);
            }
        }
}

// Cuts, a jump of the recording time, and one of a second and a frame if 30 make a second (less than a second
// of 25), a damaged frame and a short one.
Bytes DvAt(int frame, bool is625) {
    DvFrame dv(is625);
    dv.SetLuma(frame < 6 ? 180 : frame < 14 ? 250 : 160);
    dv.SetTime(frame < 18   ? TimePack(36000)
               : frame < 22 ? RecordingTimePack({11, 0, 0, 29})
                            : RecordingTimePack({11, 0, 2, 0}));
    dv.SetTimecode(TimePack(60 + frame / 25, frame % 25));
    if (frame == 9)
        dv.Cut(50000);
    if (frame == 17)
        std::fill_n(dv.Bytes().begin() + 10000, 30000, std::uint8_t{0});
    return dv.Bytes();
}

TEST(SameAsFilter, Dv) {
    for (const bool is625 : {true, false})
        for (const std::int32_t method :
             {KXSCENES_VIDEO, KXSCENES_TIMESTAMP, KXSCENES_INTERVAL, KXSCENES_MANUAL}) {
            const Found filter =
                ThroughFilter(DvType(is625, is625 ? 400000 : 333667), static_cast<std::uint32_t>(method),
                              [&](int i) { return DvAt(i, is625); });
            const Found library = ThroughLibrary(method, [&](Detection& detection, int i) {
                const Bytes bytes = DvAt(i, is625);
                detection.Push(DvFrameOf(bytes));
            });
            EXPECT_EQ(library, filter) << is625 << ", method " << method;
            if (method == KXSCENES_TIMESTAMP) {
                EXPECT_EQ(library.positions,
                          is625 ? (Numbers{0, 18, kMarked}) : (Numbers{0, 18, 22, kMarked}));
            }
        }
}

TEST(SameAsFilter, ARateThatIsToldComesBeforeTheLineSystems) {
    const auto push = [](Detection& detection, int i) {
        const Bytes bytes = DvAt(i, false);
        detection.Push(DvFrameOf(bytes));
    };
    EXPECT_EQ(ThroughLibrary(KXSCENES_TIMESTAMP, push, 25).positions, (Numbers{0, 18, kMarked}));
}

} // namespace
} // namespace scenedetect
