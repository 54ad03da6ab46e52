// What an element costs a frame of 1080p I420 from memory, side by side: element_bench [ROUNDS]
//
// Buffers are pushed into `kxscenedetect` and into `scenechange`, and through `identity`, whose time is that
// of passing a buffer; the median of the rounds counts, which alternate. The frames are either few, and stay
// in the cache, as they do behind a decoder, or many, and come from memory.
#include <gst/check/gstharness.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* kCaps = "video/x-raw,format=I420,width=1920,height=1080,framerate=25/1";
constexpr gsize kBytes = gsize{1920} * 1080 * 3 / 2;
constexpr const char* kElements[] = {"identity", "kxscenedetect", "scenechange"};
constexpr int kPushes = 240;

/// Of this thread, which does all the work: other programs make no difference to it but through the caches.
double CpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::vector<GstBuffer*> MakeFrames(std::size_t count) {
    std::mt19937 random(1);
    std::vector<GstBuffer*> frames;
    for (std::size_t i = 0; i < count; ++i) {
        GstBuffer* buffer = gst_buffer_new_allocate(nullptr, kBytes, nullptr);
        GstMapInfo map;
        gst_buffer_map(buffer, &map, GST_MAP_WRITE);
        std::generate(map.data, map.data + map.size, [&] { return static_cast<guint8>(random()); });
        gst_buffer_unmap(buffer, &map);
        frames.push_back(buffer);
    }
    return frames;
}

/// Microseconds a frame.
double Run(GstHarness* harness, const std::vector<GstBuffer*>& frames) {
    const double begin = CpuSeconds();
    for (int i = 0; i < kPushes; ++i) {
        gst_harness_push(harness, gst_buffer_ref(frames[static_cast<std::size_t>(i) % frames.size()]));
        gst_buffer_unref(gst_harness_pull(harness));
    }
    return (CpuSeconds() - begin) * 1e6 / kPushes;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void Compare(const char* what, const std::vector<GstBuffer*>& frames, int rounds) {
    std::map<std::string, GstHarness*> harnesses;
    std::map<std::string, std::vector<double>> times;
    for (const char* element : kElements) {
        harnesses[element] = gst_harness_new(element);
        gst_harness_set_src_caps_str(harnesses[element], kCaps);
    }
    for (int round = 0; round < rounds; ++round)
        for (const char* element : kElements)
            times[element].push_back(Run(harnesses[element], frames));
    const double passing = Median(times["identity"]);
    const double own = Median(times["kxscenedetect"]) - passing;
    const double peer = Median(times["scenechange"]) - passing;
    std::printf("%s: kxscenedetect %.1f us, scenechange %.1f us a frame (identity %.1f subtracted): %.3f\n",
                what, own, peer, passing, own / peer);
    for (const auto& [name, harness] : harnesses)
        gst_harness_teardown(harness);
}

} // namespace

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 15;
    for (const auto& [what, count] : {std::pair("4 frames", 4), std::pair("120 frames", 120)}) {
        const auto frames = MakeFrames(static_cast<std::size_t>(count));
        Compare(what, frames, rounds);
        for (GstBuffer* frame : frames)
            gst_buffer_unref(frame);
    }
}
