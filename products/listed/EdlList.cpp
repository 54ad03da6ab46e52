#include "products/listed/ListReaders.h"
#include "products/listed/SceneList.h"
#include "reading/base/HostError.h"

#include <algorithm>
#include <sstream>

namespace scenedetect {
namespace {

// number, reel, channels, transition, its length (where that is no cut), source in and out, record in and out
constexpr std::size_t kReel = 1;
constexpr std::size_t kChannels = 2;
constexpr std::size_t kLeastWords = 8;
constexpr std::size_t kMostWords = 9;
constexpr std::size_t kTimes = 4; // at the end

std::vector<std::string> WordsOf(const std::string& line) {
    std::istringstream text(line);
    std::vector<std::string> words;
    for (std::string word; text >> word;)
        words.push_back(word);
    return words;
}

bool IsNumber(const std::string& word) {
    return word.find_first_not_of("0123456789") == word.npos;
}

bool IsTimecode(const std::string& word) {
    return TimePointFault(word).empty() && std::holds_alternative<TimecodePoint>(ParseTimePoint(word).point);
}

bool IsEvent(const std::vector<std::string>& words) {
    return (words.size() == kLeastWords || words.size() == kMostWords) && IsNumber(words[0]) &&
           std::all_of(words.end() - kTimes, words.end(), IsTimecode);
}

bool HasVideo(const std::string& channels) {
    return channels.starts_with('V') || channels == "B" || channels.find("/V") != channels.npos;
}

// What the list's own writer puts a name in; empty on other lines.
std::string CommentIn(const std::string& line) {
    constexpr std::string_view kMark = "* COMMENT:";
    const std::size_t begin = line.starts_with(kMark) ? line.find_first_not_of(' ', kMark.size()) : line.npos;
    return begin == line.npos ? "" : line.substr(begin, line.find_last_not_of(" \r") + 1 - begin);
}

} // namespace

bool IsEdl(std::string_view text) {
    std::istringstream lines{std::string(text)};
    std::vector<std::string> words;
    for (std::string line; words.empty() && std::getline(lines, line);)
        words = WordsOf(line);
    return !words.empty() && (words[0].starts_with("TITLE:") || words[0] == "FCM:" || IsEvent(words));
}

void ReadEdlList(std::string_view text, SceneList& list) {
    list.hasSourceTimecode = true;
    bool isDropFrame = false;
    bool isScene = false; // the event that comments belong to
    std::string reel;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        const std::vector<std::string> words = WordsOf(line);
        const std::string where = "line " + std::to_string(number);
        if (words.empty())
            continue;
        if (words[0] == "FCM:")
            isDropFrame = words.size() > 1 && words[1] == "DROP";
        if (!IsNumber(words[0])) { // a comment, or what belongs to an event
            if (isScene && list.scenes.back().name.empty())
                list.scenes.back().name = CommentIn(line);
            continue;
        }
        isScene = false;
        if (!IsEvent(words))
            FailInList(list.path, where,
                       "no event of an EDL: number, reel, channels, transition and four times");
        const std::string& in = words[words.size() - kTimes];
        const std::string& out = words[words.size() - kTimes + 1];
        // Black, audio, and the side of a transition that lasts no frame.
        if (words[kReel] == "BL" || !HasVideo(words[kChannels]) || in == out)
            continue;
        if (!reel.empty() && reel != words[kReel])
            FailInList(list.path, where,
                       "is of reel " + words[kReel] + ", and those before it are of " + reel +
                           ": a list of scenes is of one file");
        reel = words[kReel];
        const auto pointOf = [isDropFrame](const std::string& word) {
            ListedPoint point{ParseTimePoint(word), {}};
            auto& timecode = std::get<TimecodePoint>(point.point.point);
            timecode.isDropFrame = timecode.isDropFrame || isDropFrame;
            return point;
        };
        list.scenes.push_back({pointOf(in), pointOf(out), kListedMethod, {}, where});
        isScene = true;
    }
}

} // namespace scenedetect
