// Makes a filter of the host's own.
#pragma once

#include "baseclasses/ComRef.h"
#include "running/detection/DetectionCalls.h"

#include <memory>
#include <utility>

namespace scenedetect {

/// A new filter with one reference; its constructor takes the arguments and, last, the HRESULT to fill.
/// HostError when that is a failure.
template <class Filter, class... Arguments>
[[nodiscard]] ComRef<Filter> MakeFilter(Arguments&&... arguments) {
    HRESULT hr = S_OK;
    auto filter = std::make_unique<Filter>(std::forward<Arguments>(arguments)..., &hr);
    Require(hr, "a filter of the host's own can't be made");
    filter->AddRef();
    return ComRef<Filter>(filter.release());
}

} // namespace scenedetect
