#include "hosts/graph/OwnSource.h"

#include "hosts/graph/Com.h"
#include "reading/base/HostError.h"
#include "running/detection/DetectionCalls.h"
#include "running/detection/MakeFilter.h"

#include <utility>

namespace scenedetect {

OwnSource::OwnSource(IGraphBuilder& graph, std::unique_ptr<PictureReader> reader, const GraphOptions& options,
                     const std::atomic<bool>& stop)
    : m_reader(std::move(reader)),
      m_options(options),
      m_stop(stop),
      m_filter(MakeFilter<SourceFilter>(m_reader->Format())),
      m_added(graph, *m_filter, L"Pictures") {
    RequireComparable(m_reader->Format(), m_options.detection.methods.front(), m_options.inputs.front());
}

OwnSource::~OwnSource() {
    if (m_thread.joinable())
        m_thread.join();
}

FilePlace OwnSource::PlaceOf(std::int32_t position) {
    const auto place = m_table.Find(position);
    if (!place)
        throw HostError("the filter reports a scene at " + std::to_string(position) +
                        ", where there is no sample");
    m_table.ForgetBefore(position);
    return *place;
}

void OwnSource::Start() {
    m_thread = std::thread([this] { Feed(); });
}

void OwnSource::Finish() {
    if (m_thread.joinable())
        m_thread.join();
    if (m_error)
        std::rethrow_exception(std::exchange(m_error, nullptr));
}

void OwnSource::Feed() noexcept {
    try {
        const ComLibrary com;
        DeliverPictures();
    } catch (...) {
        m_error = std::current_exception();
    }
    m_filter->DeliverEndOfStream();
}

void OwnSource::DeliverPictures() {
    for (bool isFirst = true; !m_stop; isFirst = false) {
        const ComRef<PictureSample> sample = m_filter->TakeSample();
        if (!sample || !m_reader->Next(sample->picture))
            return; // the graph was stopped, or the file is at its end
        RequireComparable(sample->picture.format, m_options.detection.methods.front(),
                          m_options.inputs.front());
        m_table.Append(sample->picture.place);
        if (isFirst)
            m_timecode.Note(sample->picture);
        const HRESULT hr = m_filter->Deliver(*sample);
        if (hr != S_OK && !m_stop)
            throw HostError("frame " + std::to_string(sample->picture.place.frame) +
                            " is refused by the filter graph");
    }
}

} // namespace scenedetect
