// Where exceptions end and HRESULTs begin: the guard around the body of a COM entry.
#pragma once

#include "platform/HResultError.h"

#include <windows.h>

#include <new>

namespace scenedetect {

/// Runs `body` and returns its HRESULT; whatever it throws becomes a failure code.
template <typename Body>
[[nodiscard]] HRESULT Guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (const HResultError& error) {
        return error.Result();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

} // namespace scenedetect
