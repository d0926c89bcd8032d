// SPDX-License-Identifier: MIT
#include "symbols/source_path.h"

#include <algorithm>
#include <filesystem>

#include "base/file_names.h"

namespace brevant::symbols {
namespace {

constexpr std::string_view kSeparators = "/\\";

bool IsFile(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

// Host separators: names of other systems' tools have backslashes.
std::string WithHostSeparators(std::string_view name) {
  std::string spelt(name);
  std::ranges::replace(spelt, '\\', '/');
  return spelt;
}

std::vector<std::string_view> Parts(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of(kSeparators), path.size());
    const std::string_view part = path.substr(0, end);
    if (!part.empty() && part != ".") parts.push_back(part);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

// The trailing parts of a name, the longest first; what lies above a ".." is another folder's.
std::vector<std::string> Tails(std::string_view name) {
  const std::vector<std::string_view> parts = Parts(name);
  std::vector<std::string> tails;
  std::string tail;
  for (auto part = parts.rbegin(); part != parts.rend() && *part != ".."; ++part) {
    tail = tail.empty() ? std::string(*part) : base::JoinPath(*part, tail);
    tails.push_back(tail);
  }
  std::ranges::reverse(tails);
  return tails;
}

bool IsIntrolLibrary(const DebugInfo& info, std::string_view name) {
  return info.tool_chain == ToolChain::Introl && name.find('/') != std::string_view::npos;
}

// Nothing when the library has no such file.
SourcePlace FindInLibraries(const std::string& name, const SourceFolders& folders) {
  SourcePlace place;
  for (const char* part : {"c", "assembly"}) {
    place.path = base::JoinPath(base::JoinPath(folders.introl_libraries, part), name);
    place.found = IsFile(place.path);
    if (place.found) break;
  }
  return place;
}

// Folders of the program itself.
std::vector<std::string> OwnFolders(const DebugInfo& info, const SourceFolders& folders) {
  if (info.directory == folders.image) return {folders.image};
  return {info.directory, folders.image};
}

}  // namespace

SourcePlace FindSource(const DebugInfo& info, std::uint32_t file, const SourceFolders& folders) {
  const std::vector<std::string>& files = info.LineTable.files();
  if (file >= files.size()) return {};
  const std::string name = WithHostSeparators(files[file]);
  SourcePlace expected{base::JoinPath(folders.image, name)};
  if (IsIntrolLibrary(info, name)) {
    expected = FindInLibraries(name, folders);
    if (expected.found) return expected;
  }
  const std::vector<std::string> own = OwnFolders(info, folders);
  const std::vector<std::string> tails = Tails(name);
  const auto find = [](const std::vector<std::string>& roots, const std::string& tail) {
    for (const std::string& root : roots) {
      if (const std::string path = base::JoinPath(root, tail); IsFile(path)) return path;
    }
    return std::string();
  };
  if (!tails.empty() && tails.front() == name) {
    if (const std::string path = find(folders.named, name); !path.empty()) return {path, true};
  }
  const bool absolute = name.starts_with('/');
  if (!absolute) {
    if (const std::string path = find(own, name); !path.empty()) return {path, true};
  }
  if (IsFile(name)) return {name, true};
  for (const std::string& tail : tails) {
    for (const auto* const roots : {&folders.named, &own}) {
      if (const std::string path = find(*roots, tail); !path.empty()) return {path, true};
    }
  }
  if (absolute) expected.path = name;
  return expected;
}

std::vector<std::string> FoldersLookedIn(const DebugInfo& info, const SourceFolders& folders) {
  std::vector<std::string> looked = folders.named;
  for (const std::string& own : OwnFolders(info, folders)) looked.push_back(own);
  if (info.tool_chain == ToolChain::Introl) looked.push_back(folders.introl_libraries);
  std::vector<std::string> once;
  for (std::string& folder : looked) {
    if (folder.empty() || std::ranges::find(once, folder) != once.end()) continue;
    once.push_back(std::move(folder));
  }
  return once;
}

std::optional<std::string> FolderOfSource(std::string_view chosen, std::string_view name) {
  const std::vector<std::string_view> parts = Parts(name);
  std::string folder(chosen);
  bool shares = false;
  for (auto part = parts.rbegin(); part != parts.rend() && base::LastPart(folder) == *part;
       ++part) {
    folder = base::DirectoryOf(folder);
    shares = true;
  }
  if (!shares) return std::nullopt;
  return folder.empty() ? "/" : folder;
}

}  // namespace brevant::symbols
