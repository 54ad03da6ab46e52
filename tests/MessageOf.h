// What a call says when it fails.
#pragma once

#include "reading/base/HostError.h"

#include <string>

namespace scenedetect::testing_support {

/// The text of the call's HostError; empty when there is none.
template <typename Call>
std::string MessageOf(Call call) {
    try {
        call();
    } catch (const HostError& error) {
        return error.what();
    }
    return "";
}

} // namespace scenedetect::testing_support
