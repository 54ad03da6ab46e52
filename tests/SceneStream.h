// The scene detect filter between source and sink, with its control interfaces, and small pictures for it.
#pragma once

#include "scenes/IKxSceneDetect.h"
#include "tests/FilterStream.h"

namespace scenedetect::testing_support {

using Picture = std::vector<std::uint8_t>;

struct SceneStream : FilterStream {
    explicit SceneStream(ComRef<IBaseFilter> made)
        : FilterStream(std::move(made)),
          scenes(QueryFor<IKxSceneDetect2>(filter.get(), IID_IKxSceneDetect2)),
          scenesEx(QueryFor<IKxSceneDetectEx>(filter.get(), IID_IKxSceneDetectEx)) {
        source->pin.types = {{Yuy2()}};
        source->pin.properties = {3, kYuy2Bytes, 1, 0};
    }

    using FilterStream::Send;
    HRESULT SendGrey(std::uint8_t level) { return Send(Picture(kYuy2Bytes, level)); }

    ComRef<IKxSceneDetect2> scenes;
    ComRef<IKxSceneDetectEx> scenesEx;
};

} // namespace scenedetect::testing_support
