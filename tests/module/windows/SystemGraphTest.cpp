// The filter in the system's own graph: pictures pass untouched, states change, nothing hangs or leaks.
#include "tests/module/windows/SystemGraph.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

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

DWORD Handles() {
    DWORD count = 0;
    EXPECT_TRUE(GetProcessHandleCount(GetCurrentProcess(), &count));
    return count;
}

TEST_F(InSystemGraph, LoadsAndUnloadsWithoutALeak) {
    DWORD handlesBefore = 0;
    for (int round = 0; round < 20; ++round) {
        {
            const SystemGraph graph(*m_stream);
            graph.Connect();
            graph.Change(State_Running);
            EXPECT_EQ(m_stream->SendGrey(90), S_OK);
        }
        m_stream.reset();
        ASSERT_EQ(m_module.canUnloadNow(), S_OK);
        m_module.library.Close();
        ASSERT_EQ(GetModuleHandleW(L"KxSceneDetect2.ax"), nullptr);
        ASSERT_NO_FATAL_FAILURE(m_module.Load());
        m_stream.emplace(m_module.MakeFilter());
        if (round == 0)
            handlesBefore = Handles(); // the first round is the system's own, too
    }
    EXPECT_LE(Handles(), handlesBefore);
}

} // namespace
