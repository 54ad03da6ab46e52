// What ends a host's run with a message and exit code 1.
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace scenedetect {

/// The text is one line without the program's name: which file, what, why.
class HostError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Whoever read the standard output has gone away: nothing to tell, and nothing more to print.
class OutputClosed final : public HostError {
  public:
    OutputClosed() : HostError("standard output: nobody reads it any more") {}
};

/// For the user, also of what is no HostError.
[[nodiscard]] inline std::string ErrorText(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error))
        return "there is not enough memory";
    return error.what();
}

} // namespace scenedetect
