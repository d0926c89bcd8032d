// SPDX-License-Identifier: MIT
// The file behind a source name of the line table. A program is often looked at elsewhere than
// where it was built, so the name's trailing parts are looked for too: of "src/drv/io.c" first all
// of it, then "drv/io.c", then "io.c". The longest that is found decides; among equally long ones a
// folder that the user has named comes before the folders of the debug information and the image.
// Introl's library sources, whose names hold a '/', lie in its LIBRARIES folder first of all.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symbols/debug_info.h"
#include "symbols/source_folders.h"

namespace brevant::symbols {

struct SourcePlace {
  std::string path;  // of the file; where it is expected first when there is none
  bool found = false;
};

SourcePlace FindSource(const DebugInfo& info, std::uint32_t file, const SourceFolders& folders);
// In which folders it was looked for, each once.
std::vector<std::string> FoldersLookedIn(const DebugInfo& info, const SourceFolders& folders);

// The folder from which the chosen file has the name, or as many of its trailing parts as fit.
// Nothing when not even the last part does.
std::optional<std::string> FolderOfSource(std::string_view chosen, std::string_view name);

}  // namespace brevant::symbols
