// SPDX-License-Identifier: MIT
#include "frontend/first_settings.h"

#include "base/settings_keys.h"

namespace brevant::frontend {
namespace {

constexpr std::string_view kWholeAddressSpace = "FFFF";
constexpr int kChecked = 8;  // of a menu item

}  // namespace

base::SettingsFile::Change FirstSettings() {
  base::SettingsFile::Change change;
  change.Store(base::keys::kProgramRange, kWholeAddressSpace);
  change.Store(base::keys::kSaveOnExit, long{kChecked});
  return change;
}

}  // namespace brevant::frontend
