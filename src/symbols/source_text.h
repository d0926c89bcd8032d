// SPDX-License-Identifier: MIT
// The text behind a source line.
#pragma once

#include <optional>
#include <string>

#include "symbols/debug_info.h"
#include "symbols/source_folders.h"

namespace brevant::symbols {

// The line's text without its line end; nothing when the file cannot be read or is shorter.
std::optional<std::string> SourceText(const DebugInfo& info, const SourceLine& line,
                                      const SourceFolders& folders);

}  // namespace brevant::symbols
