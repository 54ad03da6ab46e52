#include "engine/Detector.h"

#include "engine/JudgementTrace.h"
#include "engine/Luminance.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace scenedetect {
namespace {

constexpr std::int32_t kSlots = 5;

/// Samples of a grid; 0 for one of which 32 bits cannot count as many as the ring has.
std::int32_t CountSamples(std::int32_t width, std::int32_t height) {
    const std::int64_t samples = std::int64_t{width} * height;
    if (width <= 0 || height <= 0 || samples > std::numeric_limits<std::int32_t>::max() / kSlots)
        return 0;
    return static_cast<std::int32_t>(samples);
}

} // namespace

Detector::Detector() {
    Reset();
}

void Detector::SetParameters(std::int32_t cutThreshold, std::int32_t darkLevel, std::int32_t diffClamp,
                             std::int32_t minVotes) {
    m_decision.SetParameters(
        {cutThreshold, darkLevel, diffClamp, minVotes, m_decision.Parameters().longestScene});
}

void Detector::Reset() {
    sampleCount = CountSamples(gridWidth, gridHeight);
    m_compared = ComparedSamples(static_cast<std::size_t>(sampleCount), std::max(gridWidth, 1));
    m_decision.Reset();
    frameBuffer.reset();
}

void Detector::SetGridWidth(std::int32_t width) {
    if (width == gridWidth)
        return;
    gridWidth = width;
    Reset();
}

void Detector::SetGridHeight(std::int32_t height) {
    if (height == gridHeight)
        return;
    gridHeight = height;
    Reset();
}

void Detector::SettleArea(GridPlaces places) {
    if (sampleCount == 0)
        return;
    if (m_decision.Parameters().HasWholeArea()) {
        m_compared = ComparedSamples(static_cast<std::size_t>(sampleCount), places.columns);
        return;
    }
    places.samples = std::min(places.samples, sampleCount);
    m_compared = ComparedSamples(m_decision.Parameters(), places);
}

LuminanceGrid Detector::Grid() const {
    // Deliberate: an area has to lie where the user sees it, so of a part the described readings, which turn
    // planar frames and let packed ones drift, are not taken.
    return {gridWidth, gridHeight, blockSize, m_compared.Count() != static_cast<std::size_t>(sampleCount)};
}

std::uint8_t* Detector::GetFrame(std::int32_t offset) {
    if (frameBuffer == nullptr)
        return nullptr;
    const std::int64_t slot = ((std::int64_t{ringIndex} + offset) % kSlots + kSlots) % kSlots;
    return frameBuffer.get() + slot * sampleCount;
}

std::uint8_t* Detector::NextFrame() {
    if (frameBuffer == nullptr) {
        frameBuffer = std::make_unique<std::uint8_t[]>(kSlots * static_cast<std::size_t>(sampleCount));
        ringIndex = 0;
    }
    ringIndex = (ringIndex + 1) % kSlots;
    return GetFrame(0);
}

void Detector::ExtractLuminance(const Dib& frame, std::uint8_t* slot) const {
    const std::optional<PixelLayout> layout = LayoutOf(frame);
    if (!layout) {
        DebugPrintAt(kLogCategorySceneDetect, kLogLevelFailure, L"Detector::Invalid dib format\n");
        return;
    }
    if (sampleCount != 0)
        ReadLuminance(frame, *layout, Grid(), slot);
}

void Detector::ExtractLuminance(const PixelRows& picture, std::uint8_t* slot) const {
    if (sampleCount != 0)
        ReadLuminance(picture, Grid(), slot);
}

bool Detector::ClearFrame(std::uint8_t* slot) const {
    std::memset(slot, 0, static_cast<std::size_t>(sampleCount));
    return false;
}

std::int32_t Detector::DifferenceTo(const std::uint8_t* other) {
    const std::uint8_t* current = GetFrame(0);
    return current && other ? m_compared.MeanDifference(current, other, m_decision.Parameters().diffClamp)
                            : 0;
}

std::int32_t Detector::ComputeDifference() {
    return DifferenceTo(GetFrame(-1));
}

std::int32_t Detector::ComputeMeanLevel() {
    const std::uint8_t* current = GetFrame(0);
    return current ? m_compared.MeanLevel(current) : 0;
}

std::int32_t Detector::ComputeVariance() {
    const std::uint8_t* current = GetFrame(0);
    return current ? m_compared.Variance(current) : 0;
}

std::int32_t Detector::ComputeDetail() {
    const std::uint8_t* current = GetFrame(0);
    return current ? m_compared.Detail(current) : 0;
}

Judgement Detector::Judge() {
    const std::int32_t difference = ComputeDifference();
    const Judgement judgement = m_decision.Judge(difference, ComputeMeanLevel());
    TraceJudgement(m_decision, judgement, frameRate);
    return judgement;
}

} // namespace scenedetect
