// The system's filter graph with the module's filter, a source and a sink in it.
#pragma once

#include "tests/SceneStream.h"

namespace scenedetect::testing_support {

class SystemGraph {
  public:
    explicit SystemGraph(const SceneStream& stream) : m_stream(stream) {
        void* made = nullptr;
        EXPECT_EQ(
            CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterGraph2, &made),
            S_OK);
        graph.reset(static_cast<IFilterGraph2*>(made));
        control = QueryFor<IMediaControl>(graph.get(), IID_IMediaControl);
        EXPECT_EQ(graph->AddFilter(stream.source, L"Source"), S_OK);
        EXPECT_EQ(graph->AddFilter(stream.filter.get(), L"Filter"), S_OK);
        EXPECT_EQ(graph->AddFilter(stream.sink, L"Sink"), S_OK);
    }
    ~SystemGraph() { control->Stop(); }
    SystemGraph(const SystemGraph&) = delete;
    SystemGraph& operator=(const SystemGraph&) = delete;

    HRESULT ConnectInput() const {
        return graph->ConnectDirect(&m_stream.source->pin, m_stream.in.get(), nullptr);
    }
    HRESULT ConnectOutput() const {
        return graph->ConnectDirect(m_stream.out.get(), &m_stream.sink->pin, nullptr);
    }
    /// Upstream first.
    void Connect() const {
        ASSERT_EQ(ConnectInput(), S_OK);
        ASSERT_EQ(ConnectOutput(), S_OK);
    }
    /// Changes the state and waits for the change.
    void Change(FILTER_STATE state) const {
        const HRESULT hr = state == State_Stopped  ? control->Stop()
                           : state == State_Paused ? control->Pause()
                                                   : control->Run();
        ASSERT_GE(hr, S_OK);
        OAFilterState reached = -1;
        ASSERT_EQ(control->GetState(10000, &reached), S_OK);
        ASSERT_EQ(reached, static_cast<OAFilterState>(state));
    }

    ComRef<IFilterGraph2> graph;
    ComRef<IMediaControl> control;

  private:
    const SceneStream& m_stream;
};

} // namespace scenedetect::testing_support
