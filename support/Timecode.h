// Frame counts as timecode text, full ("00:00:01:05") or short ("1:05").
#pragma once

#include <cstdint>
#include <string>

namespace scenedetect {

/// Replaces `text` by the timecode of `frames`. `framesPerSecond` is the whole frame rate and must not be
/// 0. The short form drops leading zeros and colons but always keeps one character. Negative counts keep
/// their sign in every field, as truncating division leaves it; hours widen past two digits.
void FramesToTimecodeText(std::wstring& text, std::int32_t frames, bool full, std::int32_t framesPerSecond);

} // namespace scenedetect
