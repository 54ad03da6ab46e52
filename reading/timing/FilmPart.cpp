#include "reading/timing/FilmPart.h"

#include "reading/timing/NumberScanner.h"

namespace scenedetect {

std::optional<PartChoice> ParsePartChoice(const std::string& text) {
    NumberScanner scanner(text);
    const auto part = scanner.Number(1, 6);
    if (!part || scanner.Mark("/") == '\0')
        return std::nullopt;
    const auto count = scanner.Number(1, 6);
    if (!count || !scanner.IsAtEnd() || *part < 1 || *part > *count || *count > kMostParts)
        return std::nullopt;
    return PartChoice{*part, *count};
}

std::string PartChoiceText(const PartChoice& choice) {
    return std::to_string(choice.part) + '/' + std::to_string(choice.count);
}

FilmPart::FilmPart(const PartChoice& choice, std::int64_t fileBytes) {
    // Without an overflow for any file.
    const auto share = [&](std::int64_t parts) {
        return fileBytes / choice.count * parts + fileBytes % choice.count * parts / choice.count;
    };
    if (choice.part > 1)
        m_begin.from = share(choice.part - 1);
    if (choice.part < choice.count)
        m_end.from = share(choice.part);
}

void FilmPart::NotePacket(std::int64_t byteOffset, bool isKey) {
    m_hasPackets = true;
    // Of packets that lie at one place nobody could tell the pictures apart.
    if (byteOffset <= m_farthest)
        return;
    m_farthest = byteOffset;
    for (Edge* edge : {&m_begin, &m_end})
        if (isKey && edge->from && byteOffset >= *edge->from && !edge->byteOffset)
            edge->byteOffset = byteOffset;
}

} // namespace scenedetect
