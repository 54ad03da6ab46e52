// Where the scene detect filter comes from: the registry, or a module file named by the user.
#pragma once

#include "baseclasses/ComRef.h"
#include "platform/DynamicLibrary.h"

#include <dshow.h>

#include <string>

namespace scenedetect {

/// Must outlive the filters that it makes.
class SceneDetectModule {
  public:
    /// `path` is a module that need not be registered; empty: the registered one. HostError when the file
    /// can't be loaded.
    explicit SceneDetectModule(const std::string& path);

    /// HostError when there is no filter to be had.
    [[nodiscard]] ComRef<IBaseFilter> MakeFilter() const;

  private:
    const std::string m_path;
    DynamicLibrary m_library;
};

} // namespace scenedetect
