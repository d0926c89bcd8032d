// SPDX-License-Identifier: MIT
// The source files of the loaded program: found, indexed, and read by lines. Shared by all that
// show source text, so that a file is looked for and read through once. Rests on the line table's
// names and on where sources may lie.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "symbols/debug_info.h"
#include "symbols/source_path.h"
#include "views/source_index.h"

namespace brevant::views {

class SourceFiles {
 public:
  using Folders = std::function<symbols::SourceFolders()>;  // where to look now

  SourceFiles(const symbols::DebugInfo& info, Folders folders)
      : info_(info), folders_(std::move(folders)) {}
  SourceFiles(const SourceFiles&) = delete;
  SourceFiles& operator=(const SourceFiles&) = delete;

  struct File {
    symbols::SourcePlace place;
    SourceIndex index;
    // Why it cannot be shown; empty when it can.
    std::string why() const { return place.found ? index.why() : "not found"; }
  };
  // As it is now: a file that has changed is indexed anew. Good until the next call.
  const File& Get(std::uint32_t file);
  // The line's text with its tabs; nothing when there is none.
  std::optional<std::string> Text(const symbols::SourceLine& line);
  // Files that were not found are looked for again, and found ones may lie elsewhere now.
  void Forget() { files_.clear(); }
  // Moves whenever a file was found, lost or indexed anew.
  long generation() const { return generation_; }

  const symbols::DebugInfo& info() const { return info_; }
  symbols::SourceFolders folders() const { return folders_(); }

 private:
  const symbols::DebugInfo& info_;
  Folders folders_;
  std::map<std::uint32_t, File> files_;
  long of_lines_ = -1;  // generation
  long generation_ = 0;
};

}  // namespace brevant::views
