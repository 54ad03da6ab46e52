// The filter in the system's own graph: pictures pass untouched, states change, nothing hangs or leaks.
#include "tests/module/windows/SystemGraph.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

#include <future>

namespace {

class InSystemGraph : public Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
        ASSERT_NO_FATAL_FAILURE(m_module.Load());
        m_stream.emplace(m_module.MakeFilter());
    }
    void TearDown() override {
        m_stream.reset();
        EXPECT_EQ(m_module.canUnloadNow(), S_OK);
        m_module.library.Close();
        CoUninitialize();
    }

    LoadedModule m_module;
    std::optional<SceneStream> m_stream;
};

TEST_F(InSystemGraph, DownstreamsTypeAndAllocatorReachTheSource) {
    const CMediaType wide = FourccType("YUY2", 128, 48, 16);
    const CMediaType narrow = FourccType("YUY2", 64, 48, 16);
    SceneStream& stream = *m_stream;
    stream.source->pin.types = {{wide, narrow}};
    stream.sink->pin.types = {{narrow}, [&](const CMediaType& mt) { return mt == narrow; }};
    const SystemGraph graph(stream);
    EXPECT_EQ(graph.ConnectOutput(), E_UNEXPECTED) << "the input comes first";
    ASSERT_EQ(graph.ConnectInput(), S_OK);
    EXPECT_TRUE(stream.source->pin.CurrentMediaType() == wide);
    // The graph connects the input once more, to what the output has agreed.
    ASSERT_EQ(graph.ConnectOutput(), S_OK);
    for (IPin* pin : {static_cast<IPin*>(&stream.source->pin), stream.in.get(), stream.out.get(),
                      static_cast<IPin*>(&stream.sink->pin)}) {
        CMediaType type;
        EXPECT_EQ(pin->ConnectionMediaType(&type), S_OK);
        EXPECT_TRUE(type == narrow);
    }
    EXPECT_EQ(stream.source->pin.Allocator(), stream.sink->pin.Allocator());
    graph.Change(State_Running);
    EXPECT_EQ(stream.SendGrey(1), S_OK);
    EXPECT_EQ(stream.sink->pin.last, stream.lastSent);
}

TEST_F(InSystemGraph, StoppingAndFlushingEndAStreamThatIsBlocked) {
    SceneStream& stream = *m_stream;
    const SystemGraph graph(stream);
    graph.Connect();
    for (int n = 0; n < 200; ++n) {
        const bool flushing = n % 2 != 0;
        stream.sink->pin.samples = 0;
        stream.sink->pin.blocking = n % 4 < 2;
        graph.Change(State_Running);
        HRESULT last = S_OK;
        std::thread streaming([&] {
            do
                last = stream.SendGrey(90);
            while (last == S_OK);
        });
        stream.sink->pin.WaitForSamples(1);
        if (flushing)
            EXPECT_EQ(stream.in->BeginFlush(), S_OK);
        else
            EXPECT_EQ(graph.control->Stop(), S_OK);
        streaming.join();
        if (flushing) {
            EXPECT_EQ(last, S_FALSE);
            EXPECT_EQ(stream.in->EndFlush(), S_OK);
        } else {
            EXPECT_TRUE(last == VFW_E_NOT_COMMITTED || last == VFW_E_WRONG_STATE) << std::hex << last;
        }
    }
}

DWORD Handles() {
    DWORD count = 0;
    EXPECT_TRUE(GetProcessHandleCount(GetCurrentProcess(), &count));
    return count;
}

// The streaming threads outlive the module that they have been in.
// Futures: the latches of some mingw libraries lose wake-ups.
TEST_F(InSystemGraph, LoadsAndUnloadsAgainAndAgain) {
    m_stream.reset();
    m_module.library.Close();
    std::promise<void> allUnloaded;
    const std::shared_future<void> end = allUnloaded.get_future().share();
    std::vector<std::jthread> threads;
    const std::shared_ptr<void> atTheEnd(nullptr, [&](void*) { allUnloaded.set_value(); });
    DWORD handlesBefore = 0;
    constexpr int kRounds = 20;
    for (int round = 0; round < kRounds; ++round) {
        if (round == 1)
            handlesBefore = Handles(); // the first round is the system's own, too
        ASSERT_EQ(GetModuleHandleW(L"KxSceneDetect2.ax"), nullptr);
        ASSERT_NO_FATAL_FAILURE(m_module.Load());
        {
            SceneStream stream(m_module.MakeFilter());
            const SystemGraph graph(stream);
            graph.Connect();
            graph.Change(State_Running);
            std::promise<void> streamed;
            auto hasStreamed = streamed.get_future();
            threads.emplace_back([&stream, end, streamed = std::move(streamed)]() mutable {
                EXPECT_EQ(stream.SendGrey(90), S_OK);
                streamed.set_value();
                end.wait();
            });
            hasStreamed.wait();
            EXPECT_EQ(stream.sink->pin.samples, 1);
        }
        ASSERT_EQ(m_module.canUnloadNow(), S_OK);
        m_module.library.Close();
    }
    constexpr DWORD kHandlesOfAThread = 1;
    EXPECT_LE(Handles(), handlesBefore + (kRounds - 1) * kHandlesOfAThread);
    ASSERT_NO_FATAL_FAILURE(m_module.Load()); // for TearDown
}

} // namespace
