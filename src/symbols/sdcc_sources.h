// SPDX-License-Identifier: MIT
// What lies beside an SDCC program's image: its source files and the modules' relocated listings.
// The debug file names a source by its last part only and with '_' for every character that is no
// letter, digit, '_' or '.'; the listing has the path that was given to the compiler, which was
// started in the image's folder or not far above it.
//
// File names are given relative to the image's folder, with '/' between folders.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "symbols/sdcc_listing.h"

namespace brevant::symbols {

class SdccSources {
 public:
  // Knows of no files: every name stays as it is.
  SdccSources() = default;
  // Looks at the image's folder.
  explicit SdccSources(const std::string& image_directory);

  // The file that the debug file calls name; the name itself when no such file is found. ambiguous
  // says that several modules name such a file, so that only the module's listing can tell which.
  std::string CSource(std::string_view name, std::string_view module, bool ambiguous);
  // The file that a listing names by this path; the path's last part when there is none.
  std::string ListedSource(const std::string& path) const;
  // The assembler source of a module.
  std::string AssemblerSource(std::string_view module) const;
  // Null when there is none.
  const SdccListing* Listing(std::string_view module);

 private:
  // The path from the image's folder or the nearest one above it where the file is; else empty.
  std::string AtOrAbove(const std::filesystem::path& path) const;

  std::optional<std::string> directory_;
  std::map<std::string, std::string, std::less<>> by_name_;  // spelt as SDCC does -> file name
  std::map<std::string, std::optional<SdccListing>, std::less<>> listings_;  // by module
};

}  // namespace brevant::symbols
