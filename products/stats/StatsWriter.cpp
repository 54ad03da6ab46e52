#include "products/stats/StatsWriter.h"

#include "reading/base/CsvField.h"
#include "reading/base/HostError.h"

#include <utility>

namespace scenedetect {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

} // namespace

StatsWriter::StatsWriter(StatsSettings settings, Sink sink)
    : m_sink(std::move(sink)), m_isPart(settings.isPart), m_hasDistances(settings.hasDistances) {
    // The number that it was at the time: what stands for the process-wide length means nothing in a file.
    for (const ParameterRange& range : kDetectionParameters)
        settings.parameters.*range.value = range.Of(settings.parameters);
    m_settings.push_back(
        {std::string(kStatsFormatSetting), std::string(m_isPart         ? kStatsPartFormat
                                                       : m_hasDistances ? kStatsDistancesFormat
                                                                        : kStatsFormat)});
    for (const StatsNumber& number : NumbersOf(settings))
        if (number.absent != *number.value)
            m_settings.push_back({std::string(number.name), std::to_string(*number.value)});
    for (StatsNote& note : settings.notes)
        m_settings.push_back(std::move(note));
    m_pending = m_hasDistances ? kStatsDistancesHeader : kStatsHeader;
    m_pending += '\n';
}

void StatsWriter::Add(const StatsRow& row) {
    const auto& [place, figures, distances] = row;
    if (figures.dwPosition != m_sampleCount)
        throw HostError("the statistics lack samples " + std::to_string(m_sampleCount) + " to " +
                        std::to_string(std::int64_t{figures.dwPosition} - 1) +
                        ": they came faster than they could be written; try a faster disk");
    const auto append = [this](std::int64_t number) {
        m_pending += std::to_string(number);
        m_pending += ',';
    };
    const auto appendIf = [&](bool is, std::int64_t number) {
        if (is)
            append(number);
        else
            m_pending += ',';
    };
    append(place.frame);
    append(figures.nDifference);
    append(figures.nLevel);
    appendIf(!m_isPart && (figures.dwFlags & KxFrameFilled) != 0, figures.nFilled);
    appendIf(!m_isPart, (figures.dwFlags & KxFrameDark) != 0 ? 1 : 0);
    appendIf(!m_isPart, (figures.dwFlags & KxFrameCut) != 0 ? 1 : 0);
    append(m_sampleCount++);
    append(place.time);
    appendIf(place.byteOffset >= 0, place.byteOffset);
    if (m_hasDistances) {
        for (const LONG distance : distances.nDistance)
            appendIf(distance != kNoDistance, distance);
        append(distances.nVariance);
        append(distances.nDetail);
    }
    AppendSetting();
    if (m_pending.size() >= kBlock)
        HandOut();
}

void StatsWriter::AppendSetting() {
    if (m_nextSetting == m_settings.size()) {
        m_pending += ",\n";
        return;
    }
    const StatsNote& setting = m_settings[m_nextSetting++];
    m_pending += CsvField(setting.name) + ',' + CsvField(setting.value) + '\n';
}

void StatsWriter::Finish() {
    while (m_nextSetting != m_settings.size()) {
        m_pending.append(kFrameColumns + (m_hasDistances ? kStatsDistancesColumns : 0), ',');
        AppendSetting();
    }
    HandOut();
}

void StatsWriter::HandOut() {
    m_sink(std::exchange(m_pending, {}));
}

} // namespace scenedetect
