// SPDX-License-Identifier: MIT
// The program files loaded last, newest first. The first is the current program, from which other
// file names are derived. Rests on the settings "loadfile0" to "loadfile4".
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/settings_file.h"

namespace brevant::workspace {

class RecentFiles {
 public:
  static constexpr int kEntries = 5;
  static constexpr std::size_t kMaxPathLength = 99;

  // Empty ones follow the others.
  const std::array<std::string, kEntries>& entries() const { return entries_; }
  // "" before anything has been loaded.
  const std::string& current() const { return entries_.front(); }
  int count() const;

  // At start-up; gaps close up.
  void Read(const base::SettingsFile& settings);

  // A file was chosen: it becomes the first; if it is there already, ignoring case, it only moves.
  void AddChosen(std::string_view path);
  // An entry of the menu was chosen.
  void MoveToFront(int index);

  // After a chosen file has been loaded: every entry up to the first empty one.
  void StoreAll(base::SettingsFile& settings) const;
  // After an entry of the menu was chosen: what has moved.
  void StoreUpTo(base::SettingsFile& settings, int index) const;

 private:
  std::array<std::string, kEntries> entries_;
};

}  // namespace brevant::workspace
