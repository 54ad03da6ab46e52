// A detector of the C interface for tests: what it finds in a few frames.
#pragma once

#include "library/kxscenes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace scenedetect::testing_support {

inline kxscenes_settings Defaults() {
    kxscenes_settings settings{};
    settings.struct_size = sizeof settings;
    EXPECT_EQ(kxscenes_default_settings(&settings), KXSCENES_OK);
    return settings;
}

inline kxscenes_frame LumaFrame(const std::vector<std::uint8_t>& bytes, int width, int height, int stride) {
    kxscenes_frame frame{};
    frame.struct_size = sizeof frame;
    frame.format = KXSCENES_LUMA8;
    frame.width = width;
    frame.height = height;
    frame.stride = stride;
    frame.data = bytes.data();
    frame.time = KXSCENES_NO_TIME;
    return frame;
}

inline kxscenes_frame DvFrameOf(const std::vector<std::uint8_t>& bytes) {
    kxscenes_frame frame{};
    frame.struct_size = sizeof frame;
    frame.format = KXSCENES_DV;
    frame.dv_size = static_cast<std::int32_t>(bytes.size());
    frame.data = bytes.data();
    frame.time = KXSCENES_NO_TIME;
    return frame;
}

/// What came of a run: positions, and figures as "frame difference level filled flags".
struct Found {
    std::vector<std::uint32_t> positions;
    std::vector<std::string> figures;

    friend bool operator==(const Found&, const Found&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Found& found) {
        return out << testing::PrintToString(found.positions) << ' ' << testing::PrintToString(found.figures);
    }
};

class Detection {
  public:
    explicit Detection(const kxscenes_settings& settings) {
        kxscenes_detector* made = nullptr;
        EXPECT_EQ(kxscenes_create(&settings, &made), KXSCENES_OK);
        m_detector.reset(made);
    }

    [[nodiscard]] kxscenes_detector* get() const { return m_detector.get(); }

    void Push(const kxscenes_frame& frame) { EXPECT_EQ(kxscenes_push(get(), &frame), KXSCENES_OK); }
    /// Grey pictures of these levels, each with a time of its number times 100.
    void PushLevels(const std::vector<int>& levels) {
        for (const int level : levels) {
            const std::vector<std::uint8_t> bytes(16 * 16, static_cast<std::uint8_t>(level));
            kxscenes_frame frame = LumaFrame(bytes, 16, 16, 16);
            frame.time = m_pushed++ * 100;
            Push(frame);
        }
    }

    std::vector<kxscenes_scene> Scenes() {
        std::vector<kxscenes_scene> scenes;
        kxscenes_scene scene{};
        scene.struct_size = sizeof scene;
        while (kxscenes_take_scene(get(), &scene) == KXSCENES_OK)
            scenes.push_back(scene);
        return scenes;
    }
    std::vector<std::uint32_t> Positions() {
        std::vector<std::uint32_t> positions;
        for (const kxscenes_scene& scene : Scenes())
            positions.push_back(static_cast<std::uint32_t>(scene.frame));
        return positions;
    }
    std::vector<std::string> Figures() {
        std::vector<std::string> rows;
        kxscenes_figures some[7] = {};
        some[0].struct_size = sizeof some[0];
        std::int32_t taken = 0;
        while (kxscenes_take_figures(get(), some, 7, &taken) == KXSCENES_OK)
            for (std::int32_t i = 0; i < taken; ++i)
                rows.push_back(std::to_string(some[i].frame) + ' ' + std::to_string(some[i].difference) +
                               ' ' + std::to_string(some[i].level) + ' ' + std::to_string(some[i].filled) +
                               ' ' + std::to_string(some[i].flags));
        return rows;
    }
    Found End() {
        EXPECT_EQ(kxscenes_end(get()), KXSCENES_OK);
        Found found;
        found.positions = Positions();
        found.figures = Figures();
        return found;
    }

  private:
    struct Destroy {
        void operator()(kxscenes_detector* detector) const { kxscenes_destroy(detector); }
    };
    std::unique_ptr<kxscenes_detector, Destroy> m_detector;
    std::int64_t m_pushed = 0;
};

} // namespace scenedetect::testing_support
