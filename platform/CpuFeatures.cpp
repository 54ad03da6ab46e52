#include "platform/CpuFeatures.h"

#include <atomic>
#include <cstdlib>

namespace scenedetect {
namespace {

std::atomic<unsigned> g_mask{kCpuAll};

unsigned ProcessorFeatures() noexcept {
    unsigned features = 0;
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("sse2"))
        features |= kCpuSse2;
    if (__builtin_cpu_supports("avx2"))
        features |= kCpuAvx2;
#endif
    return features;
}

unsigned AllowedFeatures() noexcept {
    const char* setting = std::getenv("SCENEDETECT_CPU");
    return ProcessorFeatures() & CpuFeaturesNamed(setting ? setting : "");
}

} // namespace

unsigned CpuFeatures() noexcept {
    static const unsigned allowed = AllowedFeatures();
    return allowed & g_mask.load(std::memory_order_relaxed);
}

void RestrictCpuFeatures(unsigned mask) noexcept {
    g_mask.store(mask, std::memory_order_relaxed);
}

unsigned CpuFeaturesNamed(std::string_view setting) noexcept {
    if (setting == "none")
        return 0;
    if (setting == "sse2")
        return kCpuSse2;
    return kCpuAll;
}

} // namespace scenedetect
