// Sample processing: each method's scenes, DV metadata on the way, and frames that can't be watched.
#include "filter/ReducedSize.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"
#include "tests/filter/WatchedFilter.h"

namespace {

constexpr REFERENCE_TIME kNtsc = 333667;

std::vector<std::uint8_t> Grey(std::size_t bytes, std::uint8_t level) {
    return std::vector<std::uint8_t>(bytes, level);
}

// Pictures whose level jumps at the given frames and rests between.
template <typename Picture>
Positions VideoScenes(WatchedFilter& filter, int frames, const std::vector<int>& cuts, Picture picture) {
    filter->EnableDetection(TRUE);
    bool bright = false;
    for (int i = 0; i < frames; ++i) {
        if (std::find(cuts.begin(), cuts.end(), i) != cuts.end())
            bright = !bright;
        filter.Send(picture(i, bright));
    }
    return filter.Drain();
}

TEST(SampleWatch, IntervalAndManual) {
    const struct {
        std::uint32_t method;
        ULONG interval;
        Positions positions;
    } cases[] = {
        {KxMethodInterval, 3, {0, 3, 6}},
        {KxMethodInterval, 1, {0, 1, 2, 3, 4, 5, 6}},
        {KxMethodInterval, 0, {0}},
        {KxMethodInterval, static_cast<ULONG>(-2), {0, 2, 4, 6}},
        {KxMethodManual, 3, {0}},
        {KxMethodTimestamp, 3, {0}}, // not DV: no recording time to jump
        {99, 3, {0}},
    };
    for (const auto& one : cases) {
        WatchedFilter filter(one.method, Yuy2());
        filter->SetSceneInterval(one.interval);
        filter->EnableDetection(TRUE);
        for (int i = 0; i < 7; ++i)
            filter.Send(Grey(kYuy2Bytes, 90));
        EXPECT_EQ(filter.Drain(), one.positions) << one.method << "/" << one.interval;
        EXPECT_EQ(filter.FrameCount(), 7u);
    }
}

TEST(SampleWatch, VideoOnDvComparesDcPictures) {
    for (const bool is625 : {true, false}) {
        WatchedFilter filter(KxMethodVideo, DvType(is625, is625 ? 400000 : kNtsc));
        const auto picture = [&](int i, bool bright) {
            DvFrame frame(is625);
            frame.SetLuma(bright ? 250 : 180);
            if (i == 9)
                frame.Cut(50000); // damaged: repeats the picture before, and the count goes on
            return frame.Bytes();
        };
        EXPECT_EQ(VideoScenes(filter, 30, {6, 14, 21}, picture), (Positions{0, 6, 14, 21})) << is625;
        EXPECT_EQ(filter.FrameCount(), 30u);
    }
}

// The corner at the lower right flickers: in a superblock column's last rows, whose macroblocks lie in every
// fifth video block of these sequences.
std::vector<std::uint8_t> DvWithCorner(bool is625, bool isBright) {
    DvFrame frame(is625);
    frame.SetLuma(160);
    for (std::size_t sequence = is625 ? 5 : 4; sequence < (is625 ? 8 : 6); ++sequence)
        for (std::size_t block = 4; block < 135; block += 5)
            for (const std::size_t dc : {4, 18, 32, 46})
                frame.Bytes()[(sequence * 150 + 7 + block + block / 15) * 80 + dc] = isBright ? 250 : 160;
    return frame.Bytes();
}

TEST(SampleWatch, AnAreaOfDvHoldsInBothLineSystems) {
    for (const bool beginsWith625 : {true, false})
        for (const bool isCorner : {false, true}) {
            SCOPED_TRACE(testing::Message() << beginsWith625 << isCorner);
            WatchedFilter filter(KxMethodVideo, DvType(beginsWith625));
            filter->SetParameter(KxAreaLeft, isCorner ? 850 : 0);
            filter->SetParameter(KxAreaTop, isCorner ? 850 : 0);
            filter->SetParameter(KxAreaWidth, isCorner ? 150 : 750);
            filter->EnableFrameFigures(TRUE);
            filter->EnableDetection(TRUE);
            for (int i = 0; i < 12; ++i) {
                const bool is625 = (i < 4 || i >= 8) == beginsWith625;
                filter.SetType(DvType(is625));
                filter.Send(DvWithCorner(is625, i % 2 != 0));
            }
            filter->EnableDetection(FALSE);
            for (const std::string& row : filter.Figures()) {
                const int frame = std::stoi(row);
                const char* figures = !isCorner ? " 0 32 0 " : frame % 2 != 0 ? " 90 122 90 " : " 90 32 90 ";
                if (frame % 4 != 0) { // where systems change, other places are compared
                    EXPECT_THAT(row, HasSubstr(figures));
                }
            }
        }
}

// A change from 625 to 525 lines leaves three of eighteen rows unfilled, which repeat the frame before. The
// other way round the first fifteen rows are taken.
TEST(SampleWatch, AChangeOfLineSystemIsNoPictureChange) {
    const struct {
        const char* name;
        bool beginsWith625;
        int cut, change, back;
    } cases[] = {
        // Five frames earlier the rows held the dark picture: a false cut each time that slot comes round
        // again.
        {"the rows of before the cut", true, 8, 10, 20},
        {"a cut far before", true, 8, 20, 30},
        {"a cut after the change", true, 18, 10, 40},
        {"from 525 lines", false, 8, 10, 20},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        WatchedFilter filter(KxMethodVideo, DvType(one.beginsWith625));
        filter->EnableFrameFigures(TRUE);
        filter->EnableDetection(TRUE);
        for (int i = 0; i < 40; ++i) {
            const bool is625 = (i < one.change || i >= one.back) == one.beginsWith625;
            filter.SetType(DvType(is625));
            filter.Send(DvFrame(is625).SetLuma(i < one.cut ? 160 : 250).Bytes()); // levels of 32 and 122
        }
        EXPECT_EQ(filter.Drain(), (Positions{0, static_cast<ULONG>(one.cut)}));
        filter->EnableDetection(FALSE);
        int changes = 0;
        for (const std::string& row : filter.Figures())
            changes += row.find(" 0 ") == std::string::npos;
        EXPECT_EQ(changes, 2) << "the first frame and the cut, or a row that goes on changing";
    }
}

TEST(SampleWatch, RecordingTimeJumpsOfMoreThanASecondStartScenes) {
    const struct {
        TimeOfDay time;
        bool scene;
    } frames[] = {
        {{10, 0, 0, 0}, true},  // the first frame
        {{10, 0, 1, 0}, false}, // exactly a second
        {{10, 0, 2, 1}, true},  // a frame more
        {{10, 0, 1, 0}, true},  // backward
        {{25, 0, 0, 0}, false}, // no such hour ...
        {{10, 0, 1, 1}, true},  // ... but the next frame is compared with it
        {{24, 0, 0, 0}, true},
    };
    RunningFilter filter(KxMethodTimestamp, DvType());
    Positions expected;
    ULONG number = 0;
    for (const auto& one : frames) {
        filter.Send(DvFrame().SetTime(RecordingTimePack(one.time)).Bytes());
        if (one.scene)
            expected.push_back(number);
        ++number;
    }
    EXPECT_EQ(filter.Drain(), expected);
}

TEST(SampleWatch, FramesWithoutRecordingTimeAreSteppedOver) {
    RunningFilter filter(KxMethodTimestamp, DvType());
    const auto at = [](int seconds) { return DvFrame().SetTime(RecordingTimePack({1, 0, seconds, 0})); };
    filter.Send(at(0).Bytes());
    filter.Send(DvFrame().Bytes());          // no pack
    filter.Send(at(50).Cut(100000).Bytes()); // too short to be believed
    filter.Send({});                         // no data at all
    filter.Send(at(1).Bytes());              // within a second of the last known time
    filter.Send(at(30).Bytes());
    EXPECT_EQ(filter.Drain(), (Positions{0, 5}));
    EXPECT_EQ(filter.FrameCount(), 6u);
}

TEST(SampleWatch, TimecodeIsReadFromDv) {
    WatchedFilter filter(KxMethodManual, DvType(false, kNtsc));
    filter->EnableTimecode(TRUE);
    filter->EnableDetection(TRUE);
    filter.Send(DvFrame(false).Bytes()); // none yet
    filter.Send(DvFrame(false).SetTimecode(TimecodePack({0, 0, 59, 29})).Bytes());
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetStartTimecode), 1799u);
    filter.Send(DvFrame(false)
                    .SetTimecode(TimecodePack({0, 1, 0, 2}))
                    .Bytes()); // the next frame: ;00 and ;01 are dropped
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetCurrentTimecode), 1u);
    filter.Send(DvFrame(false).SetTimecode(TimecodePack({4, 0, 0, 0})).Bytes()); // unusable: the offset stays
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetCurrentTimecode), 1u);
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetStartTimecode), 1799u);
    filter->EnableTimecode(FALSE);
    filter.Send(DvFrame(false).SetTimecode(TimecodePack({0, 2, 0, 2})).Bytes());
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetCurrentTimecode), 1u);
}

TEST(SampleWatch, OnlyLowerCaseDvsdMakesADvRun) {
    RunningFilter filter(KxMethodTimestamp, FourccType("DVSD", 720, 576, 24));
    filter.Send(DvFrame().SetTime(RecordingTimePack({1, 0, 0, 0})).Bytes());
    filter.Send(DvFrame().SetTime(RecordingTimePack({9, 0, 0, 0})).Bytes());
    EXPECT_EQ(filter.Drain(), Positions{0});
}

// What can't be watched still counts, and the first frame is a scene all the same.
TEST(SampleWatch, UnwatchableFramesCount) {
    for (const CMediaType& type :
         {FourccType("YUY2", 7, 64, 16), FourccType("YUY2", 64, 7, 16), FourccType("YUY2", -64, 48, 16),
          FourccType("YUY2", 0, 0, 16), FourccType("YUY2", 0x7FFFFFFF, static_cast<LONG>(0x80000000), 16)}) {
        RunningFilter filter(KxMethodVideo, type);
        for (int i = 0; i < 6; ++i) {
            if (i == 5)
                filter->MarkScene();
            filter.Send(Grey(kYuy2Bytes, i < 3 ? 10 : 200));
        }
        EXPECT_EQ(filter.Drain(), (Positions{0, 3}));
        EXPECT_EQ(filter.FrameCount(), 6u);
    }
}

// Without a header there is nothing to go by: marks, and that of the first frame, are all that is left.
TEST(SampleWatch, TypesWithoutAHeaderSkipEveryMethod) {
    CMediaType formatless = DvType();
    formatless.SetFormatType(&FORMAT_None);
    CMediaType shortBlock = DvType();
    shortBlock.cbFormat = 48 + 39;
    for (const std::uint32_t method : {KxMethodTimestamp, KxMethodVideo, KxMethodInterval, KxMethodManual})
        for (const CMediaType& type : {formatless, shortBlock})
            for (const bool fromTheStart : {true, false}) {
                WatchedFilter filter(method, fromTheStart ? type : DvType());
                filter->SetSceneInterval(1);
                filter->EnableDetection(TRUE);
                const auto send = [&](int frames) {
                    for (int i = 0; i < frames; ++i)
                        filter.Send(DvFrame()
                                        .SetLuma(static_cast<std::uint8_t>(i * 90))
                                        .SetTime(RecordingTimePack({i, 0, 0, 0}))
                                        .Bytes());
                };
                send(1);
                filter.SetType(type);
                send(4);
                filter->MarkScene();
                send(4);
                EXPECT_EQ(filter.Drain(), (Positions{0, method == KxMethodVideo ? 3u : 5u})) << method;
                EXPECT_EQ(filter.FrameCount(), 9u);
            }
}

TEST(SampleWatch, ASampleWithoutDataHasAnEmptyPicture) {
    RunningFilter filter(KxMethodManual, Yuy2());
    LooseSample sample(Grey(kYuy2Bytes, 90));
    sample.SetActualDataLength(0);
    filter.Send(sample);
    BITMAPINFOHEADER* header = nullptr;
    ASSERT_EQ(filter->GetNextScene(&header, nullptr, nullptr), S_OK);
    EXPECT_EQ(header->biSizeImage, 0u);
}

TEST(SampleWatch, AMethodChangedInMidRunUsesTheGridThereIs) {
    RunningFilter filter(KxMethodManual, DvType());
    filter.Send(DvFrame().SetLuma(180).Bytes());
    filter->SetDetectionMethod(KxMethodVideo); // grid not settled: 300 samples take part of 396
    for (int i = 1; i < 20; ++i)
        filter.Send(DvFrame().SetLuma(i < 10 ? 180 : 250).Bytes());
    EXPECT_EQ(filter.Drain(), (Positions{0, 10}));
}

// A sample that reports no stop time at all, unlike the project's own sample class, which reports a duration
// of 1.
class SampleWithoutStop : public LooseSample {
  public:
    using LooseSample::LooseSample;
    STDMETHODIMP GetTime(REFERENCE_TIME* start, REFERENCE_TIME*) override {
        *start = 40000000;
        return VFW_S_NO_STOP_TIME;
    }
};

TEST(SampleWatch, PositionsOfSamplesWithoutStopTime) {
    // A stop of 0 leaves the frames to be counted, with the host's offset.
    RunningFilter counted(KxMethodVideo, Yuy2());
    counted.Ex().SetFrameOffset(5);
    for (int i = 0; i < 8; ++i) {
        SampleWithoutStop sample(Grey(kYuy2Bytes, 90));
        if (i == 7)
            counted->MarkScene();
        counted.Send(sample);
    }
    EXPECT_EQ(counted.Drain(), (Positions{3, 10}));
}

// By hand: the start of a sample without times is the relative one of the sample before, made relative again.
TEST(SampleWatch, PositionsOfSamplesWithoutTimes) {
    constexpr REFERENCE_TIME kFirst = 4000000;
    constexpr REFERENCE_TIME kNoTime = -1;
    const struct {
        REFERENCE_TIME start;
        ULONG position;
    } samples[] = {
        {kFirst, 98}, // relative 0, plus 100 frames of offset
        {kNoTime,
         49}, // starts at 0 and stops at 0: counted, frame 1 plus an offset of 50; relative -10 frames
        {kNoTime, 78},         // starts at -10 frames, stops at 0: timed, relative -20 frames
        {kFirst + 400000, 99}, // relative 1 frame
        {kNoTime, 52},         // starts at 1 frame, stops at 0: counted
    };
    RunningFilter filter(KxMethodVideo, Yuy2());
    filter.Ex().SetFrameOffset(50);
    filter.Ex().SetTimeOffset(100 * 400000);
    for (const auto& one : samples) {
        LooseSample sample(Grey(kYuy2Bytes, 90));
        REFERENCE_TIME start = one.start;
        REFERENCE_TIME stop = start + 400000;
        if (start != kNoTime)
            sample.SetTime(&start, &stop);
        filter->MarkScene();
        filter.Send(sample);
        EXPECT_EQ(filter.Drain(), Positions{one.position});
    }
}

TEST(SampleWatch, AnAttachedTypeIsTakenOverWhenItDiffers) {
    RunningFilter filter(KxMethodManual, DvType(true, 400000));
    filter->EnableTimecode(TRUE);
    filter.Send(DvFrame(true).SetTimecode(TimecodePack({0, 0, 1, 0})).Bytes());
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetStartTimecode), 25u);
    EXPECT_TRUE(filter->GetPin(0)->CurrentMediaType() == DvType(true, 400000));

    filter.SetType(DvType(false, kNtsc));
    filter.Send(DvFrame(false).SetTimecode(TimecodePack({0, 0, 2, 0})).Bytes());
    for (const int pin : {0, 1})
        EXPECT_TRUE(filter->GetPin(pin)->CurrentMediaType() == DvType(false, kNtsc));
    EXPECT_EQ(filter.Number(&SceneDetectFilter::GetCurrentTimecode), 60u - 25u)
        << "the frame rate follows the type";
}

TEST(SampleWatch, Only2997CountsAs30FramesPerSecond) {
    const struct {
        REFERENCE_TIME frameDuration;
        ULONG rate;
    } cases[] = {{400000, 25}, {333665, 25}, {333666, 30}, {333667, 30}, {333668, 25}, {333333, 25}, {0, 25}};
    for (const auto& one : cases) {
        RunningFilter filter(KxMethodManual, DvType(false, one.frameDuration));
        filter.Send(DvFrame(false).SetTimecode(TimecodePack({0, 0, 1, 0})).Bytes());
        EXPECT_EQ(filter.Number(&SceneDetectFilter::GetStartTimecode), one.rate) << one.frameDuration;
    }
}

TEST(SampleWatch, TheReducedSizeIsHalvedDownTo180) {
    const struct {
        ReducedSize given, halved;
    } cases[] = {{{720, 576}, {180, 144}},
                 {{360, 288}, {180, 144}},
                 {{181, 100}, {90, 50}},
                 {{180, 999}, {180, 999}},
                 {{0, 0}, {0, 0}}};
    for (auto one : cases) {
        one.given.Halve();
        EXPECT_EQ(one.given, one.halved);
    }
}

} // namespace
