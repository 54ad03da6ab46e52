// The K-th of N parts of a file, told by its packets.
#pragma once

#include "reading/timing/SampleTable.h"

#include <cstdint>
#include <optional>
#include <string>

namespace scenedetect {

/// `3/16`: the third of sixteen.
struct PartChoice {
    std::int64_t part = 1;
    std::int64_t count = 0; ///< 0: no part, but the whole

    [[nodiscard]] bool IsChosen() const { return count != 0; }
    friend bool operator==(const PartChoice&, const PartChoice&) = default;
};

inline constexpr std::int64_t kMostParts = 100'000;

/// Nothing for text of another form, and for a part that there is not.
[[nodiscard]] std::optional<PartChoice> ParsePartChoice(const std::string& text);
[[nodiscard]] std::string PartChoiceText(const PartChoice& choice);

/// Parts are so many bytes of the file, from the picture of one key frame to that of another. That picture
/// is in both: the last of the one, and the first of the next. A part is without a picture of its own where
/// it has no key frame. One thread.
class FilmPart {
  public:
    /// Of a file of so many bytes.
    FilmPart(const PartChoice& choice, std::int64_t fileBytes);

    /// To be told of each packet in the order of decoding, before its picture is asked for; again after the
    /// file was opened again. `isKey`: it is a key frame, which is shown.
    void NotePacket(std::int64_t byteOffset, bool isKey);
    [[nodiscard]] bool HasPackets() const { return m_hasPackets; }
    [[nodiscard]] bool IsFirst(const FilePlace& place) const { return m_begin.IsAt(place); }
    [[nodiscard]] bool IsLast(const FilePlace& place) const { return m_end.IsAt(place); }
    /// Whether every picture may be the first.
    [[nodiscard]] bool BeginsWithFile() const { return !m_begin.from; }

  private:
    struct Edge {
        std::optional<std::int64_t> from;       // the first key frame from this byte on; none: the file's end
        std::optional<std::int64_t> byteOffset; // is here

        [[nodiscard]] bool IsAt(const FilePlace& place) const { return byteOffset == place.byteOffset; }
    };

    Edge m_begin;
    Edge m_end;
    std::int64_t m_farthest = -1; // packet
    bool m_hasPackets = false;
};

} // namespace scenedetect
