// What stands behind a handle of the C interface: a run, the watch over its frames, and the scenes not yet
// taken.
#pragma once

#include "filter/FrameWatch.h"
#include "library/kxscenes.h"
#include "scenes/DetectionRun.h"

#include <array>
#include <cstdint>
#include <deque>
#include <mutex>

/// Every member function locks; they return results of the C interface and may throw std::bad_alloc.
/// Structures that come in have been checked for their sizes.
struct kxscenes_detector {
  public:
    /// Settings that are in their ranges.
    explicit kxscenes_detector(const kxscenes_settings& settings);

    [[nodiscard]] kxscenes_settings Settings();
    void Change(const kxscenes_settings& settings);
    std::int32_t Push(const kxscenes_frame& frame);
    std::int32_t Mark();
    std::int32_t TakeScene(kxscenes_scene& scene);
    std::int32_t TakeFigures(kxscenes_figures* figures, std::int32_t capacity, std::int32_t& taken);
    [[nodiscard]] std::int32_t FrameCount();
    void End();
    void Restart();

  private:
    void Apply(const kxscenes_settings& settings);
    void Watch(const scenedetect::RunFrame& number, const kxscenes_frame& frame);
    void WatchDv(const scenedetect::RunFrame& number, const kxscenes_frame& frame, kxscenes_scene& scene);
    void WatchPicture(const scenedetect::RunFrame& number, const kxscenes_frame& frame);
    void TakeOverScenes();

    std::mutex m_mutex;
    scenedetect::DetectionRun m_run;
    scenedetect::FrameWatch m_watch{m_run};
    kxscenes_settings m_settings;
    kxscenes_frame m_firstFrame{}; ///< of the run, whose format and size are those of all
    /// Of the latest frames, each at its number modulo their count: what a scene that starts there tells.
    std::array<kxscenes_scene, 3> m_latest{};
    std::deque<kxscenes_scene> m_scenes;
};
