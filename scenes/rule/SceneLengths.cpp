#include "scenes/rule/SceneLengths.h"

namespace scenedetect {

LengthRule::Fate LengthRule::Keep(const FrameAndTime& place) {
    m_begin = place;
    m_waiting.reset();
    return Fate::Stays;
}

LengthRule::Fates LengthRule::Add(const FrameAndTime& place) {
    const bool takesFirst = m_rule != ShortRule::Drop && !m_begin;
    if (!m_least || takesFirst)
        return {Fate::Waits, Keep(place)};
    Fate waiting = Settle(place);
    const auto isAt = [&place](const std::optional<FrameAndTime>& other) {
        return other && other->frame == place.frame;
    };
    if (isAt(m_begin) || isAt(m_waiting))
        return {waiting, Fate::Merged};
    if (m_waiting)
        waiting = m_rule == ShortRule::MergeLast ? Keep(*m_waiting)
                  : m_rule == ShortRule::Drop    ? Fate::Dropped
                                                 : Fate::Merged;
    m_waiting.reset();
    if (m_rule == ShortRule::Merge && !m_least->IsReached(*m_begin, place))
        return {waiting, Fate::Merged};
    m_waiting = place;
    return {waiting, Fate::Waits};
}

LengthRule::Fate LengthRule::Settle(const FrameAndTime& place) {
    return m_waiting && m_least->IsReached(*m_waiting, place) ? Keep(FrameAndTime(*m_waiting)) : Fate::Waits;
}

LengthRule::Fate LengthRule::Finish(const FrameAndTime& end) {
    const Fate fate = Settle(end);
    if (!m_waiting)
        return fate;
    m_waiting.reset();
    return m_rule == ShortRule::Drop ? Fate::Dropped : Fate::Merged;
}

} // namespace scenedetect
