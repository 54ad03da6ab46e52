// What FFmpeg's libraries say about a file, kept for our own messages instead of being printed.
#pragma once

#include <cstddef>
#include <string>

namespace scenedetect {

/// From now on the libraries print nothing; the last error that a demuxer or muxer reported on a thread is
/// kept there. What codecs report, mostly on threads of their own, is dropped.
void CaptureFfmpegLog();

/// How many errors demuxers and muxers reported on this thread so far, and the last of them (one line).
[[nodiscard]] std::size_t FormatErrorCount();
[[nodiscard]] std::string LastFormatError();

/// The text of an AVERROR code.
[[nodiscard]] std::string FfmpegErrorText(int code);

} // namespace scenedetect
