// SPDX-License-Identifier: MIT
// Reading and replacing whole files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace brevant::base {

struct FileText {
  std::string text;
  // Empty when the file was read; else why not, in the system's words ("Is a directory").
  std::string error;
  bool ok() const { return error.empty(); }
};
FileText ReadFile(const std::filesystem::path& path);

// Replaces the file's content as one step: a temporary file beside it is written and synced, then
// renamed over it. Whoever looks, at any moment and after a crash, sees the old content or the new
// one. Permissions are kept; a symbolic link keeps pointing where it did; a device or pipe is
// simply written to. Writers in other processes are waited for, 2 seconds at most. What a killed
// process left behind is cleaned up by the next call. Returns an empty text, or what went wrong.
std::string ReplaceFile(const std::filesystem::path& path, std::string_view content);

// Empty when it has been removed.
std::string WorkingDirectory();

// Modification time in seconds since 1970; nothing when there is no such file.
std::optional<long long> ModificationTime(const std::filesystem::path& path);

// What tells a version of a file from another.
struct FileStamp {
  long long device = 0, inode = 0, size = 0, seconds = 0, nanoseconds = 0;
  bool operator==(const FileStamp&) const = default;
};
// Nothing when there is no such file.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

}  // namespace brevant::base
