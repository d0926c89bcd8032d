// SPDX-License-Identifier: MIT
#include "symbols/source_text.h"

#include <fstream>

#include "symbols/source_path.h"

namespace brevant::symbols {

std::optional<std::string> SourceText(const DebugInfo& info, const SourceLine& line,
                                      const SourceFolders& folders) {
  const SourcePlace place = FindSource(info, line.file, folders);
  if (!place.found || line.line == 0) return std::nullopt;
  std::ifstream source(place.path);
  std::string text;
  for (std::uint32_t n = 0; n < line.line; ++n) {
    if (!std::getline(source, text)) return std::nullopt;
  }
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

}  // namespace brevant::symbols
