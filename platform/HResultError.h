// The exception that carries an HRESULT from a failing constructor to the guard of a COM entry.
#pragma once

#include <windows.h>

#include <exception>

namespace scenedetect {

class HResultError final : public std::exception {
  public:
    /// `result` is a failure code.
    explicit HResultError(HRESULT result) noexcept : m_result(result) {}

    [[nodiscard]] HRESULT Result() const noexcept { return m_result; }
    [[nodiscard]] const char* what() const noexcept override { return "operation failed with an HRESULT"; }

  private:
    HRESULT m_result;
};

} // namespace scenedetect
