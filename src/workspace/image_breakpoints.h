// SPDX-License-Identifier: MIT
// The breakpoints of the images that were worked on last, as section "path" of the settings keeps
// them from one load to the next.
#pragma once

#include <string>
#include <vector>

#include "base/address.h"
#include "base/settings_file.h"

namespace brevant::workspace {

// In the order in which they were set; none for an image that is not known.
std::vector<base::Address> RememberedBreakpoints(const base::SettingsFile& settings,
                                                 const std::string& image);
// They take the place of what was remembered of the image; the image that was changed longest ago
// is forgotten. False when the settings file cannot be written.
bool RememberBreakpoints(base::SettingsFile& settings, const std::string& image,
                         const std::vector<base::Address>& addresses);

}  // namespace brevant::workspace
