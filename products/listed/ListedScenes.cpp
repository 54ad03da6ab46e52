#include "products/listed/ListedScenes.h"

#include "products/outputs/SceneTable.h"
#include "reading/base/HostError.h"

#include <cstdlib>
#include <utility>

namespace scenedetect {
namespace {

constexpr Ratio kNanosecond{1, 1'000'000'000};

// Nothing where one is a frame and the other a time.
std::optional<bool> IsBefore(const TimePosition& one, const TimePosition& other) {
    if (one.frame.has_value() != other.frame.has_value())
        return std::nullopt;
    return one.frame ? *one.frame < *other.frame : one.time < other.time;
}

std::string RatioText(Ratio ratio) {
    return std::to_string(ratio.num) + '/' + std::to_string(ratio.den);
}

} // namespace

ListedScenes::ListedScenes(const SceneList& list, const TimeScale& scale,
                           const std::optional<SourceTimecode>& first)
    : m_list(list), m_scale(scale), m_first(first) {
    if (list.rate && !IsSameRate(*list.rate, scale.rate))
        FailInList(list.path, "",
                   "is of a video of " + RatioText(*list.rate) + " frames per second, and this one has " +
                       RatioText(scale.rate));
    for (const ListedScene& scene : list.scenes) {
        m_spans.push_back({&scene, PositionOf(scene.start, scene), {}});
        if (scene.end)
            m_spans.back().end = PositionOf(*scene.end, scene);
    }
    for (std::size_t i = 0; i + 1 < m_spans.size(); ++i)
        if (!m_spans[i].end)
            m_spans[i].end = m_spans[i + 1].start;
    RequireOrder();
}

void ListedScenes::RequireOrder() const {
    for (std::size_t i = 0; i < m_spans.size(); ++i) {
        const auto& [scene, start, end] = m_spans[i];
        if (i > 0 && !IsBefore(m_spans[i - 1].start, start).value_or(true))
            Fail(*scene, "begins no later than the scene before it: scenes have to be in order");
        if (i > 0 && IsBefore(start, *m_spans[i - 1].end).value_or(false))
            Fail(*scene, "begins before the scene before it ends");
        if (scene->end && !IsBefore(start, *end).value_or(true))
            Fail(*scene, "ends before it has a frame");
    }
}

TimePosition ListedScenes::PositionOf(const ListedPoint& point, const ListedScene& scene) const {
    try {
        const auto* timecode = std::get_if<TimecodePoint>(&point.point.point);
        if (!timecode || !m_list.hasSourceTimecode)
            return Resolve(point.point, m_scale);
        return NearestTo(
            Rescale(SourceFrame(*timecode, point.point.text), m_scale.rate.Inverse(), m_scale.unit), m_scale);
    } catch (const HostError& error) {
        Fail(scene, error.what());
    }
}

// The numbering of the file's own timecode counts, whatever the list says of the programme that it was made
// for.
std::int64_t ListedScenes::SourceFrame(const TimecodePoint& point, const std::string& text) const {
    if (!m_first)
        return FrameOf(point, text, m_scale.rate);
    SceneTable file;
    file.scale = m_scale;
    file.startTimecode = m_first;
    const FrameNumbering numbering = SourceNumbering(file);
    const auto number = FrameOfTimecode(point.fields, numbering);
    if (!number)
        throw HostError(text + " is no number of the file's timecode");
    const std::int64_t day = numbering.FramesPerDay();
    const std::int64_t frame = ((*number - SourceStart(file)) % day + day) % day;
    if (frame > day / 2)
        throw HostError(text + " lies before the file's first timecode, " +
                        SourceTimecodeText({}, m_scale, *m_first));
    return frame;
}

ListedScenes::Turn ListedScenes::At(const FilePlace& place) {
    Turn turn;
    const bool isFirst = !std::exchange(m_hasBegun, true);
    while (m_next < m_spans.size()) {
        const auto& [scene, start, end] = m_spans[m_next];
        if (!m_isOpen) {
            if (!start.IsReachedBy(place))
                break;
            m_isOpen = true;
            turn.begins = scene;
            Compare(scene->start, place);
        }
        if (!end || !end->IsReachedBy(place))
            break;
        // Scenes before the part of the file that is read are left out.
        if (turn.begins == scene && (!isFirst || place.frame == 0))
            Fail(*scene, "has no frame in this file");
        if (scene->end)
            Compare(*scene->end, place);
        m_isOpen = false;
        turn = {nullptr, true};
        ++m_next;
    }
    m_leftOut += m_isOpen ? 0 : 1;
    return turn;
}

// By half a frame and the rounding of what was printed.
void ListedScenes::Compare(const ListedPoint& point, const FilePlace& place) {
    const auto* frame = std::get_if<FramePoint>(&point.point.point);
    if (!frame || !point.clock || frame->frame == 0 || frame->frame != place.frame)
        return;
    constexpr std::int64_t kRounding = 1'000'000;
    const std::int64_t time = Rescale(place.time, m_scale.unit, kNanosecond);
    const std::int64_t tolerance = Rescale(1, m_scale.rate.Inverse(), kNanosecond) / 2 + kRounding;
    ++(std::abs(time - point.clock->nanoseconds) <= tolerance ? m_right : m_wrong);
}

void ListedScenes::Finish(const FilePlace& end) const {
    std::size_t next = m_next;
    if (m_isOpen && (!m_spans[next].end || m_spans[next].end->IsReachedBy(end)))
        ++next;
    if (next < m_spans.size())
        Fail(*m_spans[next].scene,
             "lies beyond the end of the file, which has " + std::to_string(end.frame) + " frames");
    if (m_wrong > m_right)
        FailInList(
            m_list.path, "",
            "frames and seconds do not belong together in this file: the list is of another one, or of "
            "another rate; where its frames are meant, take the columns of seconds out");
}

void ListedScenes::Fail(const ListedScene& scene, const std::string& what) const {
    FailInList(m_list.path, scene.where, what);
}

} // namespace scenedetect
