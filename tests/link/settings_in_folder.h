// SPDX-License-Identifier: MIT
// A settings file of a test's own.
#pragma once

#include <filesystem>

#include "base/settings_file.h"
#include "base/temporary_folder.h"

namespace brevant::link {

struct SettingsInFolder {
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};

  void Set(std::string_view key, std::string_view value) {
    ASSERT_TRUE(settings.WriteString("config", key, value));
  }
  // From now on nothing can be stored.
  void MakeUnwritable() const { std::filesystem::remove_all(folder.path()); }
};

}  // namespace brevant::link
