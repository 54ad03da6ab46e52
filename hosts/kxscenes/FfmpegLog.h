// What FFmpeg's libraries say about a file, kept for our own messages instead of being printed.
#pragma once

#include <cstddef>
#include <string>

namespace scenedetect {

/// From now on the libraries print nothing; the last error that a demuxer reported is kept.
void CaptureFfmpegLog();

/// How many errors demuxers reported so far, and the last of them (one line). Any thread.
[[nodiscard]] std::size_t DemuxerErrorCount();
[[nodiscard]] std::string LastDemuxerError();

/// The text of an AVERROR code.
[[nodiscard]] std::string FfmpegErrorText(int code);

} // namespace scenedetect
