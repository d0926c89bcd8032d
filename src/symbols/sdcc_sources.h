// SPDX-License-Identifier: MIT
// Where the source files of an SDCC program lie. Its debug file names them by their last part only
// and with '_' for every character that is no letter, digit, '_' or '.'; the module's relocated
// listing (.rst), when it lies beside the image, has the path that was given to the compiler.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brevant::symbols {

class SdccSources {
 public:
  // Knows of no files: every name stays as it is.
  SdccSources() = default;
  // Looks at the image's folder.
  explicit SdccSources(const std::string& image_directory);

  // The file's name relative to the image's folder with '/' between folders; the name itself when
  // no such file is found. ambiguous says that several modules name such a file, so that only the
  // module's own listing can tell which one is meant.
  std::string CSource(std::string_view name, std::string_view module, bool ambiguous);
  // The assembler source of a module.
  std::string AssemblerSource(std::string_view module) const;

 private:
  const std::vector<std::string>& ListedPaths(std::string_view module);
  std::string FromListing(std::string_view name, std::string_view module);
  // The path from the image's folder or the nearest one above it where the file is; else empty.
  std::string AtOrAbove(const std::filesystem::path& path) const;

  bool has_directory_ = false;
  std::string directory_;
  std::map<std::string, std::string, std::less<>> by_name_;  // spelt as SDCC does -> file name
  std::map<std::string, std::vector<std::string>, std::less<>> listed_;  // module -> paths
};

}  // namespace brevant::symbols
