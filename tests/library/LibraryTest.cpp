// The C interface: what scenes tell, settings, restarts, misuse, threads.
#include "tests/DvFrame.h"
#include "tests/library/Detection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>

namespace scenedetect {
namespace {

using namespace testing_support;

using Bytes = std::vector<std::uint8_t>;
using Numbers = std::vector<std::uint32_t>;

// A cut at 5.
const std::vector<int> kCut{90, 90, 90, 90, 90, 200, 200, 200, 200, 200};

TEST(Library, ScenesTellOfTheirOwnFrame) {
    for (const bool isRead : {true, false}) {
        kxscenes_settings settings = Defaults();
        settings.read_timecode = isRead ? 1 : 0;
        Detection detection(settings);
        for (int i = 0; i < 10; ++i) {
            DvFrame dv(false);
            dv.SetLuma(i < 5 ? 180 : 250);
            if (i == 5) { // 10:59:58;07 on 2003-08-24
                dv.SetTimecode(TimePack(59, 28, true)).SetTime(TimePack(39598));
                dv.SetDate({0x62, 0xFF, 0x24, 0x08, 0x03});
            }
            kxscenes_frame frame = DvFrameOf(dv.Bytes());
            frame.time = i == 0 ? KXSCENES_NO_TIME : i * 1000;
            detection.Push(frame);
        }
        const auto scenes = detection.Scenes();
        ASSERT_EQ(scenes.size(), 2u);
        EXPECT_EQ(scenes[0].time, KXSCENES_NO_TIME);
        EXPECT_EQ(scenes[0].timecode.hours, -1);
        EXPECT_EQ(scenes[0].timecode.drop_frame, 0);
        EXPECT_EQ(scenes[0].recorded.year, -1);
        EXPECT_EQ(scenes[0].recorded.hours, -1);
        EXPECT_EQ(scenes[1].method, KXSCENES_VIDEO);
        EXPECT_EQ(scenes[1].frame, 5);
        EXPECT_EQ(scenes[1].time, 5000);
        const kxscenes_timecode& code = scenes[1].timecode;
        const kxscenes_recorded& recorded = scenes[1].recorded;
        if (!isRead) {
            EXPECT_EQ(code.frames, -1);
            EXPECT_EQ(recorded.day, -1);
            continue;
        }
        EXPECT_EQ((std::vector{code.hours, code.minutes, code.seconds, code.frames, code.drop_frame}),
                  (std::vector{0, 0, 59, 28, 1}));
        EXPECT_EQ((std::vector{recorded.year, recorded.month, recorded.day, recorded.hours, recorded.minutes,
                               recorded.seconds}),
                  (std::vector{2003, 8, 24, 10, 59, 58}));
    }
}

TEST(Library, ChangedParametersCountFromTheNextRunAllElseAtOnce) {
    kxscenes_settings settings = Defaults();
    settings.keep_figures = 1;
    Detection detection(settings);
    settings.cut_threshold = 255;
    ASSERT_EQ(kxscenes_change_settings(detection.get(), &settings), KXSCENES_OK);
    detection.PushLevels(kCut);
    EXPECT_EQ(detection.Positions(), (Numbers{0, 5})) << "by the threshold of the run's beginning";
    ASSERT_EQ(kxscenes_restart(detection.get()), KXSCENES_OK);
    detection.PushLevels(kCut);
    EXPECT_EQ(detection.Positions(), (Numbers{0})) << "by the new one";

    settings.method = KXSCENES_INTERVAL;
    settings.interval = 2;
    settings.keep_figures = 0;
    ASSERT_EQ(kxscenes_change_settings(detection.get(), &settings), KXSCENES_OK);
    detection.PushLevels({90, 90, 90});
    EXPECT_EQ(detection.End(), (Found{{10, 12}, {}}));
    kxscenes_settings told{};
    told.struct_size = sizeof told;
    ASSERT_EQ(kxscenes_get_settings(detection.get(), &told), KXSCENES_OK);
    EXPECT_EQ(told.method, KXSCENES_INTERVAL);
    EXPECT_EQ(told.cut_threshold, 255);
}

TEST(Library, AnEndedRunKeepsWhatWasFoundARestartDropsIt) {
    kxscenes_settings settings = Defaults();
    settings.keep_figures = 1;
    Detection detection(settings);
    detection.PushLevels(kCut);
    EXPECT_EQ(detection.Figures().size(), 8u) << "the last two may still change";
    ASSERT_EQ(kxscenes_end(detection.get()), KXSCENES_OK);
    ASSERT_EQ(kxscenes_end(detection.get()), KXSCENES_OK);
    const Bytes bytes(256);
    const kxscenes_frame frame = LumaFrame(bytes, 16, 16, 16);
    EXPECT_EQ(kxscenes_push(detection.get(), &frame), KXSCENES_ERROR_ENDED);
    EXPECT_EQ(kxscenes_mark(detection.get()), KXSCENES_ERROR_ENDED);
    std::int32_t frames = 0;
    EXPECT_EQ(kxscenes_frame_count(detection.get(), &frames), KXSCENES_OK);
    EXPECT_EQ(frames, 10);
    EXPECT_EQ(detection.End(), (Found{{0, 5}, {"8 0 200 0 0", "9 0 200 0 0"}}));

    ASSERT_EQ(kxscenes_restart(detection.get()), KXSCENES_OK);
    detection.PushLevels(kCut);
    ASSERT_EQ(kxscenes_mark(detection.get()), KXSCENES_OK);
    ASSERT_EQ(kxscenes_restart(detection.get()), KXSCENES_OK);
    EXPECT_EQ(detection.End(), Found{});
    ASSERT_EQ(kxscenes_restart(detection.get()), KXSCENES_OK);
    const Bytes tiny(15); // another size, without a whole block
    for (int i = 0; i < 4; ++i)
        detection.Push(LumaFrame(tiny, 5, 3, 5));
    EXPECT_EQ(detection.End(), (Found{{0}, {}}));
}

TEST(Library, MisuseGivesErrors) {
    kxscenes_detector* detector = nullptr;
    ASSERT_EQ(kxscenes_create(nullptr, &detector), KXSCENES_OK);
    const Bytes bytes(64 * 48);
    const kxscenes_frame good = LumaFrame(bytes, 64, 48, 64);
    ASSERT_EQ(kxscenes_push(detector, &good), KXSCENES_OK);

    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int64_t kMost64 = std::numeric_limits<std::int64_t>::max();
    using Frame = kxscenes_frame;
    const struct {
        const char* name;
        void (*spoil)(Frame&);
        std::int32_t result;
    } frames[] = {
        {"no size", [](Frame& f) { f.struct_size = 0; }, KXSCENES_ERROR_SIZE},
        {"a later size", [](Frame& f) { f.struct_size += 8; }, KXSCENES_ERROR_SIZE},
        {"no data", [](Frame& f) { f.data = nullptr; }, KXSCENES_ERROR_NULL},
        {"format -1", [](Frame& f) { f.format = -1; }, KXSCENES_ERROR_VALUE},
        {"format 7", [](Frame& f) { f.format = 7; }, KXSCENES_ERROR_VALUE},
        {"width 0", [](Frame& f) { f.width = 0; }, KXSCENES_ERROR_VALUE},
        {"height -48", [](Frame& f) { f.height = -48; }, KXSCENES_ERROR_VALUE},
        {"too large", [](Frame& f) { f.width = f.height = kMost; }, KXSCENES_ERROR_VALUE},
        {"stride 0", [](Frame& f) { f.stride = 0; }, KXSCENES_ERROR_STRIDE},
        {"stride 63", [](Frame& f) { f.stride = 63; }, KXSCENES_ERROR_STRIDE},
        {"stride -63", [](Frame& f) { f.stride = -63; }, KXSCENES_ERROR_STRIDE},
        {"too short for YUY2", [](Frame& f) { f.format = KXSCENES_YUY2; }, KXSCENES_ERROR_STRIDE},
        {"beyond memory", [](Frame& f) { f.stride = kMost64 / 48; }, KXSCENES_ERROR_STRIDE},
        {"beyond memory, upward", [](Frame& f) { f.stride = -kMost64 - 1; }, KXSCENES_ERROR_STRIDE},
        {"shift 9", [](Frame& f) { f.format = KXSCENES_LUMA16, f.shift = 9; }, KXSCENES_ERROR_VALUE},
        {"narrower", [](Frame& f) { f.width = 56; }, KXSCENES_ERROR_CHANGED},
        {"lower", [](Frame& f) { f.height = 40; }, KXSCENES_ERROR_CHANGED},
        {"DV", [](Frame& f) { f.format = KXSCENES_DV; }, KXSCENES_ERROR_CHANGED},
        {"DV of -1 bytes", [](Frame& f) { f.format = KXSCENES_DV, f.dv_size = -1; }, KXSCENES_ERROR_VALUE},
    };
    for (const auto& [name, spoil, result] : frames) {
        kxscenes_frame frame = good;
        spoil(frame);
        EXPECT_EQ(kxscenes_push(detector, &frame), result) << name;
    }
    std::int32_t count = 0;
    EXPECT_EQ(kxscenes_frame_count(detector, &count), KXSCENES_OK);
    EXPECT_EQ(count, 1) << "refused frames do not count";

    using Settings = kxscenes_settings;
    const struct {
        const char* name;
        void (*spoil)(Settings&);
        std::int32_t result;
    } settings[] = {
        {"no size", [](Settings& s) { s.struct_size = 0; }, KXSCENES_ERROR_SIZE},
        {"method -1", [](Settings& s) { s.method = -1; }, KXSCENES_ERROR_VALUE},
        {"method 4", [](Settings& s) { s.method = 4; }, KXSCENES_ERROR_VALUE},
        {"interval", [](Settings& s) { s.interval = -1; }, KXSCENES_ERROR_VALUE},
        {"half a rate", [](Settings& s) { s.rate_numerator = 25; }, KXSCENES_ERROR_VALUE},
        {"a negative rate", [](Settings& s) { s.rate_numerator = s.rate_denominator = -1; },
         KXSCENES_ERROR_VALUE},
        {"threshold", [](Settings& s) { s.cut_threshold = 256; }, KXSCENES_ERROR_VALUE},
        {"dark level", [](Settings& s) { s.dark_level = -2; }, KXSCENES_ERROR_VALUE},
        {"clamp", [](Settings& s) { s.clamp = 0; }, KXSCENES_ERROR_VALUE},
        {"votes", [](Settings& s) { s.votes = 5; }, KXSCENES_ERROR_VALUE},
        {"longest scene", [](Settings& s) { s.longest_scene = -1; }, KXSCENES_ERROR_VALUE},
    };
    for (const auto& [name, spoil, result] : settings) {
        kxscenes_settings spoilt = Defaults();
        spoil(spoilt);
        EXPECT_EQ(kxscenes_change_settings(detector, &spoilt), result) << name;
        kxscenes_detector* none = detector;
        EXPECT_EQ(kxscenes_create(&spoilt, &none), result) << name;
        EXPECT_EQ(none, nullptr) << name;
    }
    kxscenes_scene scene{};
    kxscenes_figures figures{};
    EXPECT_EQ(kxscenes_take_scene(detector, &scene), KXSCENES_ERROR_SIZE);
    EXPECT_EQ(kxscenes_take_figures(detector, &figures, 1, &count), KXSCENES_ERROR_SIZE);
    figures.struct_size = sizeof figures;
    EXPECT_EQ(kxscenes_take_figures(detector, &figures, -1, &count), KXSCENES_ERROR_VALUE);
    EXPECT_EQ(kxscenes_take_figures(detector, &figures, 1, nullptr), KXSCENES_ERROR_NULL);
    EXPECT_EQ(kxscenes_take_figures(detector, &figures, 1, &count), KXSCENES_NOTHING);
    EXPECT_EQ(count, 0);
    kxscenes_destroy(detector);
}

TEST(Library, NullIsAnErrorEverywhere) {
    kxscenes_settings settings = Defaults();
    kxscenes_scene scene{};
    kxscenes_figures figures{};
    kxscenes_frame frame{};
    std::int32_t count = 0;
    kxscenes_destroy(nullptr);
    Detection detection(settings);
    kxscenes_detector* const some = detection.get();
    for (const std::int32_t result :
         {kxscenes_create(&settings, nullptr), kxscenes_default_settings(nullptr),
          kxscenes_get_settings(nullptr, &settings), kxscenes_get_settings(some, nullptr),
          kxscenes_change_settings(nullptr, &settings), kxscenes_change_settings(some, nullptr),
          kxscenes_push(nullptr, &frame), kxscenes_push(some, nullptr), kxscenes_mark(nullptr),
          kxscenes_take_scene(nullptr, &scene), kxscenes_take_scene(some, nullptr),
          kxscenes_take_figures(nullptr, &figures, 1, &count),
          kxscenes_take_figures(some, nullptr, 1, &count), kxscenes_frame_count(nullptr, &count),
          kxscenes_frame_count(some, nullptr), kxscenes_end(nullptr), kxscenes_restart(nullptr)})
        EXPECT_EQ(result, KXSCENES_ERROR_NULL);
}

TEST(Library, EveryResultHasWordsOfItsOwn) {
    std::vector<std::string> texts;
    for (int result = KXSCENES_ERROR_INTERNAL; result <= KXSCENES_NOTHING; ++result) {
        const std::string text = kxscenes_error_text(result);
        EXPECT_EQ(std::ranges::count(texts, text), 0) << text;
        texts.push_back(text);
    }
    EXPECT_STREQ(kxscenes_error_text(-999), "unknown result");
    EXPECT_EQ(kxscenes_version(), KXSCENES_VERSION);
}

TEST(LibraryThreads, ManyDetectorsAtOnceFindWhatOneFinds) {
    std::vector<Found> found(4);
    {
        std::vector<std::jthread> threads;
        for (Found& one : found)
            threads.emplace_back([&one] {
                kxscenes_settings settings = Defaults();
                settings.keep_figures = 1;
                Detection detection(settings);
                for (int i = 0; i < 20; ++i)
                    detection.PushLevels(kCut);
                one = detection.End();
            });
    }
    Numbers cuts;
    for (std::uint32_t at = 0; at < 200; at += 5)
        cuts.push_back(at);
    for (const Found& one : found) {
        EXPECT_EQ(one.positions, cuts);
        EXPECT_EQ(one.figures, found[0].figures);
        EXPECT_EQ(one.figures.size(), 200u);
    }
}

TEST(LibraryThreads, CallsOnOneDetectorTakeTurns) {
    kxscenes_settings settings = Defaults();
    settings.method = KXSCENES_MANUAL;
    Detection detection(settings);
    std::atomic<bool> isOver = false;
    std::size_t taken = 0;
    {
        std::jthread taker([&] {
            while (!isOver)
                taken += detection.Scenes().size();
        });
        std::jthread changer([&] {
            kxscenes_settings changed = settings;
            while (!isOver) {
                changed.interval = changed.interval % 9 + 1;
                EXPECT_EQ(kxscenes_change_settings(detection.get(), &changed), KXSCENES_OK);
            }
        });
        for (int i = 0; i < 500; ++i) {
            if (i % 5 == 0) {
                EXPECT_EQ(kxscenes_mark(detection.get()), KXSCENES_OK);
            }
            detection.PushLevels({90});
        }
        isOver = true;
    }
    EXPECT_EQ(taken + detection.Scenes().size(), 100u);
}

} // namespace
} // namespace scenedetect
