// SPDX-License-Identifier: MIT
// What the settings file begins with, whichever program makes it.
#pragma once

#include "base/settings_file.h"

namespace brevant::frontend {

// The flash is within sight, and windows are found again where they were. A file that is there
// already keeps what it says, and the defaults of what it does not say.
base::SettingsFile::Change FirstSettings();

}  // namespace brevant::frontend
