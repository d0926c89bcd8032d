// SPDX-License-Identifier: MIT
// A settings file of a test's own.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "base/settings_file.h"

namespace brevant::link {

class SettingsInFolder {
 public:
  SettingsInFolder() {
    std::string name = ::testing::TempDir() + "brevant-link-XXXXXX";
    folder_ = ::mkdtemp(name.data());
    settings = base::SettingsFile(folder_ / "brevant.ini");
  }
  SettingsInFolder(const SettingsInFolder&) = delete;
  SettingsInFolder& operator=(const SettingsInFolder&) = delete;
  ~SettingsInFolder() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  void Set(std::string_view key, std::string_view value) {
    ASSERT_TRUE(settings.WriteString("config", key, value));
  }
  // From now on nothing can be stored.
  void MakeUnwritable() { std::filesystem::remove_all(folder_); }

  base::SettingsFile settings{""};

 private:
  std::filesystem::path folder_;
};

}  // namespace brevant::link
