// SPDX-License-Identifier: MIT
#include "symbols/source_folders.h"

#include <algorithm>

namespace brevant::symbols {
namespace {

using base::keys::kSourceFolder;

// Between the folder and that of the image; no path of a settings file's line holds one.
constexpr char kSeparator = '\t';

std::vector<std::string> Entries(const base::SettingsFile& settings) {
  std::vector<std::string> entries;
  for (int n = 0; n < kSourceFolder.count; ++n) {
    entries.push_back(settings.String(kSourceFolder, n));
    if (entries.back().empty()) entries.pop_back();
  }
  return entries;
}

}  // namespace

SourceFolders ReadSourceFolders(const base::SettingsFile& settings,
                                const std::string& image_directory) {
  SourceFolders folders{image_directory, settings.String(base::keys::kIntrolLibDir), {}};
  for (const std::string& entry : Entries(settings)) {
    const std::size_t end = entry.find(kSeparator);
    if (end == std::string::npos || entry.substr(end + 1) != image_directory) continue;
    folders.named.push_back(entry.substr(0, end));
  }
  return folders;
}

bool RememberSourceFolder(base::SettingsFile& settings, const std::string& image_directory,
                          const std::string& folder) {
  const std::string named = folder + kSeparator + image_directory;
  std::vector<std::string> entries = Entries(settings);
  std::erase(entries, named);
  entries.insert(entries.begin(), named);
  entries.resize(static_cast<std::size_t>(kSourceFolder.count));
  base::SettingsFile::Change change;
  for (int n = 0; n < kSourceFolder.count; ++n) {
    change.Store(kSourceFolder, entries[static_cast<std::size_t>(n)], n);
  }
  return settings.Apply(change);
}

}  // namespace brevant::symbols
