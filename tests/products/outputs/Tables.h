// Scene tables for the tests of their outputs.
#pragma once

#include "products/outputs/SceneTable.h"

#include <algorithm>
#include <vector>

namespace scenedetect::testing_support {

/// A name with everything that some format minds, and what is left of it as plain text.
inline constexpr const char* kOddName = "a,\"b\"; [1] =#\\ \n<c> & \xC3\xA9\xFF";
inline constexpr const char* kPlainName = "a,\"b\"; [1] =#\\  <c> & \xC3\xA9\xEF\xBF\xBD";

/// Scenes from each frame to the next, in units of which a frame lasts a whole number.
inline SceneTable TableOf(Ratio rate, const std::vector<std::int64_t>& frames) {
    const std::int32_t finer = std::max(1, 1'000'000 / rate.num);
    SceneTable table;
    table.input = "/tapes/tape 1.mov";
    table.name = "tape 1";
    table.scale = {{1, rate.num * finer}, rate};
    table.frameCount = frames.back();
    const auto place = [&](std::int64_t frame) { return FilePlace{frame, frame * rate.den * finer, -1}; };
    for (std::size_t i = 0; i + 1 < frames.size(); ++i)
        table.scenes.push_back({place(frames[i]), place(frames[i + 1]), "video", frames[i]});
    return table;
}

/// Ten frames at about 25 a second, stamped in milliseconds; the second scene is one of 10 ms.
inline SceneTable VariableTable() {
    SceneTable table = TableOf({25, 1}, {0, 3, 4, 10});
    table.scale.unit = {1, 1000};
    table.scenes[0].end.time = table.scenes[1].start.time = 90;
    table.scenes[1].end.time = table.scenes[2].start.time = 100;
    table.scenes[2].end.time = 510;
    return table;
}

} // namespace scenedetect::testing_support
