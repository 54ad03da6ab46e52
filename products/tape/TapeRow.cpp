#include "products/tape/TapeRow.h"

#include <array>

namespace scenedetect {

const TapeEventKind& KindOf(TapeEvent event) {
    // In the order of the events.
    static constexpr std::array<TapeEventKind, kTapeEvents> kKinds = {{
        {"unknown bytes", "bytes", true},   {"unreadable", "bytes", true},
        {"missing bytes", "bytes", true},   {"missing frames", "", true},
        {"line system change", "", false},  {"recording break", "seconds", false},
        {"timecode jump", "frames", false}, {"recorder start", "", false},
        {"recording", "", false},           {"recording continued", "", false},
        {"aspect change", "", false},       {"audio change", "", false},
        {"recorder stop", "", false},       {"no timecode", "", true},
        {"no recording date", "", true},    {"no recording time", "", true},
        {"no audio format", "", true},      {"stray timecode", "", true},
        {"stray recording time", "", true}, {"stray aspect", "", true},
        {"stray audio format", "", true},   {"concealed blocks", "blocks", true},
        {"audio errors", "samples", true},  {"muted audio", "", true},
        {"damaged blocks", "blocks", true}, {"cut end", "bytes", false},
    }};
    return kKinds[static_cast<std::size_t>(event)];
}

} // namespace scenedetect
