#include "products/stats/StatsPart.h"

#include "reading/base/HostError.h"
#include "reading/base/ListText.h"
#include "reading/timing/NumberScanner.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::string_view kInputNote = "input";
constexpr std::string_view kPartNote = "part";
constexpr std::string_view kMediaNote = "media";
constexpr std::string_view kDelayNote = "delay";
constexpr std::string_view kAudioNote = "audio";
constexpr std::string_view kTimecodeNote = "source-timecode";

using Numbers = std::vector<std::int64_t>;

std::string TextOf(const Numbers& numbers) {
    std::string text;
    for (const std::int64_t number : numbers)
        AppendToList(text, " ", std::to_string(number));
    return text;
}

std::vector<StatsNote> NotesOf(const MediaInfo& media) {
    std::vector<StatsNote> notes = {
        {std::string(kMediaNote), TextOf({media.width, media.height, media.pixelAspect.num,
                                          media.pixelAspect.den, media.quarterTurns})},
        {std::string(kDelayNote), TextOf({media.delay})}};
    if (media.audio)
        notes.push_back({std::string(kAudioNote), TextOf({media.audio->channels, media.audio->sampleRate})});
    if (const auto& timecode = media.startTimecode)
        notes.push_back({std::string(kTimecodeNote),
                         TextOf({timecode->frame, timecode->isDropFrame, timecode->framesPerSecond})});
    return notes;
}

const std::string* FindNote(const Stats& stats, std::string_view name) {
    const auto note = std::ranges::find(stats.settings.notes, name, &StatsNote::name);
    return note != stats.settings.notes.end() ? &note->value : nullptr;
}

constexpr std::int64_t kMostOfNumber = std::numeric_limits<std::int32_t>::max();

// So many numbers, each from its least on; none where the note is not there.
Numbers NumbersIn(const Stats& stats, std::string_view note, const Numbers& least,
                  std::int64_t most = kMostOfNumber) {
    const std::string* const text = FindNote(stats, note);
    if (!text)
        return {};
    NumberScanner scanner(*text);
    Numbers numbers;
    for (const std::int64_t lowest : least) {
        const bool goesOn = numbers.empty() || scanner.Mark(" ") != '\0';
        const auto number = goesOn ? scanner.Number(1, 18) : std::nullopt;
        if (!number || *number < lowest || *number > most)
            throw HostError(stats.path + ": the setting \"" + std::string(note) + "\" is damaged");
        numbers.push_back(*number);
    }
    return numbers;
}

MediaInfo MediaOf(const Stats& stats) {
    const auto number = [](std::int64_t value) { return static_cast<std::int32_t>(value); };
    MediaInfo media;
    if (const Numbers of = NumbersIn(stats, kMediaNote, {0, 0, 1, 1, 0}); !of.empty()) {
        media.width = number(of[0]);
        media.height = number(of[1]);
        media.pixelAspect = {number(of[2]), number(of[3])};
        media.quarterTurns = number(of[4] % 4);
    }
    if (const Numbers of = NumbersIn(stats, kDelayNote, {0}, kMostOfNumber * 1'000'000); !of.empty())
        media.delay = of[0];
    if (const Numbers of = NumbersIn(stats, kAudioNote, {1, 1}); !of.empty())
        media.audio = AudioFormat{number(of[0]), number(of[1])};
    if (const Numbers of = NumbersIn(stats, kTimecodeNote, {0, 0, 1}); !of.empty())
        media.startTimecode = SourceTimecode{of[0], of[1] != 0, number(of[2])};
    return media;
}

PartChoice ChoiceOf(const Stats& stats) {
    const std::string* const text = FindNote(stats, kPartNote);
    const auto choice = stats.settings.isPart && text ? ParsePartChoice(*text) : std::nullopt;
    if (!choice)
        throw HostError(stats.path + ": is no part of a film: tables are joined that --part has measured");
    return *choice;
}

// What all parts of a film say alike: notes but the part's own, and of the input, which may lie elsewhere
// for another machine, the name only.
std::vector<StatsNote> SharedNotes(const Stats& stats) {
    std::vector<StatsNote> notes = stats.settings.notes;
    std::erase_if(notes, [](const StatsNote& note) {
        constexpr std::array kOwn = {kPartNote, kFirstPictureNote, kLastPictureNote, kBrokenOffNote};
        return std::ranges::find(kOwn, note.name) != kOwn.end();
    });
    for (StatsNote& note : notes)
        if (note.name == kInputNote)
            note.value.erase(0, note.value.rfind('/') + 1);
    StatsSettings settings = stats.settings;
    for (const StatsNumber& each : NumbersOf(settings))
        notes.push_back({std::string(each.name), std::to_string(*each.value)});
    return notes;
}

void RequireSameFilm(const Stats& first, const Stats& other) {
    const auto expected = SharedNotes(first);
    const auto notes = SharedNotes(other);
    const auto [its, others] = std::mismatch(expected.begin(), expected.end(), notes.begin(), notes.end());
    if (its == expected.end() && others == notes.end())
        return;
    throw HostError(other.path + ": does not belong to " + first.path + ": their settings differ in " +
                    Quoted(its != expected.end() ? its->name : others->name));
}

// In their order, each once.
void Sort(std::vector<Stats>& parts) {
    if (parts.empty())
        throw HostError("no part to join");
    std::ranges::stable_sort(parts, {}, [](const Stats& each) { return ChoiceOf(each).part; });
    const std::int64_t count = ChoiceOf(parts.front()).count;
    std::int64_t next = 1;
    for (std::size_t i = 0; i < parts.size(); ++i, ++next) {
        const PartChoice choice = ChoiceOf(parts[i]);
        if (choice.count != count)
            throw HostError(parts[i].path + ": is part " + PartChoiceText(choice) + ", and " +
                            parts.front().path + " is " + PartChoiceText(ChoiceOf(parts.front())));
        if (choice.part < next)
            throw HostError(parts[i].path + ": is part " + PartChoiceText(choice) + ", and so is " +
                            parts[i - 1].path);
        if (choice.part > next)
            break;
    }
    if (next <= count)
        throw HostError(parts.front().path + ": part " + PartChoiceText({next, count}) +
                        " of its film is missing");
}

void Append(Stats& film, const Stats& part, const Stats& before) {
    const StatsRow& last = film.rows.back();
    const StatsRow& first = part.rows.front();
    const std::string* const lastSum = FindNote(before, kLastPictureNote);
    const std::string* const firstSum = FindNote(part, kFirstPictureNote);
    if (first.place.time != last.place.time || first.place.byteOffset != last.place.byteOffset ||
        first.figures.nLevel != last.figures.nLevel || !lastSum || !firstSum || *lastSum != *firstSum)
        throw HostError(part.path + ": does not begin with the picture that " + before.path +
                        " ends with; where they are of one film, it has to be measured without --part");
    const std::int64_t shift = last.place.frame - first.place.frame;
    for (StatsRow row : std::span(part.rows).subspan(1)) {
        row.place.frame += shift;
        row.figures.dwPosition = static_cast<ULONG>(film.rows.size());
        film.rows.push_back(row);
    }
}

} // namespace

std::string PictureSum(const Picture& picture) {
    std::uint64_t sum = 0xCBF29CE484222325; // FNV-1a
    picture.ForEachRun([&sum](std::span<const std::uint8_t> bytes) {
        for (const std::uint8_t byte : bytes)
            sum = (sum ^ byte) * 0x100000001B3;
    });
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(sum));
    return std::string("x") + text; // that spreadsheets leave alone
}

StatsSettings PartSettings(const TimeScale& scale, const DetectionParameters& parameters,
                           const std::string& input, const PartFacts& facts) {
    StatsSettings settings{scale,
                           parameters,
                           {{std::string(kInputNote), input},
                            {std::string(kPartNote), PartChoiceText(facts.part)},
                            {"input-bytes", std::to_string(facts.inputBytes)},
                            {"reader", facts.reader}},
                           true};
    for (StatsNote& note : NotesOf(facts.media))
        settings.notes.push_back(std::move(note));
    return settings;
}

JoinedStats JoinParts(std::vector<Stats> parts) {
    Sort(parts);
    JoinedStats joined;
    joined.media = MediaOf(parts.front());
    joined.breaksOff =
        std::ranges::any_of(parts, [](const Stats& each) { return FindNote(each, kBrokenOffNote); });
    Stats& film = joined.stats;
    film.path = parts.front().path;
    film.settings.scale = parts.front().settings.scale;
    film.settings.parameters = parts.front().settings.parameters;
    film.settings.notes = {{std::string(kInputNote), InputOf(parts.front())}};
    film.rows = parts.front().rows;
    const Stats* before = &parts.front();
    for (const Stats& part : std::span(parts).subspan(1)) {
        RequireSameFilm(parts.front(), part);
        if (part.rows.empty())
            continue;
        if (film.rows.empty())
            throw HostError(before->path + ": has no frame, and " + part.path + " has");
        Append(film, part, *before);
        before = &part;
    }
    RequireRows(film);
    return joined;
}

} // namespace scenedetect
