// SPDX-License-Identifier: MIT
#include "workspace/command_rows.h"

#include <algorithm>
#include <iterator>

namespace brevant::workspace {
namespace {

using namespace commands;

constexpr MenuTitle kMenuBar[] = {
    {Menu::File, "&File"},      {Menu::Edit, "&Edit"},   {Menu::Configure, "&Configure"},
    {Menu::FileIo, "File&I/O"}, {Menu::Debug, "De&bug"}, {Menu::Window, "&Window"},
    {Menu::Help, "&Help"},
};

constexpr unsigned kUsesTarget = kNotDuringFileIo | kNeedsMonitor;
constexpr unsigned kPopup = kUsesTarget | kNotWhileRunning;
constexpr unsigned kWatchList = kNotDuringFileIo | kKeysOfItsView;

constexpr CommandRow kCommandRows[] = {
    // File
    {kLoadImage, Menu::File, "&Load S19 or Hex", "Open a S19 file", kUsesTarget},
    {kLoadMacro, Menu::File, "Load and execute &Macro", "Load a macro file", kUsesTarget},
    {kLoadSymbols, Menu::File, "&Load symbol", "Load a symbol table", kUsesTarget},
    {kSaveMemory, Menu::File, "&Save memory as...",
     "Save the contents of a block memory as S19, HEX or binary file",
     kUsesTarget | kSeparatorBefore},
    {kCompareFile, Menu::File, "&Compare with file...",
     "Show where memory differs from a S19, HEX or binary file", kUsesTarget},
    {kExit, Menu::File, "E&xit", "Exit the program", kSeparatorBefore},
    {kFirstRecentFile, Menu::File, "", "First most recently loaded file",
     kUsesTarget | kSeparatorBefore},
    {kFirstRecentFile + 1, Menu::File, "", "Second most recently loaded file", kUsesTarget},
    {kFirstRecentFile + 2, Menu::File, "", "Third most recently loaded file", kUsesTarget},
    {kFirstRecentFile + 3, Menu::File, "", "Fourth most recently loaded file", kUsesTarget},
    {kFirstRecentFile + 4, Menu::File, "", "Fifth most recently loaded file", kUsesTarget},
    // Edit
    {kCopyToClipboard, Menu::Edit, "C&opy to Clipboard",
     "Copy the contents of  a block memory into clipboard", kUsesTarget, "", "Ctrl+C"},
    {kPasteFromClipboard, Menu::Edit, "&Paste from Clipboard",
     "Paste the contents in clipboard into MCU memory", kUsesTarget, "", "Ctrl+V"},
    // Configure
    {kConfigure, Menu::Configure, "Configure", "Configure debugger setting"},
    {kRunToMain, Menu::Configure, "Run to main", "Run to label _MAIN when C source level debugging",
     kNotDuringFileIo | kCheckable},
    {kSymbolTableStart, Menu::Configure, "Symbol &table start...",
     "Configure symbol table start string"},
    {kProgramRange, Menu::Configure, "Program window scroll range",
     "Set the program window scroll range", kNotDuringFileIo},
    {kDataRange, Menu::Configure, "Data window scroll range", "", kNotDuringFileIo},
    {kClassicColours, Menu::Configure, "&Classic colours",
     "Cyan and red on white, whatever the desktop's colours are", kCheckable | kSeparatorBefore},
    {kQuietColours, Menu::Configure, "&Quiet colours",
     "Colours of the desktop, a dot for a breakpoint and an arrow for PC", kCheckable},
    {kLargerText, Menu::Configure, "&Larger text", "Show all windows with larger characters",
     kNoFlags, "", "Ctrl++"},
    {kSmallerText, Menu::Configure, "S&maller text", "Show all windows with smaller characters",
     kNoFlags, "", "Ctrl+-"},
    {kSaveSettings, Menu::Configure, "&Save Setting", "Save the current setting", kSeparatorBefore},
    {kSaveOnExit, Menu::Configure, "Save on &Exit", "Save setting when the progrm exits",
     kNotDuringFileIo | kCheckable},
    // File I/O
    {kFileIoStart, Menu::FileIo, "&Start", "Start the file I/O process", kUsesTarget},
    {kFileIoStop, Menu::FileIo, "S&top", "Stop the file I/O process"},
    {kFileIoIn, Menu::FileIo, "&InFile", "Set up an input file name for file I/O",
     kNeedsMonitor | kCheckable | kSeparatorBefore},
    {kFileIoOut, Menu::FileIo, "&OutFile", "Set up an output file name for file I/O",
     kNeedsMonitor | kCheckable},
    // Debug
    {kStep, Menu::Debug, "&Step", "Run one step", kUsesTarget, "F5"},
    {kStepOver, Menu::Debug, "Step&Over", "Run one step, but do not go into subroutine",
     kUsesTarget, "F6"},
    {kStepLine, Menu::Debug, "Step li&ne", "Run to the next line of source, into what is called",
     kUsesTarget, "", "F11"},
    {kStepOverLine, Menu::Debug, "Step o&ver line",
     "Run to the next line of source, over what is called", kUsesTarget, "", "F10"},
    {kStepOut, Menu::Debug, "Step o&ut", "Run until the present function has returned", kUsesTarget,
     "", "Shift+F11"},
    {kNStep, Menu::Debug, "N Step", "Run N steps", kNotDuringFileIo | kCheckable},
    {kGo, Menu::Debug, "&Go", "Run or stop running MCU", kRunsTarget, "F7"},
    {kRunToCursor, Menu::Debug, "Run to Cursor", "Run to current cursor position", kNeedsMonitor,
     "F8", "Ctrl+F10"},
    {kOpenProfile, Menu::Debug, "P&rofile of the trace",
     "Show in which functions and lines the cycles of the last trace went", kNotDuringFileIo},
    {kProgramFlash, Menu::Debug, "&Program flash EEPROM", "Program flash EEPROM",
     kUsesTarget | kSeparatorBefore},
    {kEraseFlash, Menu::Debug, "&Erase flash EEPROM", "Erase flash EEPROM", kUsesTarget},
    {kMassErase, Menu::Debug, "&Mass erase flash EEPROM", "", kUsesTarget | kNotWhileRunning},
    {kProgramIrqVector, Menu::Debug, "Program &IRQ vector", "", kUsesTarget},
    {kProgramLocations, Menu::Debug, "Program &locations", "", kUsesTarget},
    {kFlashImage, Menu::Debug, "&Flash image",
     "Bring flash to what an image holds: erase and program only what differs", kUsesTarget, "",
     "Ctrl+F7"},
    {kReset, Menu::Debug, "Rese&t", "Reset the MCU", kSeparatorBefore, "", "Ctrl+R"},
    {kReStart, Menu::Debug, "ReSt&art", "Connect to the target again", kNoFlags, "",
     "Ctrl+Shift+R"},
    // Window
    {kOpenProgram, Menu::Window, "&Program", "Open a new program window", kNotDuringFileIo,
     "Alt+P"},
    {kOpenData, Menu::Window, "&Data", "Open a new data window", kNotDuringFileIo, "Alt+D"},
    {kOpenStack, Menu::Window, "Stac&k", "Open the window onto the program's stack",
     kNotDuringFileIo, "", "Alt+K"},
    {kOpenCalls, Menu::Window, "Call st&ack", "Open the window of the functions the program is in",
     kNotDuringFileIo, "", "Alt+A"},
    {kOpenWatch, Menu::Window, "&Watch", "Open a watch window", kNotDuringFileIo},
    {kOpenSource, Menu::Window, "&Source", "Open a surce window", kNotDuringFileIo, "", "Alt+S"},
    {kOpenVariables, Menu::Window, "&Variables",
     "Open the window onto the variables of the program", kNotDuringFileIo, "", "Alt+V"},
    {kOpenChip, Menu::Window, "C&hip", "Open the window onto the registers of the MCU",
     kNotDuringFileIo},
    {kTile, Menu::Window, "&Tile", "Tile windows", kNotDuringFileIo | kSeparatorBefore, "Shift+F4"},
    {kCascade, Menu::Window, "&Cascade", "Cascade windows", kNotDuringFileIo, "Shift+F5"},
    {kArrangeIcons, Menu::Window, "Arrange &Icons", "Arrange window icons", kNotDuringFileIo},
    {kRefresh, Menu::Window, "&Refresh", "Read what the window shows from the target again",
     kUsesTarget | kNotWhileRunning, "", "Ctrl+F5"},
    // Help
    {kHelpContents, Menu::Help, "Contents", "Content help"},
    {kHelpSearch, Menu::Help, "Search for help", "Search for help"},
    {kHelpOnHelp, Menu::None, "", ""},
    {kSaveReport, Menu::Help, "Save a &report...",
     "Save versions, settings and the last of the wire as a text", kSeparatorBefore},
    {kAbout, Menu::Help, "&About Brevant", "Show the name and version of this program"},
    // Popup menu of the program views
    {kPopupRunToCursor, Menu::ProgramPopup, "Run to cursor",
     "Run to current cursor position in program window", kPopup},
    {kPopupRunToLabel, Menu::ProgramPopup, "Run to label", "Run to a label in the symbol table",
     kPopup},
    {kPopupEdit, Menu::ProgramPopup, "Edit", "Edit an assembly instruction", kPopup},
    {kPopupGoToBreakpoint, Menu::ProgramPopup, "Go to Break Point",
     "Go to a breakpoint in the breakpoint list", kPopup},
    {kPopupGoToAddress, Menu::ProgramPopup, "Go to Address", "Go to an address in program window",
     kPopup, "", "Ctrl+G"},
    {kPopupGoToSymbol, Menu::ProgramPopup, "Go to Symbol",
     "Go to a symbol in symbol list in program window", kPopup},
    {kPopupGoToPc, Menu::ProgramPopup, "Go to PC", "Go to PC position in program window", kPopup},
    {kPopupSetPc, Menu::ProgramPopup, "PC=Addr at Cursor",
     "Set PC to the address at the cursor position", kPopup},
    {kPopupClearBreakpoints, Menu::ProgramPopup, "Clear All BKPT", "Clear all breakpoints", kPopup},
    {kToggleBreakpoint, Menu::ProgramPopup, "Toggle breakpoint",
     "Set or clear a breakpoint at the cursor position", kNotDuringFileIo, "", "F9"},
    {kAddToWatch, Menu::ProgramPopup, "Add to watch", "Watch what lies at the cursor position",
     kNotDuringFileIo},
    {kShowSource, Menu::ProgramPopup, "Show source lines",
     "Show each source line above the instructions that it made", kNotDuringFileIo | kCheckable},
    {kPopupRefresh, Menu::ProgramPopup, "Refresh",
     "Read what the window shows from the target again", kPopup, "", "", kRefresh},
    // Popup menu of the data views
    {kDataEdit, Menu::DataPopup, "Edit", "Edit the contents of a memory location in data window",
     kPopup},
    {kDataGoToAddress, Menu::DataPopup, "Go to Address", "Go to an address location in data window",
     kPopup, "", "Ctrl+G"},
    {kDataGoToSymbol, Menu::DataPopup, "Go to Symbol",
     "Go to a symbol in the symbol list in data dindow", kPopup},
    {kDataGoToPc, Menu::DataPopup, "Go to PC", "Go to PC position in data window", kPopup},
    {kDataFill, Menu::DataPopup, "Fill Block",
     "Fill a block of memory in data window with a single value", kPopup},
    {kDataMove, Menu::DataPopup, "Move Block",
     "Move a block of memory to another location in data window", kPopup},
    {kDataPerLine, Menu::DataPopup, "Toggle data per line (16)",
     "Toggle between 8 or 16 bytes per line", kNotDuringFileIo | kSeparatorBefore},
    {kDataUnit, Menu::DataPopup, "Display as BYTE", "", kNotDuringFileIo},
    {kDataAscii, Menu::DataPopup, "Display ASCII data", "", kNotDuringFileIo | kCheckable},
    {kDataAddToWatch, Menu::DataPopup, "Add to watch", "Watch what lies at the cursor position",
     kNotDuringFileIo, "", "", kAddToWatch},
    {kDataRefresh, Menu::DataPopup, "Refresh", "Read what the window shows from the target again",
     kPopup, "", "", kRefresh},
    // Popup menu of the stack view
    {kStackGoToCode, Menu::StackPopup, "Go to code",
     "Show the call behind a return address, or where an interrupt came, in the program window",
     kPopup},
    {kStackRefresh, Menu::StackPopup, "Refresh", "Read what the window shows from the target again",
     kPopup, "", "", kRefresh},
    // Popup menu of the call stack view
    {kCallGoTo, Menu::CallsPopup, "Go to", "Show where the function is", kNotDuringFileIo},
    {kCallsRefresh, Menu::CallsPopup, "Refresh", "Read what the window shows from the target again",
     kPopup, "", "", kRefresh},
    // Popup menu of the source view
    {kSourceRunToCursor, Menu::SourcePopup, "RunToCur",
     "Run to current cursor location in source window", kPopup},
    {kSourceGoToPc, Menu::SourcePopup, "Go to PC", "", kNotDuringFileIo},
    {kSourceGoToBreakpoint, Menu::SourcePopup, "Go to Break Point",
     "Go to a breakpoint in breakpoint list in source window", kPopup},
    {kSourceOpenFile, Menu::SourcePopup, "Open Soruce file", "Open a source file",
     kNotDuringFileIo},
    {kSourceFind, Menu::SourcePopup, "Find", "Find a text string in source window",
     kNotDuringFileIo, "", "Ctrl+F"},
    {kFindNext, Menu::SourcePopup, "Find next", "Find the next string in source window",
     kNotDuringFileIo, "F3"},
    {kSourceTabSize, Menu::SourcePopup, "Tab size", "Set up the TAB size", kNotDuringFileIo},
    {kSourceGoToLine, Menu::SourcePopup, "Go to line", "Go to a line by its number",
     kNotDuringFileIo, "", "Ctrl+G"},
    {kSourceToggleBreakpoint, Menu::SourcePopup, "Toggle breakpoint",
     "Set or clear a breakpoint where the line's code begins", kNotDuringFileIo, "", "F9"},
    {kSourceFindFile, Menu::SourcePopup, "Find the source file...",
     "Show where the source file is that cannot be found", kNotDuringFileIo},
    {kSourceRefresh, Menu::SourcePopup, "Refresh", "Look for the source file and read it again",
     kNotDuringFileIo},
    // Popup menu of the trace view
    {kTraceGoTo, Menu::TracePopup, "Go to code",
     "Show the instruction in the program window, and its line in the source window",
     kNotDuringFileIo},
    {kTraceFind, Menu::TracePopup, "Find", "Find a text in the trace", kNotDuringFileIo, "",
     "Ctrl+F"},
    {kTraceFindNext, Menu::TracePopup, "Find next", "Find the text again", kNotDuringFileIo, "", "",
     kFindNext},
    {kTraceExport, Menu::TracePopup, "Export as CSV...",
     "Save all recorded steps as a table for other programs", kNoFlags},
    {kTraceProfile, Menu::TracePopup, "Profile", "Show where the cycles went", kNotDuringFileIo},
    // Popup menu of the profile view
    {kProfileGoTo, Menu::ProfilePopup, "Go to", "Show the code of the function or line",
     kNotDuringFileIo},
    // Popup menu of the watch view
    {kWatchEdit, Menu::WatchPopup, "Edit", "Edit the contents of a watch variable",
     kNeedsMonitor | kNotWhileRunning | kKeysOfItsView, "", "Return"},
    {kWatchAdd, Menu::WatchPopup, "Add Variable", "Add a new watch variable", kWatchList, "",
     "Ins"},
    {kWatchModify, Menu::WatchPopup, "Modify Setting", "Modify the setting for a watch variable",
     kWatchList},
    {kWatchMoveUp, Menu::WatchPopup, "Move up", "Move a watch variable up one position", kWatchList,
     "", "Alt+Up"},
    {kWatchMoveDown, Menu::WatchPopup, "Move down", "Move a watch variable down on position",
     kWatchList, "", "Alt+Down"},
    {kWatchDelete, Menu::WatchPopup, "Delete", "Delete a watch variable", kWatchList, "", "Del"},
    {kWatchOpen, Menu::WatchPopup, "Open config", "Open a watch window configuration file",
     kWatchList},
    {kWatchSave, Menu::WatchPopup, "Save config as", "Save the watch configuration to a file",
     kWatchList},
    {kWatchAsC, Menu::WatchPopup, "Show as C", "Show values whose types are known as C writes them",
     kNotDuringFileIo | kCheckable | kSeparatorBefore},
    {kWatchRefresh, Menu::WatchPopup, "Refresh", "Read what the window shows from the target again",
     kPopup, "", "", kRefresh},
    // Popup menu of the variables view
    {kVariablesEdit, Menu::VariablesPopup, "Edit", "Change the value of the variable",
     kPopup | kKeysOfItsView, "", "Return"},
    {kVariablesRefresh, Menu::VariablesPopup, "Refresh",
     "Read what the window shows from the target again", kPopup, "", "", kRefresh},
    // Popup menu of the view of the MCU's registers
    {kChipEdit, Menu::ChipPopup, "Edit", "Change the register, or the field of it",
     kPopup | kKeysOfItsView, "", "Return"},
    {kChipReadNow, Menu::ChipPopup, "Read now",
     "Read the register even if that changes it or another one", kPopup | kKeysOfItsView, "", "R"},
    {kChipRefresh, Menu::ChipPopup, "Refresh", "Read what the window shows from the target again",
     kPopup, "", "", kRefresh},
    // Toolbar
    {kToolbarStep, Menu::None, "", "Run MCU one step", kUsesTarget | kNotWhileRunning, "", "",
     kStep},
    {kToolbarNStep, Menu::None, "", "Run MCU N steps", kNotWhileRunning},
    {kToolbarStepOver, Menu::None, "", "Run MCU one step, but do not go into subroutine",
     kUsesTarget | kNotWhileRunning, "", "", kStepOver},
    {kToolbarGo, Menu::None, "", "Ready to run MCU", kRunsTarget, "", "", kGo},
    {kToolbarTrace, Menu::None, "", "Trace the execution of MCU",
     kNotDuringFileIo | kNotWhileRunning},
    {kRunMacro, Menu::None, "", "Load a macro file", kUsesTarget, "", "", kLoadMacro},
    {kToolbarRunToCursor, Menu::None, "", "Run to current cursor position",
     kNeedsMonitor | kNotWhileRunning, "", "", kRunToCursor},
};

constexpr ToolbarButton kToolbar[] = {
    {kReStart, "ReStart", "Connect to the target again"},
    {kReset, "Reset", "Reset the MCU"},
    {kToolbarStep, "Step  F5", "Run MCU one step"},
    {kToolbarNStep, "N Step", "Run MCU N steps"},
    {kToolbarStepOver, "StepOver  F6", "Run MCU one step, but do not go into subroutine"},
    {kToolbarGo, "Go  F7", "Ready to run MCU"},
    {kToolbarTrace, "Trace", "Trace the execution of MCU"},
    {kToolbarRunToCursor, "RunToCur", "Run to current cursor position"},
    {kMassErase, "MassErase", "Erase the whole flash EEPROM"},
    {kProgramFlash, "ProgFlash", ""},
};

constexpr bool RepeatedBy(int id, Repeating repeating) {
  return (id == kToolbarNStep && repeating == Repeating::NSteps) ||
         (id == kToolbarTrace && repeating == Repeating::Trace);
}

constexpr std::string_view kGoIsRunning = "MCU is running, click this button to stop";

}  // namespace

bool IsPopup(Menu menu) {
  return menu >= Menu::ProgramPopup;
}
std::span<const MenuTitle> MenuBar() {
  return kMenuBar;
}
std::span<const CommandRow> CommandRows() {
  return kCommandRows;
}
std::span<const ToolbarButton> Toolbar() {
  return kToolbar;
}

const CommandRow* FindCommand(int id) {
  const auto* const row = std::ranges::find(kCommandRows, id, &CommandRow::id);
  return row == std::end(kCommandRows) ? nullptr : row;
}

bool OwnsKeys(const CommandRow& row, Menu active) {
  if (row.second_shortcut.empty()) return true;
  if (row.Has(kKeysOfItsView)) return row.menu == active;
  const CommandRow* owner = nullptr;
  for (const CommandRow& other : kCommandRows) {
    if (other.second_shortcut != row.second_shortcut) continue;
    if (owner == nullptr || other.menu == active) owner = &other;
  }
  return owner == &row;
}

std::string ShortcutText(const CommandRow& row) {
  const CommandRow& own = row.same_as != 0 ? *FindCommand(row.same_as) : row;
  std::string text(own.shortcut);
  if (!own.shortcut.empty() && !own.second_shortcut.empty()) text += ", ";
  return text.append(own.second_shortcut);
}

std::string MenuText(const CommandRow& row, bool running) {
  std::string text(row.id == kGo && running ? "&Break" : row.text);
  const std::string keys = ShortcutText(row);
  return keys.empty() ? text : text + '\t' + keys;
}

std::string ToolbarText(const ToolbarButton& button, bool running, Repeating repeating) {
  if (button.id == kToolbarGo && running) return "Break  F7";
  // One that has ended what it began reads as at first, so that nobody takes it for another one.
  return std::string(RepeatedBy(button.id, repeating)
                         ? button.id == kToolbarNStep ? "NStepping" : "Tracing"
                         : button.text);
}

std::string Tooltip(const ToolbarButton& button, bool running) {
  const bool stops = button.id == kToolbarGo && running;
  std::string tip(stops ? kGoIsRunning : button.tooltip);
  const std::string keys = ShortcutText(*FindCommand(button.id));
  if (keys.empty()) return tip;
  return tip.empty() ? keys : tip + " (" + keys + ')';
}

bool IsEnabled(const CommandRow& row, const CommandConditions& conditions, Place place) {
  // The button that has begun it ends it.
  if (RepeatedBy(row.id, conditions.repeating)) return true;
  const bool repeats = conditions.repeating != Repeating::Nothing && place == Place::Toolbar;
  if (repeats && row.id == kToolbarGo) return false;
  const bool runs_in_the_way =
      place != Place::MenuBar && row.Has(kNotWhileRunning) && (conditions.running || repeats);
  return Judge(row, conditions) != Verdict::Ignore && !runs_in_the_way;
}

Verdict Judge(const CommandRow& row, const CommandConditions& conditions) {
  if (conditions.fileIoActive && row.Has(kNotDuringFileIo)) return Verdict::Ignore;
  if (conditions.operation && (row.flags & (kNeedsMonitor | kRunsTarget)) != 0) {
    return Verdict::WaitFirst;
  }
  if (conditions.monitor_away && row.Has(kNeedsMonitor)) return Verdict::StopFirst;
  return Verdict::CarryOut;
}

}  // namespace brevant::workspace
