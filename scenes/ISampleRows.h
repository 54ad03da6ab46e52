// What a media sample may offer beside its bytes: where its picture lies.
#pragma once

#include "engine/Luminance.h"
#include "scenes/IKxSceneDetect.h"

namespace scenedetect {

inline constexpr IID IID_ISampleRows = KxIdentifier("B9C1D8B4-6B0E-4C57-8D0A-2E0C5F1B7A63");

/// An interface of samples of the own source only, which decodes: their media type tells the picture's full
/// size, and they have no bytes.
struct ISampleRows : public IUnknown {
    /// The picture, until the sample is released; null when it is what bytes and media type say.
    STDMETHOD_(const PixelRows*, Rows)() = 0;

  protected:
    ~ISampleRows() = default;
};

} // namespace scenedetect
