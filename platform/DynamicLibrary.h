// A shared library loaded while the program runs.
#pragma once

#include <string>

namespace scenedetect {

/// Holds one load of a library and gives it back with the object. One thread at a time.
class DynamicLibrary {
  public:
    DynamicLibrary() = default;
    ~DynamicLibrary();
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    /// Loads `name` (closing any library held before): a plain file name is looked for in the system's own
    /// search order, a path is taken as it is. False when there is none or it cannot be loaded.
    [[nodiscard]] bool Open(const std::wstring& name);
    [[nodiscard]] bool IsOpen() const;
    /// The address of an export, valid until the library is closed; null when the library has no such export.
    [[nodiscard]] void* Find(const char* name) const;
    void Close();

  private:
    void* m_handle = nullptr;
};

} // namespace scenedetect
