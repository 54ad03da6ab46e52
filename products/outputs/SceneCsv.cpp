#include "products/outputs/SceneCsv.h"

#include "reading/base/CsvField.h"

namespace scenedetect {

std::string SceneCsv::Header(const Columns& columns) {
    return std::string(columns.file ? "file," : "") + "scene,frame,timecode,seconds" +
           (columns.method ? ",method" : "") + '\n';
}

std::string SceneCsv::Line(const FilePlace& place, const std::string& method) {
    return (m_columns.file ? CsvField(m_file) + ',' : "") + std::to_string(++m_count) + ',' +
           std::to_string(place.frame) + ',' + TimecodeText(place.time, m_scale) + ',' +
           SecondsText(place.time, m_scale) + (m_columns.method ? ',' + CsvField(method) : "") + '\n';
}

} // namespace scenedetect
