// SPDX-License-Identifier: MIT
// The list of breakpoints with the code each stands on: the source line where the loaded program
// has one, else the instruction. Breakpoints can be deleted from it, and one can be gone to.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/user_interface.h"
#include "control/breakpoint_table.h"
#include "isa/symbol_names.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "symbols/source_folders.h"

namespace brevant::views {

class BreakpointList {
 public:
  static constexpr const char* kTitle = "Break Points";

  // What the window that opened the list has to do.
  enum class Result {
    Nothing = 0,
    Deleted = 1,  // marks have changed
    GoTo = 2,     // show the breakpoint gone to
  };

  // Reads 4 bytes for each line that shows an instruction.
  BreakpointList(memory::Memory& memory, control::BreakpointTable& breakpoints,
                 const symbols::DebugInfo& debug_info, const isa::SymbolNames& names,
                 const symbols::SourceFolders& sources, base::UserInterface& ui);

  const std::vector<std::string>& lines() const { return lines_; }
  Result result() const { return result_; }

  // The selected line's breakpoint; a beep and nothing when none is selected.
  std::optional<base::Address> GoTo(std::optional<int> selection);
  // True when it was deleted, and its line with it; else a beep.
  bool Delete(std::optional<int> selection);

 private:
  std::optional<base::Address> Selected(std::optional<int> selection) const;

  control::BreakpointTable& breakpoints_;
  base::UserInterface& ui_;
  std::vector<std::string> lines_;
  Result result_ = Result::Nothing;
};

}  // namespace brevant::views
