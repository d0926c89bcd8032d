// SPDX-License-Identifier: MIT
// Importing what the configured tool chain left beside an image: symbols and source lines. One row
// a tool chain; the configuration dialog, the console and the load sequence all read the same rows.
//
// An importer turns its file into a value (see parsed_program.h). Only a whole one replaces the
// tables, so they never hold half a program.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/user_interface.h"
#include "symbols/debug_info.h"
#include "symbols/parsed_program.h"

namespace brevant::symbols {

// A file beside the image, and who reads it.
struct Companion {
  static constexpr int kAnyFormat = -1;

  const char* extension;
  int image_format;  // read with this value of setting "ImageFormat" only
  // A listing's intermediate files are written to the image's folder and read back from there.
  bool is_listing;
  // path is the companion's.
  ParsedProgram (*parse)(const std::string& path);
};

struct ToolChainRow {
  ToolChain tool_chain;         // its number is the value of setting "compiler"
  std::string_view short_name;  // for command lines
  std::string_view display_name;
  std::span<const Companion> companions;  // none: nothing is imported
};

std::span<const ToolChainRow> ToolChains();
// Null for a value or name that is none; names ignore case.
const ToolChainRow* FindToolChain(int setting);
const ToolChainRow* FindToolChain(ToolChain tool_chain);
const ToolChainRow* FindToolChainByName(std::string_view short_name);

// The file with this extension beside the image: the path cut after its first '.' and completed.
// Where that is no file, the cut is made at the first '.' of the file name, then at its last one,
// so that neither "./demo.s19" nor a folder called "v1.2" hides it.
std::string CompanionPath(const std::string& image_path, std::string_view extension);

struct ImportRequest {
  std::string image_path;
  std::string image_directory;  // where the intermediate files of listings go
  int image_format = 0;         // setting "ImageFormat"
  // Called with each value that the output wants in the reset vector ($FFFE, high byte first).
  std::function<void(std::uint16_t)> write_reset_vector;
};

struct ImportResult {
  bool loaded = false;  // the new value of DebugInfoLoaded
  // To be shown to the user; an import may fail without one.
  std::optional<base::Message> message;
  std::string detail;  // what was read, or which file was not and why
};

// Imports the companion of info.tool_chain and sets DebugInfoLoaded. A tool chain without a
// companion changes nothing. After a failure the lines are gone; so are the symbols, unless the
// companion is a listing, which leaves symbols that were loaded by hand.
ImportResult ImportCompanion(const ImportRequest& request, DebugInfo& info);

// A file that names by itself what it is, whatever tool chain is in force: SDCC's debug file (.cdb)
// and the map files (.map) of SDCC and of Imagecraft. Nothing for other extensions.
std::optional<ParsedProgram> ReadDebugFile(const std::string& path);

struct OtherToolChain {
  const ToolChainRow* row = nullptr;
  int image_format = 0;  // what setting "ImageFormat" must be, where it matters
  std::string path;      // the file that could be read
};

// Another tool chain than current whose output for this image lies beside it and can be read, SDCC
// before the others. Writes nothing.
std::optional<OtherToolChain> FindOtherToolChain(const std::string& image_path, ToolChain current);

}  // namespace brevant::symbols
