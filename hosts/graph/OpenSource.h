// Chooses the source for a file.
#pragma once

#include "hosts/graph/GraphOptions.h"
#include "hosts/graph/GraphSource.h"
#include "hosts/shared/CommonOptions.h"
#include "hosts/shared/Console.h"

#include <atomic>
#include <memory>

namespace scenedetect {

/// HostError when the file can't be read, or is none that this host reads. `graph`, `options`, `stop` and
/// `console` must outlive the source.
[[nodiscard]] std::unique_ptr<GraphSource> OpenSource(IGraphBuilder& graph, const Options& options,
                                                      SourceKind kind, const std::atomic<bool>& stop,
                                                      Console& console);

} // namespace scenedetect
