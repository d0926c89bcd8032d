// SPDX-License-Identifier: MIT
// The text behind a source line.
#pragma once

#include <optional>
#include <string>

#include "symbols/debug_info.h"

namespace brevant::symbols {

// The path of a source file: from the folder of the debug information, else in the image's, else as
// the tool chain names it. Nothing when there is no such file.
std::optional<std::string> SourcePath(const DebugInfo& info, std::uint32_t file,
                                      const std::string& image_directory);
// The line's text without its line end; nothing when the file cannot be read or is shorter.
std::optional<std::string> SourceText(const DebugInfo& info, const SourceLine& line,
                                      const std::string& image_directory);

}  // namespace brevant::symbols
