// The parameters of the picture comparison, filter by filter, and the figures that it hands out.
#include "tests/Testing.h"
#include "tests/filter/WatchedFilter.h"

namespace {

// A grid of 2 x 2 samples.
constexpr LONG kSide = 16;
constexpr std::size_t kBytes = kSide * kSide * 2;
constexpr LONG kMost = std::numeric_limits<LONG>::max();

class TunedFilter : public WatchedFilter {
  public:
    TunedFilter() : WatchedFilter(KxMethodVideo, FourccType("YUY2", kSide, kSide, 16)) {}

    using WatchedFilter::Send;
    void Send(std::uint8_t level) { Send(std::vector<std::uint8_t>(kBytes, level)); }
    void SendAll(const std::vector<std::uint8_t>& levels) {
        for (const std::uint8_t level : levels)
            Send(level);
    }
    Positions Run(const std::vector<std::uint8_t>& levels) {
        (*this)->EnableDetection(TRUE);
        SendAll(levels);
        return Drain();
    }
};

TEST(Tuning, RangesAndDefaults) {
    const struct {
        ULONG number;
        std::array<LONG, 3> range; // least, most, default
    } cases[] = {
        {KxCutThreshold, {0, 255, 13}}, {KxDarkLevel, {-1, 255, 25}},    {KxClamp, {1, 255, 255}},
        {KxVotes, {1, 4, 3}},           {KxLongestScene, {0, kMost, 0}}, {KxAreaLeft, {0, 999, 0}},
        {KxAreaTop, {0, 999, 0}},       {KxAreaWidth, {1, 1000, 1000}},  {KxAreaHeight, {1, 1000, 1000}}};
    TunedFilter filter;
    LONG value = 0;
    for (const auto& [number, range] : cases) {
        std::array<LONG, 3> told{77, 77, 77};
        EXPECT_EQ(filter->GetParameterRange(number, &told[0], &told[1], &told[2]), S_OK);
        EXPECT_EQ(told, range) << number;
        EXPECT_EQ(filter->GetParameter(number, &value), S_OK);
        EXPECT_EQ(value, range[2]) << number;
        for (const LONG taken : {range[0], range[1]}) {
            EXPECT_EQ(filter->SetParameter(number, taken), S_OK) << number;
            for (const LONG refused : {std::int64_t{range[0]} - 1, std::int64_t{range[1]} + 1})
                EXPECT_EQ(filter->SetParameter(number, static_cast<LONG>(refused)), E_INVALIDARG) << number;
            filter->GetParameter(number, &value);
            EXPECT_EQ(value, taken) << "a refused value changes nothing";
        }
    }
    for (const ULONG unknown : {9u, 0xFFFFFFFFu}) {
        EXPECT_EQ(filter->SetParameter(unknown, 1), E_INVALIDARG);
        EXPECT_EQ(filter->GetParameter(unknown, &value), E_INVALIDARG);
        EXPECT_EQ(filter->GetParameterRange(unknown, nullptr, nullptr, nullptr), E_INVALIDARG);
    }
    EXPECT_EQ(filter->ResetParameters(), S_OK);
    g_maxSceneLength = 500;
    for (const auto& [number, range] : cases) {
        filter->GetParameter(number, &value);
        EXPECT_EQ(value, number == KxLongestScene ? 500 : range[2]);
    }
    g_maxSceneLength = 0;
}

TEST(Tuning, ParametersCountFromTheNextRunOn) {
    const std::vector<std::uint8_t> cuts = {90, 90, 90, 90, 110, 110, 110, 110, 200, 200, 200, 200};
    TunedFilter filter;
    filter->SetParameter(KxCutThreshold, 20);
    EXPECT_EQ(filter.Run(cuts), (Positions{0, 8}));
    filter->EnableDetection(TRUE);
    filter->SetParameter(KxCutThreshold, 19);
    filter.SendAll(cuts);
    EXPECT_EQ(filter.Drain(), (Positions{0, 8})) << "set too late for this run";
    EXPECT_EQ(filter.Run(cuts), (Positions{0, 4, 8}));
    filter->SetParameter(KxLongestScene, 3);
    // The forced cut at 3 suppresses the one at 4.
    EXPECT_EQ(filter.Run(cuts), (Positions{0, 3, 6, 8}));

    // A run that begins by another method is judged by its own parameters, too.
    filter->ResetParameters();
    EXPECT_EQ(filter.Run({90, 90, 90, 90, 90, 90}), Positions{0});
    filter->SetParameter(KxCutThreshold, 20);
    filter->SetDetectionMethod(KxMethodManual);
    filter->EnableDetection(TRUE);
    filter.Send(90);
    filter->SetDetectionMethod(KxMethodVideo);
    filter.SendAll(cuts);
    EXPECT_EQ(filter.Drain(), (Positions{0, 9}));
}

// The lower left quarter flickers. Planar frames, of whose right half the whole has nothing, are read as they
// lie.
TEST(Tuning, AnAreaIsWhereThePictureShowsIt) {
    constexpr LONG kWidth = 32;
    constexpr std::size_t kPixels = kWidth * kSide;
    for (const bool isPlanar : {false, true})
        for (const bool isRight : {false, true}) {
            WatchedFilter filter(KxMethodVideo, isPlanar ? FourccType("I420", kWidth, kSide, 12)
                                                         : FourccType("YUY2", kWidth, kSide, 16));
            const std::size_t step = isPlanar ? 1 : 2;
            filter->SetParameter(KxAreaLeft, isRight ? 500 : 0);
            filter->SetParameter(KxAreaTop, 500);
            filter->SetParameter(KxAreaWidth, 500);
            filter->SetParameter(KxAreaHeight, 500);
            filter->EnableFrameFigures(TRUE);
            filter->EnableDetection(TRUE);
            for (int i = 0; i < 4; ++i) {
                std::vector<std::uint8_t> bytes(isPlanar ? kPixels * 3 / 2 : kPixels * 2, 100);
                for (std::size_t pixel = kPixels / 2; pixel < kPixels; ++pixel)
                    if (pixel % kWidth < kWidth / 2 && i % 2 == 1)
                        bytes[pixel * step] = 180;
                filter.Send(bytes);
            }
            filter->EnableDetection(FALSE);
            EXPECT_EQ(filter.Figures()[1], isRight ? "1 0 100 0 0" : "1 80 180 80 0") << isPlanar;
        }
}

using Rows = std::vector<std::string>;

// By hand: pictures of one level, so that the difference is the step between two levels.
TEST(Tuning, FiguresTellWhatWasFilledDarkAndCut) {
    TunedFilter filter;
    EXPECT_EQ(filter->EnableFrameFigures(TRUE), S_OK);
    // Frame 5 repeats 4 amid motion; 9 is a cut; 14 is the darkest of a fade, whose frame 13 is dark as well.
    filter->EnableDetection(TRUE);
    filter.SendAll({90, 90, 90, 90, 110, 110, 130, 130, 130});
    const Rows first = {"0 90 90 90 4",  "1 0 90 0 0",   "2 0 90 0 0",   "3 0 90 0 0",
                        "4 20 110 20 0", "5 0 110 20 1", "6 20 130 20 0"};
    EXPECT_EQ(filter.Figures(), first) << "the last two are not final";
    filter.SendAll({200, 200, 200, 30, 24, 20, 26, 26, 26});
    filter->EnableDetection(FALSE);
    EXPECT_EQ(filter.Figures(), (Rows{"7 0 130 0 0", "8 0 130 0 0", "9 70 200 70 4", "10 0 200 0 0",
                                      "11 0 200 0 0", "12 170 30 170 4", "13 6 24 6 0", "14 4 20 4 0",
                                      "15 6 26 6 0", "16 0 26 0 0", "17 0 26 0 0"}));
    EXPECT_TRUE(filter.Figures().empty());

    filter.Run({30, 30, 30, 30, 20, 30, 30, 30});
    EXPECT_EQ(filter.Figures(), (Rows{"0 30 30 30 4", "1 0 30 0 0", "2 0 30 0 0", "3 0 30 0 0",
                                      "4 10 20 10 6", "5 10 30 10 0"}));
}

TEST(Tuning, FiguresAreKeptOnRequestAndWithinBounds) {
    TunedFilter filter;
    KxFrameFigures one{};
    ULONG taken = 77;
    EXPECT_EQ(filter->GetFrameFigures(1, nullptr, &taken), E_POINTER);
    EXPECT_EQ(filter->GetFrameFigures(1, &one, nullptr), E_POINTER);
    filter.Run({90, 90, 90, 90});
    EXPECT_EQ(filter->GetFrameFigures(1, &one, &taken), VFW_S_NO_MORE_ITEMS) << "off by default";
    EXPECT_EQ(taken, 0u);
    filter->EnableFrameFigures(TRUE); // in the middle of the run
    filter.SendAll({91, 93, 96, 100});
    EXPECT_EQ(filter.Figures(), (Rows{"4 1 91 1 0", "5 2 93 2 0"}));
    filter->EnableFrameFigures(FALSE);
    filter.SendAll({90, 90, 90, 90});
    filter->EnableFrameFigures(TRUE);
    EXPECT_TRUE(filter.Figures().empty()) << "dropped, and not kept meanwhile";
    filter.Run({90, 90});
    EXPECT_TRUE(filter.Figures().empty());
    filter.Run({95, 95});
    filter->EnableDetection(FALSE);
    EXPECT_EQ(filter.Figures(), (Rows{"0 95 95 95 0", "1 0 95 0 0"})) << "of the last run only";

    filter->EnableDetection(TRUE);
    for (int frame = 0; frame < 65536 + 10; ++frame)
        filter.Send(90);
    const Rows rows = filter.Figures();
    ASSERT_EQ(rows.size(), 65534u) << "room for 65536, of which two are held back";
    EXPECT_EQ(rows.front(), "10 0 90 0 0");
    EXPECT_EQ(rows.back(), "65543 0 90 0 0");
}

TEST(Tuning, DistancesReachBackAsFarAsTheRun) {
    TunedFilter filter;
    KxFrameFigures figures[80];
    KxFrameDistances found[80];
    ULONG taken = 77;
    EXPECT_EQ(filter->GetFrameDistances(1, figures, nullptr, &taken), E_POINTER);
    filter->SetParameter(KxClamp, 50);
    filter->EnableFrameFigures(TRUE);
    const auto levelOf = [](int frame) { return static_cast<std::uint8_t>(frame < 70 ? 20 + frame : 200); };
    for (const bool isMeasured : {false, true, false}) {
        filter->EnableDetection(TRUE);
        if (!isMeasured)
            filter->EnableFrameDistances(TRUE); // too late for this run
        for (int frame = 0; frame < 72; ++frame)
            filter.Send(levelOf(frame));
        filter->EnableDetection(FALSE);
        ASSERT_EQ(filter->GetFrameDistances(80, figures, found, &taken), S_OK);
        ASSERT_EQ(taken, 72u);
        for (int frame = 0; frame < 72; ++frame)
            for (std::size_t i = 0; i < std::size(KxDistanceSpans); ++i) {
                const int before = frame - KxDistanceSpans[i];
                ASSERT_EQ(found[frame].nDistance[i],
                          isMeasured && before >= 0 ? std::min(50, levelOf(frame) - levelOf(before)) : -1)
                    << frame << ' ' << KxDistanceSpans[i];
            }
        filter->EnableFrameDistances(isMeasured ? FALSE : TRUE);
    }
}

} // namespace
