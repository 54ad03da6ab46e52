#include "products/outputs/OutputFormats.h"

#include "products/outputs/SceneWriters.h"
#include "reading/base/ListText.h"

#include <algorithm>

namespace scenedetect {
namespace {

constexpr std::string_view kCsv[] = {".csv"};
constexpr std::string_view kJson[] = {".json"};
constexpr std::string_view kEdl[] = {".edl"};
constexpr std::string_view kOtio[] = {".otio"};
constexpr std::string_view kFcpxml[] = {".fcpxml"};
constexpr std::string_view kXmeml[] = {".xmeml", ".fcp7.xml"};
constexpr std::string_view kQp[] = {".qp", ".qpfile", ".qp.txt"};
constexpr std::string_view kFfmeta[] = {".ffmeta", ".ffmetadata", ".chapters.txt"};
constexpr std::string_view kMkvChapters[] = {".chapters.xml"};
constexpr std::string_view kSrt[] = {".srt"};

// Plain .xml and .txt are nobody's: too many formats are called so.
constexpr OutputFormat kFormats[] = {
    {"csv", kCsv, SceneSheet, "table with starts, ends and lengths, frames from 1"},
    {"json", kJson, SceneJson, "everything known of each scene, frames from 0"},
    {"edl", kEdl, Edl, "CMX 3600 edit decision list"},
    {"otio", kOtio, Otio, "OpenTimelineIO timeline, a clip a scene"},
    {"fcpxml", kFcpxml, Fcpxml, "FCPXML 1.8 project, a clip a scene", true},
    {"xmeml", kXmeml, Xmeml, "FCP 7 XML sequence (xmeml 5), a clip a scene", true},
    {"qp", kQp, QpFile, "QP file: x264 and x265 begin each scene with a key frame"},
    {"ffmeta", kFfmeta, MetadataChapters, "chapters as FFmpeg metadata"},
    {"mkvchapters", kMkvChapters, MatroskaChapters, "chapters as Matroska XML, for mkvmerge"},
    {"srt", kSrt, RecordingSubtitles, "subtitles: date and time of a DV tape's recordings", false, true},
};

bool EndsIn(std::string_view path, std::string_view suffix) {
    const auto isSame = [](char letter, char lower) {
        return (letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter) == lower;
    };
    // A name that is all suffix has none.
    return path.size() > suffix.size() &&
           std::equal(path.end() - static_cast<std::ptrdiff_t>(suffix.size()), path.end(), suffix.begin(),
                      isSame) &&
           path[path.size() - suffix.size() - 1] != '/';
}

} // namespace

std::span<const OutputFormat> OutputFormats() {
    return kFormats;
}

std::string FormatNames(std::string_view separator) {
    std::string names;
    for (const OutputFormat& format : kFormats)
        AppendToList(names, separator, format.name);
    return names;
}

const OutputFormat* FormatByName(std::string_view name) {
    const auto found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                    [name](const OutputFormat& format) { return format.name == name; });
    return found == std::end(kFormats) ? nullptr : found;
}

const OutputFormat* FormatBySuffix(std::string_view path) {
    const OutputFormat* best = nullptr;
    std::size_t longest = 0;
    for (const OutputFormat& format : kFormats) {
        for (const std::string_view suffix : format.suffixes) {
            if (suffix.size() > longest && EndsIn(path, suffix)) {
                best = &format;
                longest = suffix.size();
            }
        }
    }
    return best;
}

std::string UnknownFormatText(std::string_view name) {
    return "no such format: " + std::string(name) + "; there are " + FormatNames(", ");
}

std::string UnknownSuffixText(std::string_view path) {
    return std::string(path) + ": its suffix tells no format; add --format with one of " + FormatNames(", ");
}

} // namespace scenedetect
