// The filter, made in the test's own program, between source and sink.
#pragma once

#include "filter/MediaTypes.h"
#include "filter/SceneDetectFilter.h"
#include "tests/SceneStream.h"

namespace scenedetect::testing_support {

inline ComRef<IBaseFilter> MakeFilter() {
    HRESULT hr = S_OK;
    auto* filter = static_cast<SceneDetectFilter*>(SceneDetectFilter::CreateInstance(nullptr, &hr));
    EXPECT_EQ(hr, S_OK);
    filter->AddRef();
    return ComRef<IBaseFilter>(filter);
}

struct Graph : SceneStream {
    Graph() : SceneStream(MakeFilter()), made(static_cast<SceneDetectFilter&>(*filter)) {}

    HRESULT ConnectInput(const CMediaType& type) {
        source->pin.types = {{type}};
        return source->pin.Connect(in.get(), nullptr);
    }

    SceneDetectFilter& made;
};

} // namespace scenedetect::testing_support
