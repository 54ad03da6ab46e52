#include "hosts/kxscenes/FilterGraph.h"

#include "hosts/shared/DetectionCalls.h"
#include "hosts/shared/HostError.h"
#include "hosts/shared/MakeFilter.h"

// The entry point of the filter's module.
STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);

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

FilterGraph::FilterGraph(const PictureFormat& format)
    : m_source(MakeFilter<SourceFilter>(format)),
      m_sink(MakeFilter<SinkFilter>()),
      m_filter(MakeSceneDetectFilter()),
      m_scenes(QueryFor<IKxSceneDetect2>(m_filter.get(), IID_IKxSceneDetect2)),
      m_scenesEx(QueryFor<IKxSceneDetectEx>(m_filter.get(), IID_IKxSceneDetectEx)) {
    if (!m_scenes || !m_scenesEx)
        throw HostError("the scene detect filter lacks its control interfaces");
}

FilterGraph::~FilterGraph() {
    Stop();
    // Connected pins hold each other; that ends here.
    for (const ComRef<IPin>& pin : {FindPin(*m_filter, L"In"), FindPin(*m_filter, L"Out")})
        if (pin)
            pin->Disconnect();
    m_source->GetPin(0)->Disconnect();
    m_sink->GetPin(0)->Disconnect();
}

HRESULT FilterGraph::Connect() {
    const ComRef<IPin> input = FindPin(*m_filter, L"In");
    const ComRef<IPin> output = FindPin(*m_filter, L"Out");
    if (!input || !output)
        return VFW_E_NOT_FOUND;
    const HRESULT hr = m_source->GetPin(0)->Connect(input.get(), nullptr);
    return FAILED(hr) ? hr : output->Connect(m_sink->GetPin(0), nullptr);
}

HRESULT FilterGraph::Run() {
    // From the end to the beginning, so that none delivers to one that is stopped.
    IBaseFilter* const filters[] = {m_sink.get(), m_filter.get(), m_source.get()};
    HRESULT hr = S_OK;
    for (IBaseFilter* filter : filters)
        if (SUCCEEDED(hr))
            hr = filter->Pause();
    for (IBaseFilter* filter : filters)
        if (SUCCEEDED(hr))
            hr = filter->Run(0);
    return hr;
}

void FilterGraph::Stop() {
    IBaseFilter* const filters[] = {m_sink.get(), m_filter.get(), m_source.get()};
    for (IBaseFilter* filter : filters)
        filter->Stop();
}

} // namespace scenedetect
