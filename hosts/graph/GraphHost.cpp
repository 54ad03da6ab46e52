#include "hosts/graph/GraphHost.h"

#include "filter/MediaTypes.h"
#include "hosts/graph/Com.h"
#include "hosts/graph/OpenSource.h"
#include "reading/base/FirstError.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"
#include "running/detection/MakeFilter.h"
#include "running/detection/SceneListCheck.h"

#include <string>
#include <utility>

namespace scenedetect {
namespace {

// Takes any sample and throws it away. Some sets of headers lack its class id.
constexpr CLSID kNullRenderer = {
    0xC1F400A4, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};

constexpr long kPollMilliseconds = 10;

} // namespace

GraphHost::GraphHost(const GraphOptions& options, std::atomic<bool>& stop, Console& console)
    : m_options(options),
      m_stop(stop),
      m_console(console),
      m_module(options.modulePath),
      m_graph(Create<IGraphBuilder>(CLSID_FilterGraph, IID_IGraphBuilder, "the filter graph")),
      m_filter(m_module.MakeFilter()),
      m_scenes(As<IKxSceneDetect2>(m_filter.get(), IID_IKxSceneDetect2, "the scene detect filter")),
      m_scenesEx(As<IKxSceneDetectEx>(m_filter.get(), IID_IKxSceneDetectEx, "the scene detect filter")),
      m_renderer(Create<IBaseFilter>(kNullRenderer, IID_IBaseFilter, "the system's null renderer")),
      m_marks(options.detection.marks, options.detection.methods.front()),
      m_addedFilter(*m_graph, *m_filter, L"Scene detection"),
      m_addedRenderer(*m_graph, *m_renderer, L"End"),
      m_source(OpenSource(*m_graph, options, stop, console)) {
    ChooseDetection(*m_scenes, *m_scenesEx, options.detection.methods.front(), options.detection);
    Connect();
    SetParameters();
    m_csv.emplace(m_source->Scale(), SceneCsv::Columns{}, "");
    // Without a clock samples go as fast as they can.
    Require(As<IMediaFilter>(m_graph.get(), IID_IMediaFilter, "the filter graph")->SetSyncSource(nullptr),
            "the filter graph can't do without a clock");
}

void GraphHost::Connect() {
    // Directly, so that the graph puts no decoder or converter of its own between.
    const auto connect = [this](IPin& output, IBaseFilter& next) {
        return m_graph->ConnectDirect(&output, FirstPin(next, PINDIR_INPUT).get(), nullptr);
    };
    ComRef<IPin> marked;
    if (!m_options.detection.marks.empty()) {
        m_marker = MakeFilter<MarkFilter>(*m_scenes, m_marks);
        m_addedMarker.emplace(*m_graph, *m_marker, L"Marks");
        Require(connect(m_source->Output(), *m_marker), "the marking filter can't be connected");
        marked = FirstPin(*m_marker, PINDIR_OUTPUT);
    }
    if (FAILED(connect(marked ? *marked : m_source->Output(), *m_filter)))
        throw HostError(RefusalText(m_options.detection.methods.front(), m_options.inputs.front()));
    Require(connect(*FirstPin(*m_filter, PINDIR_OUTPUT), *m_renderer),
            "the null renderer can't be connected");
}

// Once the filter knows its pictures, whose size an area may need.
void GraphHost::SetParameters() const {
    ParameterChoice choice = m_options.detection.parameters;
    if (choice.IsEmpty())
        return;
    CMediaType type;
    Require(FirstPin(*m_filter, PINDIR_INPUT)->ConnectionMediaType(&type),
            "the scene detect filter is not connected");
    PictureFormat format;
    if (const BITMAPINFOHEADER* const header = GetBitmapHeader(type)) {
        format.width = header->biWidth;
        format.height = header->biHeight;
    }
    SettleArea(choice, format, {}, m_options.inputs.front());
    ApplyParameters(
        *As<IKxSceneDetectTuning>(m_filter.get(), IID_IKxSceneDetectTuning, "the scene detect filter"),
        choice);
}

void GraphHost::Run() {
    const auto control = As<IMediaControl>(m_graph.get(), IID_IMediaControl, "the filter graph");
    BeginDetection(*m_scenes, m_options.xmlPath, m_options.inputs.front());
    // S_FALSE means that not all filters run yet.
    Require(control->Run(), "the filter graph can't be started");
    m_source->Start();

    // Whatever comes, the run is brought to its end.
    FirstError error;
    error.Attempt([this] { WaitForEnd(); });
    const bool isInterrupted = m_stop && !error;
    if (error)
        m_stop = true;
    // Once nothing streams any more, what is in the queue is all.
    control->Stop();
    const bool isWritable = !error;
    error.Attempt([this] { m_source->Finish(); });
    if (isWritable)
        error.Attempt([this] { PrintScenes(); });
    m_scenes->EnableDetection(FALSE);
    if (isWritable && !m_options.xmlPath.empty())
        error.Attempt([this] { (void)ReadSceneList(m_options.xmlPath, m_csv->SceneCount()); });
    error.Rethrow();
    ReportEnd(isInterrupted);
}

void GraphHost::WaitForEnd() {
    const auto events = As<IMediaEvent>(m_graph.get(), IID_IMediaEvent, "the filter graph");
    bool isOver = false;
    while (!isOver && !m_stop) {
        long code = 0;
        LONG_PTR first = 0;
        LONG_PTR second = 0;
        if (SUCCEEDED(events->GetEvent(&code, &first, &second, kPollMilliseconds))) {
            events->FreeEventParams(code, first, second);
            if (code == EC_ERRORABORT)
                Require(static_cast<HRESULT>(first),
                        m_options.inputs.front() + ": the filter graph broke off");
            isOver = code == EC_COMPLETE || code == EC_ERRORABORT;
        }
        PrintScenes();
    }
}

void GraphHost::PrintScenes() {
    TakeScenes(*m_scenes,
               [this](std::int32_t position) { m_lines += m_csv->Line(m_source->PlaceOf(position), ""); });
    WriteOutput(std::exchange(m_lines, {}));
}

void GraphHost::ReportEnd(bool isInterrupted) {
    ULONG frames = 0;
    m_scenes->GetFrameCount(&frames);
    if (isInterrupted)
        m_console.Message("stopped after " + std::to_string(frames) + " frames");
    const std::string unused = UnusedMarksText(m_marks, frames, m_options.detection.methods.front());
    if (!unused.empty())
        m_console.Warning(unused);
    if (m_options.detection.readTimecode)
        m_console.Answer(m_source->Timecode().Text(*m_scenes));
}

} // namespace scenedetect
