// The host's own source filter, fed by a thread.
#pragma once

#include "baseclasses/ComRef.h"
#include "hosts/cli/GraphOptions.h"
#include "hosts/graph/GraphParts.h"
#include "hosts/graph/GraphSource.h"
#include "reading/readers/PictureReader.h"
#include "running/detection/SourceFilter.h"

#include <atomic>
#include <exception>
#include <memory>
#include <thread>

namespace scenedetect {

/// Pictures of any format, and formats that change in mid-stream.
class OwnSource final : public GraphSource {
  public:
    /// `options` and `stop` must outlive the object; setting `stop` ends the stream at the next picture.
    /// HostError when the method would not find the changes of such pictures.
    OwnSource(IGraphBuilder& graph, std::unique_ptr<PictureReader> reader, const GraphOptions& options,
              const std::atomic<bool>& stop);
    ~OwnSource() override;

    [[nodiscard]] IPin& Output() const override { return *m_filter->GetPin(0); }
    [[nodiscard]] TimeScale Scale() const override { return m_reader->Scale(); }
    [[nodiscard]] FilePlace PlaceOf(std::int32_t position) override;
    void Start() override;
    void Finish() override;
    [[nodiscard]] const StartTimecode& Timecode() const override { return m_timecode; }

  private:
    void Feed() noexcept;
    void DeliverPictures();

    const std::unique_ptr<PictureReader> m_reader;
    const GraphOptions& m_options;
    const std::atomic<bool>& m_stop;
    const ComRef<SourceFilter> m_filter;
    const AddedFilter m_added;
    SampleTable m_table;
    StartTimecode m_timecode;
    std::thread m_thread;
    std::exception_ptr m_error; // of the thread, until that is over
};

} // namespace scenedetect
