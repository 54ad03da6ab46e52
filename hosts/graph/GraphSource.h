// What a graph begins with: filters that deliver the file's pictures.
#pragma once

#include "reading/timing/SampleTable.h"
#include "reading/timing/TimeScale.h"
#include "running/detection/StartTimecode.h"

#include <dshow.h>

#include <cstdint>

namespace scenedetect {

/// Its filters are in the graph as long as the object lives. On the thread that runs the host.
class GraphSource {
  public:
    virtual ~GraphSource() = default;

    /// The pin that delivers the pictures, for a direct connection. Belongs to the source.
    [[nodiscard]] virtual IPin& Output() const = 0;

    /// What the times of places mean; once the output is connected.
    [[nodiscard]] virtual TimeScale Scale() const = 0;
    /// Where in the file a scene lies that the filter reports. They are asked for in ascending order.
    [[nodiscard]] virtual FilePlace PlaceOf(std::int32_t position) = 0;

    /// To be called once the graph runs, and once it has stopped. HostError when reading failed meanwhile.
    virtual void Start() {}
    virtual void Finish() {}

    /// What is known of the first picture; once finished.
    [[nodiscard]] virtual const StartTimecode& Timecode() const = 0;
};

} // namespace scenedetect
