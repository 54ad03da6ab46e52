// The element's properties: what a user can set, and the counts of the run.
#pragma once

#include "library/kxscenes.h"

#include <glib-object.h>

namespace scenedetect {

/// Identifiers from 1, in the order in which they are installed.
enum : guint { kFirstCount = 13, kFrames = kFirstCount, kScenes };

void InstallProperties(GObjectClass* elementClass);

/// For identifiers before kFirstCount.
void SetSetting(kxscenes_settings& settings, guint id, const GValue& value);
void GetSetting(const kxscenes_settings& settings, guint id, GValue& value);

} // namespace scenedetect
