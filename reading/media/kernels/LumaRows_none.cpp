#include "reading/media/kernels/LumaRows.h"

namespace scenedetect {

LumaRow FindSimdLumaRow(LumaPixels, unsigned) {
    return nullptr;
}

} // namespace scenedetect
