// Chooses the reader for a file.
#pragma once

#include "reading/base/Console.h"
#include "reading/readers/DamageLog.h"
#include "reading/readers/PictureReader.h"

#include <atomic>
#include <memory>
#include <string>

namespace scenedetect {

class FilmPart;

/// What readers need of the program; `stop` ends reading at once.
struct Reading {
    const std::atomic<bool>& stop;
    Console& console;
    int threads = 0;          ///< that decoding and reading ahead may take; 0: as many as usable cores
    FilmPart* part = nullptr; ///< that is to be told of the packets
    bool decodesFast = false; ///< see Decoding
};

/// Opens a file and reads up to its first picture: DV frames and the uncompressed frames of AVI files come as
/// they are, all others decoded. HostError when there is no picture to read. What
/// `reading` refers to must outlive the reader.
[[nodiscard]] std::unique_ptr<PictureReader> OpenPictures(const std::string& path, const Reading& reading,
                                                          const DamageLog::Listener& listener);

} // namespace scenedetect
