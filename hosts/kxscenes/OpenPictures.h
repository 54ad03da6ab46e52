// Chooses the reader for a file.
#pragma once

#include "hosts/shared/Console.h"
#include "hosts/shared/PictureReader.h"

#include <atomic>
#include <memory>
#include <string>

namespace scenedetect {

/// Opens a file and reads up to its first picture: DV frames and the uncompressed frames of AVI files come as
/// they are, all others decoded as YUY2. HostError when there is no picture to read. `stop` ends reading and
/// must outlive the reader, as `console` must.
[[nodiscard]] std::unique_ptr<PictureReader> OpenPictures(const std::string& path,
                                                          const std::atomic<bool>& stop, Console& console);

} // namespace scenedetect
