// SPDX-License-Identifier: MIT
#include "symbols/source_text.h"

#include <filesystem>
#include <fstream>

#include "base/file_names.h"

namespace brevant::symbols {

std::optional<std::string> SourcePath(const DebugInfo& info, std::uint32_t file,
                                      const std::string& image_directory) {
  const std::vector<std::string>& files = info.LineTable.files();
  if (file >= files.size()) return std::nullopt;
  for (const std::string& path : {base::JoinPath(info.directory, files[file]),
                                  base::JoinPath(image_directory, files[file]), files[file]}) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return path;
  }
  return std::nullopt;
}

std::optional<std::string> SourceText(const DebugInfo& info, const SourceLine& line,
                                      const std::string& image_directory) {
  const auto path = SourcePath(info, line.file, image_directory);
  if (!path || line.line == 0) return std::nullopt;
  std::ifstream source(*path);
  std::string text;
  for (std::uint32_t n = 0; n < line.line; ++n) {
    if (!std::getline(source, text)) return std::nullopt;
  }
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

}  // namespace brevant::symbols
