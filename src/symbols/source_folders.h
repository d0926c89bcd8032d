// SPDX-License-Identifier: MIT
// Where the loaded program's sources may lie, and the folders that the user has named for them: the
// settings keep these with the folder of the image that they were named for, since another
// program's file may have the same name.
#pragma once

#include <string>
#include <vector>

#include "base/settings_file.h"

namespace brevant::symbols {

struct SourceFolders {
  std::string image;               // of the loaded image; may be empty
  std::string introl_libraries;    // Introl's LIBRARIES folder; may be empty
  std::vector<std::string> named;  // by the user for this image's folder, the latest first
  bool operator==(const SourceFolders&) const = default;
};

// As the settings have them.
SourceFolders ReadSourceFolders(const base::SettingsFile& settings,
                                const std::string& image_directory);
// Puts the folder before those that were named earlier. False when it could not be stored.
bool RememberSourceFolder(base::SettingsFile& settings, const std::string& image_directory,
                          const std::string& folder);

}  // namespace brevant::symbols
