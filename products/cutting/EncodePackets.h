// Cuts a file of any kind with its video encoded anew, so that clips begin and end with the very pictures.
#pragma once

#include "products/cutting/OpenClips.h"

namespace scenedetect {

/// As CutPackets, of a source of which nothing was read yet and whose streams but the video fit the
/// container; the scenes are in order, and no two begin at one place. Decodes the file once from its
/// beginning; audio and subtitles are copied.
void EncodePackets(const CutJob& job);

} // namespace scenedetect
