// Steps that all have to be taken, whatever becomes of one of them.
#pragma once

#include <exception>

namespace scenedetect {

/// Keeps the first thing that was thrown: it is the one to tell. One thread.
class FirstError {
  public:
    template <typename Step>
    void Attempt(Step&& step) {
        try {
            step();
        } catch (...) {
            if (!m_error)
                m_error = std::current_exception();
        }
    }
    [[nodiscard]] explicit operator bool() const { return m_error != nullptr; }
    void Rethrow() const {
        if (m_error)
            std::rethrow_exception(m_error);
    }

  private:
    std::exception_ptr m_error;
};

} // namespace scenedetect
