#include "products/outputs/NameText.h"
#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "products/outputs/XmlText.h"
#include "reading/timing/ClockText.h"

#include <string_view>

namespace scenedetect {
namespace {

// Characters that mean something in FFmpeg's metadata files get a backslash.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        if (std::string_view("=;#\\").find(character) != std::string_view::npos)
            escaped += '\\';
        escaped += character;
    }
    return escaped;
}

std::string ChapterTitle(const SceneTable& table, std::size_t index) {
    const std::string& name = table.scenes[index].name;
    return name.empty() ? "Scene " + std::to_string(index + 1) : name;
}

} // namespace

std::string MetadataChapters(const SceneTable& table) {
    const Ratio unit = table.scale.unit;
    const std::string head =
        "[CHAPTER]\nTIMEBASE=" + std::to_string(unit.num) + '/' + std::to_string(unit.den) + "\nSTART=";
    std::string text = ";FFMETADATA1\ntitle=" + Escaped(PlainName(table.name)) + '\n';
    for (std::size_t i = 0; i < table.scenes.size(); ++i) {
        const SceneSpan& scene = table.scenes[i];
        text += head + std::to_string(MediaTime(table, scene.start)) +
                "\nEND=" + std::to_string(MediaTime(table, scene.end)) +
                "\ntitle=" + Escaped(ChapterTitle(table, i)) + '\n';
    }
    return text;
}

std::string MatroskaChapters(const SceneTable& table) {
    constexpr int kNanoseconds = 9;
    XmlElement root("Chapters");
    XmlElement& edition = root.Append("EditionEntry");
    for (std::size_t i = 0; i < table.scenes.size(); ++i) {
        const SceneSpan& scene = table.scenes[i];
        XmlElement& chapter = edition.Append("ChapterAtom");
        chapter.AppendText("ChapterTimeStart",
                           ClockText(MediaTime(table, scene.start), table.scale, kNanoseconds));
        chapter.AppendText("ChapterTimeEnd",
                           ClockText(MediaTime(table, scene.end), table.scale, kNanoseconds));
        XmlElement& display = chapter.Append("ChapterDisplay");
        display.AppendText("ChapterString", ChapterTitle(table, i));
        display.AppendText("ChapterLanguage", "eng");
    }
    return root.Document(false);
}

} // namespace scenedetect
