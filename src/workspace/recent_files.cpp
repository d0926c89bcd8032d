// SPDX-License-Identifier: MIT
#include "workspace/recent_files.h"

#include <algorithm>

#include "base/file_names.h"

namespace brevant::workspace {

int RecentFiles::count() const {
  const auto empty = std::find(entries_.begin(), entries_.end(), "");
  return static_cast<int>(empty - entries_.begin());
}

void RecentFiles::Read(const base::SettingsFile& settings) {
  entries_ = {};
  auto next = entries_.begin();
  for (int i = 0; i < kEntries; ++i) {
    std::string path = settings.String(base::keys::kRecentFile, i);
    if (!path.empty()) *next++ = std::move(path);
  }
}

void RecentFiles::AddChosen(std::string_view path) {
  const auto same = std::find_if(entries_.begin(), entries_.end(), [path](const auto& entry) {
    return base::EqualIgnoringCase(entry, path);
  });
  MoveToFront(std::min(static_cast<int>(same - entries_.begin()), kEntries - 1));
  entries_.front() = path;
}

void RecentFiles::MoveToFront(int index) {
  if (index < 0 || index >= kEntries) return;
  std::rotate(entries_.begin(), entries_.begin() + index, entries_.begin() + index + 1);
}

void RecentFiles::StoreAll(base::SettingsFile& settings) const {
  StoreUpTo(settings, count() - 1);
}

void RecentFiles::StoreUpTo(base::SettingsFile& settings, int index) const {
  base::SettingsFile::Change change;
  for (int i = 0; i <= index && i < kEntries; ++i) {
    change.Store(base::keys::kRecentFile, entries_[static_cast<std::size_t>(i)], i);
  }
  settings.Apply(change);
}

}  // namespace brevant::workspace
