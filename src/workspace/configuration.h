// SPDX-License-Identifier: MIT
// The dialogs of the Configure menu, as forms: what each page opens with, what may be chosen, and
// what leaving it stores. The page of the automatic macros is load's (macro_page.h).
//
// Each Commit stores in the settings file; false when that could not be written: the choice then
// holds for this run only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "symbols/debug_info.h"
#include "workspace/view_font.h"

namespace brevant::workspace {

// Page "Compiler". It opens on the MCUEZ assembler, whatever is in force.
class CompilerPage {
 public:
  static constexpr symbols::ToolChain kOpensOn = symbols::ToolChain::McuezAssembler;

  // Changed by Commit.
  explicit CompilerPage(symbols::ToolChain& in_force) : in_force_(in_force) {}

  symbols::ToolChain selected() const { return selected_; }
  void Choose(symbols::ToolChain tool_chain);
  // "In force: SDCC C compiler"
  std::string InForceText() const;
  // Where the user has chosen nothing, the tool chain in force is changed only after asking.
  bool Commit(base::SettingsFile& settings, base::UserInterface& ui);

 private:
  symbols::ToolChain& in_force_;
  symbols::ToolChain selected_ = kOpensOn;
  bool chosen_ = false;
};

// Page "Misc".
struct MiscPage {
  bool hardware_breakpoints = true;

  static MiscPage Open(const base::SettingsFile& settings);
  bool Commit(base::SettingsFile& settings) const;
};

// Page "Font".
struct FontPage {
  ViewFont font;

  static FontPage Open(const base::SettingsFile& settings);
  bool Commit(base::SettingsFile& settings) const;
};

// Where the Introl C compiler keeps the sources of its libraries.
struct IntrolDialog {
  static constexpr std::string_view kTemplate = "INTROLLIBDIR";
  static constexpr std::string_view kText =
      "Please specify the Introl LIBRARIES directory, which will be used to search for the "
      "necessary files for C source debugging. Generally, it is C:\\INTROL\\LIBRARIES";
  static constexpr int kMaxLength = 254;

  static std::string InitialText(const base::SettingsFile& settings);
  static bool Commit(base::SettingsFile& settings, std::string_view directory);
};

// The line of a listing that its symbols follow.
class SymbolTableForm {
 public:
  static constexpr const char* kTemplate = "SymTabDlg";
  static constexpr const char* kText = "Symbol table starting string (case sevsitive)";
  static constexpr int kMaxLength = 28;

  SymbolTableForm(base::SettingsFile& settings, base::UserInterface& ui)
      : settings_(settings), ui_(ui) {}

  std::string InitialText() const;
  // A beep and false for an empty text.
  bool Accept(std::string_view text);
  bool stored() const { return stored_; }

 private:
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  bool stored_ = true;
};

}  // namespace brevant::workspace
