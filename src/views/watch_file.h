// SPDX-License-Identifier: MIT
// The configuration file that keeps a list of watched variables beside the program: section "watch"
// with "nwatch", and an entry a key.
//
//   ws0=count@DWU1200@000080      name, display, width, sign, length, reserved byte, address
//
// Rests on the settings file's form. Whatever a file holds, reading it gives a list.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "symbols/debug_info.h"
#include "views/watch_table.h"

namespace brevant::views {

// Beside the image; empty for no image.
std::string WatchFilePath(const std::string& image_path);

// One replacement of the file: all of the list or, as false says, nothing. What else stands in the
// file stays.
bool SaveWatchFile(const std::string& path, std::span<const WatchItem> items);

struct WatchFile {
  std::vector<WatchItem> items = {};
  std::string problem = {};  // why it was not read; a file that is not there is no problem
  bool found = false;        // there is such a file with such a section
};
// Names get the addresses of the loaded program, where that has names of its own.
WatchFile LoadWatchFile(const std::string& path, const symbols::DebugInfo& info);

}  // namespace brevant::views
