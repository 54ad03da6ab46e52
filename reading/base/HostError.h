// What ends a host's run with a message and exit code 1.
#pragma once

#include <stdexcept>

namespace scenedetect {

/// The text is one line without the program's name: which file, what, why.
class HostError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace scenedetect
