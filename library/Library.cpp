// The entries of the C interface: checks of what comes in, and the guard that lets no exception out.
#include "library/DetectorHandle.h"
#include "library/Settings.h"
#include "library/kxscenes.h"

#include <new>

namespace {

static_assert(KXSCENES_VERSION == (PROJECT_MAJOR << 16 | PROJECT_MINOR << 8 | PROJECT_PATCH));

template <typename Call>
std::int32_t Guarded(Call&& call) noexcept {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return KXSCENES_ERROR_MEMORY;
    } catch (...) {
        return KXSCENES_ERROR_INTERNAL;
    }
}

/// Of a structure that the caller hands in.
template <typename Structure>
std::int32_t CheckSize(const Structure* structure) {
    if (!structure)
        return KXSCENES_ERROR_NULL;
    return structure->struct_size == sizeof(Structure) ? KXSCENES_OK : KXSCENES_ERROR_SIZE;
}

template <typename Call>
std::int32_t WithHandle(kxscenes_detector* detector, Call&& call) noexcept {
    return detector ? Guarded(call) : KXSCENES_ERROR_NULL;
}

/// Likewise, if `structure` can be used.
template <typename Structure, typename Call>
std::int32_t With(kxscenes_detector* detector, const Structure* structure, Call&& call) noexcept {
    return WithHandle(detector, [&]() -> std::int32_t {
        const std::int32_t result = CheckSize(structure);
        return result == KXSCENES_OK ? call() : result;
    });
}

} // namespace

std::int32_t kxscenes_version() {
    return KXSCENES_VERSION;
}

const char* kxscenes_error_text(std::int32_t result) {
    switch (result) {
    case KXSCENES_OK:
        return "success";
    case KXSCENES_NOTHING:
        return "nothing there to take";
    case KXSCENES_ERROR_NULL:
        return "a pointer is null";
    case KXSCENES_ERROR_SIZE:
        return "a structure has a size that this library does not know";
    case KXSCENES_ERROR_VALUE:
        return "a value is out of its range";
    case KXSCENES_ERROR_STRIDE:
        return "the stride is too small or too large for the picture";
    case KXSCENES_ERROR_CHANGED:
        return "the frame has not the format or size of the run's first";
    case KXSCENES_ERROR_ENDED:
        return "the run has ended";
    case KXSCENES_ERROR_MEMORY:
        return "out of memory";
    case KXSCENES_ERROR_INTERNAL:
        return "internal error";
    default:
        return "unknown result";
    }
}

std::int32_t kxscenes_default_settings(kxscenes_settings* settings) {
    const std::int32_t result = CheckSize(settings);
    if (result == KXSCENES_OK)
        *settings = DefaultSettings();
    return result;
}

std::int32_t kxscenes_create(const kxscenes_settings* settings, kxscenes_detector** detector) {
    if (!detector)
        return KXSCENES_ERROR_NULL;
    *detector = nullptr;
    const kxscenes_settings defaults = DefaultSettings();
    const kxscenes_settings* used = settings ? settings : &defaults;
    if (const std::int32_t result = CheckSize(used); result != KXSCENES_OK)
        return result;
    return Guarded([&] {
        const std::int32_t result = CheckSettings(*used);
        if (result == KXSCENES_OK)
            *detector = new kxscenes_detector(*used);
        return result;
    });
}

void kxscenes_destroy(kxscenes_detector* detector) {
    delete detector;
}

std::int32_t kxscenes_get_settings(kxscenes_detector* detector, kxscenes_settings* settings) {
    return With(detector, settings, [&] {
        *settings = detector->Settings();
        return KXSCENES_OK;
    });
}

std::int32_t kxscenes_change_settings(kxscenes_detector* detector, const kxscenes_settings* settings) {
    return With(detector, settings, [&]() -> std::int32_t {
        const std::int32_t result = CheckSettings(*settings);
        if (result == KXSCENES_OK)
            detector->Change(*settings);
        return result;
    });
}

std::int32_t kxscenes_push(kxscenes_detector* detector, const kxscenes_frame* frame) {
    return With(detector, frame, [&] { return detector->Push(*frame); });
}

std::int32_t kxscenes_mark(kxscenes_detector* detector) {
    return WithHandle(detector, [&] { return detector->Mark(); });
}

std::int32_t kxscenes_take_scene(kxscenes_detector* detector, kxscenes_scene* scene) {
    return With(detector, scene, [&] { return detector->TakeScene(*scene); });
}

std::int32_t kxscenes_take_figures(kxscenes_detector* detector, kxscenes_figures* figures,
                                   std::int32_t capacity, std::int32_t* taken) {
    return With(detector, figures, [&]() -> std::int32_t {
        if (!taken)
            return KXSCENES_ERROR_NULL;
        return capacity < 0 ? KXSCENES_ERROR_VALUE : detector->TakeFigures(figures, capacity, *taken);
    });
}

std::int32_t kxscenes_frame_count(kxscenes_detector* detector, std::int32_t* frames) {
    return WithHandle(detector, [&]() -> std::int32_t {
        if (!frames)
            return KXSCENES_ERROR_NULL;
        *frames = detector->FrameCount();
        return KXSCENES_OK;
    });
}

std::int32_t kxscenes_end(kxscenes_detector* detector) {
    return WithHandle(detector, [&] {
        detector->End();
        return KXSCENES_OK;
    });
}

std::int32_t kxscenes_restart(kxscenes_detector* detector) {
    return WithHandle(detector, [&] {
        detector->Restart();
        return KXSCENES_OK;
    });
}
