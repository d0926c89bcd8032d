// SPDX-License-Identifier: MIT
#include "load/macro_page.h"

#include "base/files.h"
#include "load/macro_runner.h"
#include "load/messages.h"

namespace brevant::load {
namespace {

bool StoreName(const base::SettingsKey& key, std::string_view typed,
               base::SettingsFile::Change& change, base::UserInterface& ui,
               std::string_view start_up_directory) {
  std::string name(typed.substr(0, MacroPage::kMaxNameLength));
  if (!name.empty()) name = QualifyMacroName(name, start_up_directory);
  if (name.empty() || !base::ReadFile(name).ok()) {
    ui.ShowMessage(ToMessage(messages::kMacroNotReadable, name));
    return false;
  }
  change.Store(key, name);
  return true;
}

}  // namespace

MacroPage MacroPage::Open(const base::SettingsFile& settings) {
  const int flags = settings.Integer(base::keys::kMacroFlags);
  return {(flags & kMacroBeforeLoad) != 0, settings.String(base::keys::kLoadMacroFile),
          (flags & kMacroAfterReset) != 0, settings.String(base::keys::kResetMacroFile)};
}

bool MacroPage::Commit(base::SettingsFile& settings, base::UserInterface& ui,
                       std::string_view start_up_directory) const {
  base::SettingsFile::Change change;
  const long flags = (after_reset ? kMacroAfterReset : 0) + (before_load ? kMacroBeforeLoad : 0);
  change.Store(base::keys::kMacroFlags, flags);
  const bool taken = (!before_load || StoreName(base::keys::kLoadMacroFile, before_load_file,
                                                change, ui, start_up_directory)) &&
                     (!after_reset || StoreName(base::keys::kResetMacroFile, after_reset_file,
                                                change, ui, start_up_directory));
  settings.Apply(change);
  return taken;
}

}  // namespace brevant::load
