// SPDX-License-Identifier: MIT
// The choosers for files: what each offers and where it starts. The dialogs themselves are
// the front end's. Rests on file names and the tool chain, which decides what an image is called.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "symbols/debug_info.h"

namespace brevant::workspace {

enum class Chooser {
  Image,
  FlashFile,
  SymbolFile,
  MacroFile,
  WatchOpen,
  WatchSave,
  InputText,
  OutputText,
  SaveMemory,
  CompareFile,
  SourceFile,
  TraceTable,
  Report,
};

struct FileFilter {
  std::string_view description;
  std::string_view pattern;  // "*.S19;*.hex"; letters stand for both cases
};

enum class ChooserKind {
  Open,            // the file must exist
  SaveExisting,    // a save dialog whose file must exist
  SaveConfirming,  // asks before it replaces a file
};

// One chooser, ready to be shown. The file-name field starts empty.
struct FileChooser {
  static constexpr std::size_t kMaxPathLength = 99;

  const char* title = "Open a file";
  ChooserKind kind = ChooserKind::Open;
  std::span<const FileFilter> filters;  // the first is selected
  std::string start_directory;
  std::string default_extension;  // for a name typed without one

  bool any_length = false;  // of the path

  bool must_exist() const { return kind != ChooserKind::SaveConfirming; }
  // A longer path is refused like a name that is not there.
  static bool Accepts(std::string_view path) {
    return !path.empty() && path.size() <= kMaxPathLength;
  }
};

// start is the path to start from, e.g. the current image's; empty for none.
FileChooser PrepareChooser(Chooser chooser, std::string_view start, symbols::ToolChain tool_chain,
                           std::string_view current_directory);

// The single patterns of a filter, each in upper and in lower case: for dialogs that tell them
// apart.
std::vector<std::string> BothCases(std::string_view pattern);

}  // namespace brevant::workspace
