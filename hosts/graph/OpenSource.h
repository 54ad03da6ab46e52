// Chooses the source for a file.
#pragma once

#include "hosts/cli/GraphOptions.h"
#include "hosts/graph/GraphSource.h"
#include "reading/base/Console.h"

#include <atomic>
#include <memory>

namespace scenedetect {

/// HostError when the file can't be read, or is none that this host reads. `graph`, `options`, `stop` and
/// `console` must outlive the source.
[[nodiscard]] std::unique_ptr<GraphSource> OpenSource(IGraphBuilder& graph, const GraphOptions& options,
                                                      const std::atomic<bool>& stop, Console& console);

} // namespace scenedetect
