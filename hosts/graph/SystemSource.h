// The system's file source and AVI splitter.
#pragma once

#include "hosts/graph/GraphParts.h"
#include "hosts/graph/GraphSource.h"

#include <string>

namespace scenedetect {

/// For pictures that the splitter delivers as the filter takes them. Positions count its samples.
class SystemSource final : public GraphSource {
  public:
    /// HostError when the system can't read the file.
    SystemSource(IGraphBuilder& graph, const std::string& path);

    /// Bytes of a picture as the splitter announces it; 0 when it does not.
    [[nodiscard]] std::uint32_t PictureBytes() const;

    [[nodiscard]] IPin& Output() const override { return *m_output; }
    [[nodiscard]] TimeScale Scale() const override;
    [[nodiscard]] FilePlace PlaceOf(std::int32_t position) override { return {position, position, -1}; }
    [[nodiscard]] const StartTimecode& Timecode() const override { return m_timecode; }

  private:
    const ComRef<IBaseFilter> m_reader;
    const ComRef<IBaseFilter> m_splitter;
    const AddedFilter m_addedReader;
    const AddedFilter m_addedSplitter;
    ComRef<IPin> m_output;
    const StartTimecode m_timecode;
};

} // namespace scenedetect
