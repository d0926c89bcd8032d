// SPDX-License-Identifier: MIT
#include "workspace/command_rows.h"

#include <algorithm>
#include <array>

namespace brevant::workspace {
namespace {

constexpr std::array kMenuBar{
    MenuTitle{Menu::File, "&File"},           MenuTitle{Menu::Edit, "&Edit"},
    MenuTitle{Menu::Configure, "&Configure"}, MenuTitle{Menu::FileIo, "File&I/O"},
    MenuTitle{Menu::Debug, "&Debug"},         MenuTitle{Menu::Window, "&Window"},
    MenuTitle{Menu::Help, "&Help"},
};

constexpr unsigned kSets = kBuilt | kNotDuringFileIo;
constexpr unsigned kLoads = kBuilt | kNotDuringFileIo | kNeedsMonitor;
constexpr unsigned kRuns = kBuilt | kNeedsMonitor;
constexpr unsigned kSteps = kRuns | kNotDuringFileIo;
constexpr unsigned kPopup = kSteps | kNotWhileRunning;

constexpr std::array kRows{
    // File
    CommandRow{140, Menu::File, "&Load S19 or Hex", "Open a S19 file", kLoads},
    CommandRow{141, Menu::File, "Load and execute &Macro", "Load a macro file", kLoads},
    CommandRow{142, Menu::File, "&Load symbol", "Load a symbol table", kLoads},
    CommandRow{143, Menu::File, "E&xit", "Exit the program", kBuilt | kSeparatorBefore},
    CommandRow{144, Menu::File, "", "First most recently loaded file", kLoads | kSeparatorBefore},
    CommandRow{145, Menu::File, "", "Second most recently loaded file", kLoads},
    CommandRow{146, Menu::File, "", "Third most recently loaded file", kLoads},
    CommandRow{147, Menu::File, "", "Fourth most recently loaded file", kLoads},
    CommandRow{148, Menu::File, "", "Fifth most recently loaded file", kLoads},
    // Edit
    CommandRow{160, Menu::Edit, "C&opy to Clipboard",
               "Copy the contents of  a block memory into clipboard", kNotDuringFileIo},
    CommandRow{161, Menu::Edit, "&Paste from Clipboard",
               "Paste the contents in clipboard into MCU memory", kNotDuringFileIo},
    // Configure
    CommandRow{170, Menu::Configure, "Configure", "Configure debugger setting"},
    CommandRow{171, Menu::Configure, "Run to main",
               "Run to label _MAIN when C source level debugging", kSets | kCheckable},
    CommandRow{172, Menu::None, "", "Configure symbol table start string"},
    CommandRow{173, Menu::Configure, "Program window scroll range",
               "Set the program window scroll range", kSets},
    CommandRow{40011, Menu::Configure, "Data window scroll range", "", kNotDuringFileIo},
    CommandRow{174, Menu::Configure, "&Save Setting", "Save the current setting",
               kBuilt | kSeparatorBefore},
    CommandRow{175, Menu::Configure, "Save on &Exit", "Save setting when the progrm exits",
               kSets | kCheckable},
    // File I/O
    CommandRow{180, Menu::FileIo, "&Start", "Start the file I/O process"},
    CommandRow{181, Menu::FileIo, "S&top", "Stop the file I/O process"},
    CommandRow{182, Menu::FileIo, "&InFile", "Set up an input file name for file I/O",
               kSeparatorBefore},
    CommandRow{183, Menu::FileIo, "&OutFile", "Set up an output file name for file I/O"},
    // Debug
    CommandRow{190, Menu::Debug, "&Step", "Run one step", kSteps, "F5", "F11"},
    CommandRow{191, Menu::Debug, "Step&Over", "Run one step, but do not go into subroutine", kSteps,
               "F6", "F10"},
    CommandRow{192, Menu::Debug, "N Step", "Run N steps", kNotDuringFileIo | kCheckable},
    CommandRow{193, Menu::Debug, "&Go", "Run or stop running MCU", kBuilt, "F7"},
    CommandRow{194, Menu::Debug, "Run to Cursor", "Run to current cursor position", kRuns, "F8",
               "Ctrl+F10"},
    CommandRow{196, Menu::Debug, "&Program flash EEPROM", "Program flash EEPROM",
               kNotDuringFileIo | kSeparatorBefore},
    CommandRow{197, Menu::Debug, "&Erase flash EEPROM", "Erase flash EEPROM", kNotDuringFileIo},
    CommandRow{40014, Menu::Debug, "&Mass erase flash EEPROM", "",
               kNotDuringFileIo | kNotWhileRunning | kNeedsMonitor},
    CommandRow{40015, Menu::Debug, "Program &IRQ vector", "", kNotDuringFileIo},
    CommandRow{40016, Menu::Debug, "Program &locations", "", kNotDuringFileIo},
    // Window
    CommandRow{220, Menu::Window, "&Program", "Open a new program window", kSets, "Alt+P"},
    CommandRow{221, Menu::Window, "&Data", "Open a new data window", kNotDuringFileIo, "Alt+D"},
    CommandRow{222, Menu::Window, "&Watch", "Open a watch window", kNotDuringFileIo},
    CommandRow{223, Menu::Window, "&Source", "Open a surce window", kNotDuringFileIo},
    CommandRow{224, Menu::Window, "&Tile", "Tile windows", kSets | kSeparatorBefore, "Shift+F4"},
    CommandRow{225, Menu::Window, "&Cascade", "Cascade windows", kSets, "Shift+F5"},
    CommandRow{226, Menu::Window, "Arrange &Icons", "Arrange window icons", kSets},
    // Help
    CommandRow{240, Menu::Help, "Contents", "Content help"},
    CommandRow{241, Menu::Help, "Search for help", "Search for help"},
    CommandRow{242, Menu::None, "", ""},
    CommandRow{243, Menu::Help, "&About Brevant", "Show the name and version of this program",
               kBuilt | kSeparatorBefore},
    // Popup menu of the program views
    CommandRow{260, Menu::ProgramPopup, "Run to cursor",
               "Run to current cursor position in program window", kPopup},
    CommandRow{261, Menu::ProgramPopup, "Run to label", "Run to a label in the symbol table",
               kPopup},
    CommandRow{262, Menu::ProgramPopup, "Edit", "Edit an assembly instruction", kPopup},
    CommandRow{263, Menu::ProgramPopup, "Go to Break Point",
               "Go to a breakpoint in the breakpoint list", kPopup},
    CommandRow{264, Menu::ProgramPopup, "Go to Address", "Go to an address in program window",
               kPopup, "", "Ctrl+G"},
    CommandRow{265, Menu::ProgramPopup, "Go to Symbol",
               "Go to a symbol in symbol list in program window", kPopup},
    CommandRow{266, Menu::ProgramPopup, "Go to PC", "Go to PC position in program window", kPopup},
    CommandRow{267, Menu::ProgramPopup, "PC=Addr at Cursor",
               "Set PC to the address at the cursor position", kPopup},
    CommandRow{268, Menu::ProgramPopup, "Clear All BKPT", "Clear all breakpoints", kPopup},
    CommandRow{commands::kToggleBreakpoint, Menu::ProgramPopup, "Toggle breakpoint",
               "Set or clear a breakpoint at the cursor position", kSets, "", "F9"},
    // Shortcut of the source window
    CommandRow{324, Menu::None, "", "Find the next string in source window", kNoFlags, "F3"},
    // Toolbar
    CommandRow{340, Menu::None, "", "Reset the MCU", kBuilt, "", "Ctrl+R"},
    CommandRow{341, Menu::None, "", "Run MCU one step", kSteps | kNotWhileRunning, "", "", 190},
    CommandRow{342, Menu::None, "", "Run MCU N steps", kNotWhileRunning},
    CommandRow{343, Menu::None, "", "Run MCU one step, but do not go into subroutine",
               kSteps | kNotWhileRunning, "", "", 191},
    CommandRow{344, Menu::None, "", "Ready to run MCU", kBuilt, "", "", 193},
    CommandRow{345, Menu::None, "", "Trace the execution of MCU",
               kNotDuringFileIo | kNotWhileRunning},
    CommandRow{346, Menu::None, "", "Load a macro file", kLoads},
    CommandRow{347, Menu::None, "", "Run to current cursor position", kRuns | kNotWhileRunning, "",
               "", 194},
    CommandRow{348, Menu::None, "", "", kBuilt, "", "Ctrl+Shift+R"},
};

constexpr std::array kToolbar{
    ToolbarButton{348, "ReStart", ""},
    ToolbarButton{340, "Reset", "Reset the MCU"},
    ToolbarButton{341, "Step  F5", "Run MCU one step"},
    ToolbarButton{342, "N Step", "Run MCU N steps"},
    ToolbarButton{343, "StepOver  F6", "Run MCU one step, but do not go into subroutine"},
    ToolbarButton{344, "Go  F7", "Ready to run MCU"},
    ToolbarButton{345, "Trace", "Trace the execution of MCU"},
    ToolbarButton{347, "RunToCur", "Run to current cursor position"},
    ToolbarButton{40014, "MassErase", "Erase the whole flash EEPROM"},
    ToolbarButton{196, "ProgFlash", ""},
};

constexpr std::string_view kGoIsRunning = "MCU is running, click this button to stop";

}  // namespace

std::span<const MenuTitle> MenuBar() {
  return kMenuBar;
}
std::span<const CommandRow> CommandRows() {
  return kRows;
}
std::span<const ToolbarButton> Toolbar() {
  return kToolbar;
}

const CommandRow* FindCommand(int id) {
  const auto* const row =
      std::find_if(kRows.begin(), kRows.end(), [id](const CommandRow& r) { return r.id == id; });
  return row == kRows.end() ? nullptr : row;
}

std::string MenuText(const CommandRow& row, bool running) {
  std::string text(row.id == commands::kGo && running ? "&Break" : row.text);
  if (!row.shortcut.empty()) text.append("\t").append(row.shortcut);
  return text;
}

std::string ToolbarText(const ToolbarButton& button, bool running) {
  return std::string(button.id == commands::kToolbarGo && running ? "Break  F7" : button.text);
}

std::string_view Tooltip(const ToolbarButton& button, bool running) {
  return button.id == commands::kToolbarGo && running ? kGoIsRunning : button.tooltip;
}

bool IsEnabled(const CommandRow& row, const CommandConditions& conditions, Place place) {
  const bool runs_in_the_way =
      place != Place::MenuBar && conditions.running && row.Has(kNotWhileRunning);
  return row.Has(kBuilt) && Judge(row, conditions) != Verdict::Ignore && !runs_in_the_way;
}

Verdict Judge(const CommandRow& row, const CommandConditions& conditions) {
  if (conditions.fileIoActive && row.Has(kNotDuringFileIo)) return Verdict::Ignore;
  if (conditions.monitor_away && row.Has(kNeedsMonitor)) return Verdict::StopFirst;
  return Verdict::CarryOut;
}

}  // namespace brevant::workspace
