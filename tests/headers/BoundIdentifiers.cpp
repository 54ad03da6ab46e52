// On Windows the interfaces know their identifiers: what the compiler is asked by __uuidof and IID_PPV_ARGS.
#include "IKxSceneDetect.h"

namespace {

template <typename Interface>
constexpr bool IsBound(const IID& id) {
    const GUID& bound = __uuidof(Interface);
    for (int i = 0; i < 8; ++i)
        if (bound.Data4[i] != id.Data4[i])
            return false;
    return bound.Data1 == id.Data1 && bound.Data2 == id.Data2 && bound.Data3 == id.Data3;
}
static_assert(IsBound<IKxSceneDetect>(IID_IKxSceneDetect));
static_assert(IsBound<IKxSceneDetect2>(IID_IKxSceneDetect2));
static_assert(IsBound<IKxSceneDetectEx>(IID_IKxSceneDetectEx));
static_assert(IsBound<IKxSceneDetectTuning>(IID_IKxSceneDetectTuning));
static_assert(IsBound<IKxSceneDetectDistances>(IID_IKxSceneDetectDistances));

} // namespace

HRESULT AskForScenes(IUnknown* filter, IKxSceneDetect2** scenes);
HRESULT AskForScenes(IUnknown* filter, IKxSceneDetect2** scenes) {
    return filter->QueryInterface(IID_PPV_ARGS(scenes));
}
