#include "running/run/FilterGraph.h"

#include "reading/base/HostError.h"
#include "running/detection/DetectionCalls.h"
#include "running/detection/MakeFilter.h"

namespace scenedetect {
namespace {

ComRef<IBaseFilter> MakeSceneDetectFilter() {
    void* factory = nullptr;
    Require(DllGetClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &factory),
            "no scene detect filter");
    const ComRef<IClassFactory> classFactory(static_cast<IClassFactory*>(factory));
    void* filter = nullptr;
    Require(classFactory->CreateInstance(nullptr, IID_IBaseFilter, &filter),
            "the scene detect filter can't be made");
    return ComRef<IBaseFilter>(static_cast<IBaseFilter*>(filter));
}

ComRef<IPin> FindPin(IBaseFilter& filter, LPCWSTR id) {
    IPin* pin = nullptr;
    return ComRef<IPin>(SUCCEEDED(filter.FindPin(id, &pin)) ? pin : nullptr);
}

} // namespace

FilterGraph::FilterGraph(const PictureFormat& format, std::size_t count)
    : m_source(MakeFilter<SourceFilter>(format)), m_sink(MakeFilter<SinkFilter>()) {
    for (std::size_t i = 0; i < count; ++i) {
        SceneDetect& made = m_detectors.emplace_back();
        made.filter = MakeSceneDetectFilter();
        made.scenes = QueryFor<IKxSceneDetect2>(made.filter.get(), IID_IKxSceneDetect2);
        made.scenesEx = QueryFor<IKxSceneDetectEx>(made.filter.get(), IID_IKxSceneDetectEx);
        made.tuning = QueryFor<IKxSceneDetectTuning>(made.filter.get(), IID_IKxSceneDetectTuning);
        made.distances = QueryFor<IKxSceneDetectDistances>(made.filter.get(), IID_IKxSceneDetectDistances);
        if (!made.scenes || !made.scenesEx || !made.tuning || !made.distances)
            throw HostError("the scene detect filter lacks its control interfaces");
    }
    m_upstream.push_back(m_sink.get());
    for (auto each = m_detectors.rbegin(); each != m_detectors.rend(); ++each)
        m_upstream.push_back(each->filter.get());
    m_upstream.push_back(m_source.get());
}

FilterGraph::~FilterGraph() {
    Stop();
    // Connected pins hold each other; that ends here.
    for (const SceneDetect& each : m_detectors)
        for (const ComRef<IPin>& pin : {FindPin(*each.filter, L"In"), FindPin(*each.filter, L"Out")})
            if (pin)
                pin->Disconnect();
    m_source->GetPin(0)->Disconnect();
    m_sink->GetPin(0)->Disconnect();
}

std::optional<std::size_t> FilterGraph::Connect() {
    IPin* output = m_source->GetPin(0);
    ComRef<IPin> held;
    for (std::size_t i = 0; i < m_detectors.size(); ++i) {
        const ComRef<IPin> input = FindPin(*m_detectors[i].filter, L"In");
        if (!input || FAILED(output->Connect(input.get(), nullptr)))
            return i;
        held = FindPin(*m_detectors[i].filter, L"Out");
        output = held.get();
    }
    Require(output->Connect(m_sink->GetPin(0), nullptr), "the filter graph can't be connected");
    return std::nullopt;
}

HRESULT FilterGraph::Run() {
    HRESULT hr = S_OK;
    for (IBaseFilter* filter : m_upstream)
        if (SUCCEEDED(hr))
            hr = filter->Pause();
    for (IBaseFilter* filter : m_upstream)
        if (SUCCEEDED(hr))
            hr = filter->Run(0);
    return hr;
}

void FilterGraph::Stop() noexcept {
    for (IBaseFilter* filter : m_upstream)
        filter->Stop();
}

} // namespace scenedetect
