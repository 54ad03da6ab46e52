// The control interfaces, and the filter in a graph: samples pass untouched while hosts steer and drain.
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/filter/FilterGraph.h"
#include "tests/filter/WatchedFilter.h"

namespace {

TEST(Control, InterfacesOfTheFilter) {
    const WatchedFilter filter(KxMethodManual, Yuy2());
    const auto unknown = QueryFor<IUnknown>(filter->GetOwner(), IID_IUnknown);
    const auto first = QueryFor<IUnknown>(unknown.get(), IID_IKxSceneDetect);
    const auto second = QueryFor<IUnknown>(unknown.get(), IID_IKxSceneDetect2);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first.get(), second.get()) << "one pointer serves both";
    const auto ex = QueryFor<IKxSceneDetectEx>(first.get(), IID_IKxSceneDetectEx);
    ASSERT_TRUE(ex);
    EXPECT_EQ(QueryFor<IUnknown>(ex.get(), IID_IUnknown), unknown);
    for (const IID& iid : {IID_IPersist, IID_IMediaFilter, IID_IBaseFilter, IID_IKxSceneDetectTuning})
        EXPECT_TRUE(QueryFor<IUnknown>(ex.get(), iid));
}

TEST(Control, Defaults) {
    WatchedFilter filter(KxMethodManual, Yuy2());
    ULONG value = 77;
    EXPECT_EQ(filter->GetDetectionMethod(&value), S_OK);
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(filter->GetDetectionMethod(nullptr), E_FAIL);
    EXPECT_EQ(filter->IsTimecodeEnabled(), S_FALSE);
    EXPECT_EQ(filter->SetDetectionMethod(4711), S_OK);
    filter->GetDetectionMethod(&value);
    EXPECT_EQ(value, 4711u) << "not checked";
}

TEST(Control, ScenesAreHandedOutOldestFirst) {
    WatchedFilter filter(KxMethodInterval, Yuy2());
    filter->SetSceneInterval(1);
    filter->EnableDetection(TRUE);
    for (int i = 0; i < 3; ++i) {
        filter.Ex().EnableSceneBitmaps(i != 2);
        filter.Send(std::vector<std::uint8_t>(kYuy2Bytes, static_cast<std::uint8_t>(100 + i)));
    }
    ULONG count = 0;
    filter.Ex().GetSceneCount(&count);
    EXPECT_EQ(count, 3u);

    BITMAPINFOHEADER* header = nullptr;
    BYTE* bits = nullptr;
    ULONG position = 77;
    ASSERT_EQ(filter->GetNextScene(&header, &bits, &position), S_OK);
    EXPECT_EQ(position, 0u);
    ASSERT_TRUE(header && bits);
    EXPECT_EQ(header->biWidth, 64);
    EXPECT_EQ(header->biSizeImage, kYuy2Bytes);
    EXPECT_EQ(bits[kYuy2Bytes - 1], 100);
    // Not released: the next call does it.
    ASSERT_EQ(filter->GetNextScene(nullptr, &bits, nullptr), S_OK);
    EXPECT_EQ(bits[0], 101);
    EXPECT_EQ(filter->ReleaseScene(), S_OK);
    ASSERT_EQ(filter->GetNextScene(&header, &bits, &position), S_OK);
    EXPECT_EQ(position, 2u);
    EXPECT_EQ(header, nullptr) << "pictures are off";
    EXPECT_EQ(bits, nullptr);
    EXPECT_EQ(filter->GetNextScene(&header, &bits, &position), VFW_S_NO_MORE_ITEMS);
    EXPECT_EQ(position, 0xFFFFFFFFu);
    EXPECT_EQ(filter->ReleaseScene(), VFW_S_NO_MORE_ITEMS);
}

TEST(Control, OffsetsHoldUntilTheRunAndTheStoppedStateEnd) {
    const auto positionOf = [](bool offsetAfterEnabling, bool paused) {
        WatchedFilter filter(KxMethodVideo, Yuy2());
        if (!offsetAfterEnabling)
            filter.Ex().SetFrameOffset(9);
        filter->EnableDetection(TRUE);
        if (offsetAfterEnabling)
            filter.Ex().SetFrameOffset(9);
        if (paused)
            filter->Pause();
        LooseSample sample(std::vector<std::uint8_t>(kYuy2Bytes, 90)); // no times: frames are counted
        filter.Send(sample);
        const Positions positions = filter.Drain();
        return positions.size() == 1 ? positions[0] : ULONG{0xFFFFFFFF};
    };
    EXPECT_EQ(positionOf(true, false), 7u);
    EXPECT_EQ(positionOf(false, false), 0u);
    EXPECT_EQ(positionOf(true, true), 0u);
}

TEST(Control, SceneListFileIsNamedAndUnnamed) {
    const TempFolder folder;
    const auto path = folder / "scenes.xml";
    WatchedFilter filter(KxMethodManual, Yuy2());
    const struct {
        const char* name;
        HRESULT (*then)(SceneDetectFilter&);
        bool isWritten;
    } cases[] = {
        {"named", [](SceneDetectFilter& one) { return one.EnableDetection(TRUE); }, true},
        {"disabled", [](SceneDetectFilter& one) { return one.DisableSceneListFile(); }, false},
        {"null", [](SceneDetectFilter& one) { return one.EnableSceneListFile(nullptr); }, false},
        {"empty", [](SceneDetectFilter& one) { return one.EnableSceneListFile(L""); }, false},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(filter->EnableSceneListFile(Wide(path).c_str()), S_OK);
        EXPECT_EQ(one.then(*filter.operator->()), S_OK);
        EXPECT_EQ(filter->EnableDetection(FALSE), S_OK);
        EXPECT_EQ(std::filesystem::remove(path), one.isWritten) << one.name;
    }
}

// In the same buffers, or in copies where the source's may not be written to.
TEST(Control, SamplesPassUntouched) {
    Picture picture(kYuy2Bytes);
    for (std::size_t i = 0; i < picture.size(); ++i)
        picture[i] = static_cast<std::uint8_t>(i * 7);
    for (const bool readOnly : {false, true}) {
        Graph graph;
        graph.source->pin.readOnly = readOnly;
        graph.made.SetDetectionMethod(KxMethodVideo);
        graph.Connect();
        graph.made.EnableDetection(TRUE);
        REFERENCE_TIME sent = 0;
        graph.sink->pin.onSample = [&](IMediaSample* sample) {
            EXPECT_EQ(sample == graph.lastSent, !readOnly);
            BYTE* data = nullptr;
            sample->GetPointer(&data);
            ASSERT_EQ(sample->GetActualDataLength(), static_cast<LONG>(picture.size()));
            EXPECT_TRUE(std::equal(picture.begin(), picture.end(), data));
            REFERENCE_TIME start = 0;
            REFERENCE_TIME stop = 0;
            EXPECT_EQ(sample->GetTime(&start, &stop), S_OK);
            EXPECT_EQ(start, sent);
            EXPECT_EQ(stop, sent + Graph::kFrame);
        };
        graph.Pause();
        for (; sent < 10 * Graph::kFrame; sent += Graph::kFrame)
            EXPECT_EQ(graph.Send(picture, sent), S_OK);
        EXPECT_EQ(graph.sink->pin.samples, 10);
    }
}

// Everything that hosts may do at any time, against a stream that never pauses.
TEST(Control, HostsSteerAndDrainWhileTheStreamRuns) {
    const TempFolder folder;
    const std::wstring path = Wide(folder / "scenes.xml");
    Graph graph;
    graph.Connect();
    graph.Pause();
    SceneDetectFilter& filter = graph.made;
    filter.SetSceneInterval(2);

    std::atomic<bool> done = false;
    std::atomic<int> sent = 0;
    std::jthread streaming([&] {
        for (int i = 0; !done; ++i, ++sent)
            if (graph.Send(Picture(kYuy2Bytes, i % 5 == 0 ? 220 : 80), i * Graph::kFrame) != S_OK)
                break;
    });
    std::size_t drained = 0;
    for (int round = 0; round < 120; ++round) {
        filter.SetDetectionMethod(static_cast<ULONG>(round % 5));
        filter.EnableSceneBitmaps(round % 3 == 0);
        filter.EnableTimecode(round % 2);
        filter.EnableSceneListFile(path.c_str());
        filter.SetParameter(KxLongestScene, round % 4);
        filter.EnableFrameFigures(round % 6 != 5);
        filter.EnableDetection(TRUE);
        filter.MarkScene();
        filter.SetFrameOffset(round);
        filter.SetTimeOffset(round);
        for (const int target = sent + 3; sent < target;)
            std::this_thread::yield();
        ULONG frames = 0;
        ULONG position = 0;
        ULONG last = 0;
        BYTE* bits = nullptr;
        filter.GetFrameCount(&frames);
        EXPECT_LE(frames, static_cast<ULONG>(sent) + 1);
        while (filter.GetNextScene(nullptr, &bits, &position) == S_OK) {
            EXPECT_TRUE(!bits || bits[0] == 220 || bits[0] == 80);
            EXPECT_GE(position, last) << "a scene of the run before";
            last = position;
            ++drained;
        }
        filter.EnableDetection(FALSE);
        KxFrameFigures figures{};
        for (ULONG taken = 0, before = 0; filter.GetFrameFigures(1, &figures, &taken) == S_OK;) {
            EXPECT_EQ(figures.dwPosition, before++) << "a frame of the run before";
            EXPECT_TRUE(figures.nLevel == 220 || figures.nLevel == 80);
        }
        ULONG left = 77;
        filter.GetSceneCount(&left);
        EXPECT_EQ(left, 0u);
    }
    done = true;
    streaming.join();
    EXPECT_GT(drained, 120u) << "every run has its first frame's scene";
}

} // namespace
