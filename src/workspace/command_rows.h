// SPDX-License-Identifier: MIT
// Every command of the windows as a row: menus, toolbar, shortcuts, status-bar help and what is
// refused when are derived from here. The ids are those that engine code sends and help topics
// bear.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace brevant::workspace {

enum class Menu {
  None,  // sent by a shortcut, a button or another command
  File,
  Edit,
  Configure,
  FileIo,
  Debug,
  Window,
  Help,
  ProgramPopup,    // of a program view
  DataPopup,       // of a data view
  StackPopup,      // of the stack view
  CallsPopup,      // of the call stack view
  SourcePopup,     // of the source view
  WatchPopup,      // of the watch view
  VariablesPopup,  // of the variables view
  ChipPopup,       // of the view of the MCU's registers
  TracePopup,      // of the trace view
  ProfilePopup,    // of the profile view
};
// Pops up over a view; its items act on that.
bool IsPopup(Menu menu);

// The menu bar in its order.
struct MenuTitle {
  Menu menu;
  std::string_view text;
};
std::span<const MenuTitle> MenuBar();

enum CommandFlags : unsigned {
  kNoFlags = 0,
  kNotDuringFileIo = 1,  // ignored while file I/O is active
  kNotWhileRunning = 2,  // as a button or popup item disabled while the target runs
  kCheckable = 4,
  kSeparatorBefore = 8,
  kNeedsMonitor = 16,   // a running target does not answer; menus and keys then say so
  kRunsTarget = 32,     // not while a block is written or flash is worked on
  kKeysOfItsView = 64,  // the shortcuts of a popup item belong to its views alone
};

struct CommandRow {
  int id;
  Menu menu;
  std::string_view text;  // of the menu item; '&' before its key
  std::string_view help;  // in the status bar; may be empty
  unsigned flags = kNoFlags;
  std::string_view shortcut = {};
  std::string_view second_shortcut = {};  // the habits of other debuggers
  int same_as = 0;                        // the command of a menu whose action it shares

  bool Has(CommandFlags flag) const { return (flags & flag) != 0; }
};

namespace commands {
inline constexpr int kLoadImage = 140, kLoadMacro = 141, kLoadSymbols = 142, kExit = 143;
inline constexpr int kFirstRecentFile = 144, kLastRecentFile = 148;
inline constexpr int kCopyToClipboard = 160, kPasteFromClipboard = 161;
inline constexpr int kConfigure = 170, kRunToMain = 171, kSymbolTableStart = 172;
inline constexpr int kProgramRange = 173, kDataRange = 40011;
inline constexpr int kSaveSettings = 174, kSaveOnExit = 175;
inline constexpr int kFileIoStart = 180, kFileIoStop = 181, kFileIoIn = 182, kFileIoOut = 183;
inline constexpr int kStep = 190, kStepOver = 191, kNStep = 192, kGo = 193, kRunToCursor = 194;
inline constexpr int kProgramFlash = 196, kEraseFlash = 197, kMassErase = 40014;
inline constexpr int kProgramIrqVector = 40015, kProgramLocations = 40016;
inline constexpr int kOpenProgram = 220, kOpenData = 221, kOpenWatch = 222, kOpenSource = 223;
inline constexpr int kTile = 224, kCascade = 225, kArrangeIcons = 226;
inline constexpr int kHelpContents = 240, kHelpSearch = 241, kHelpOnHelp = 242, kAbout = 243;
inline constexpr int kPopupRunToCursor = 260, kPopupRunToLabel = 261, kPopupEdit = 262;
inline constexpr int kPopupGoToBreakpoint = 263, kPopupGoToAddress = 264, kPopupGoToSymbol = 265;
inline constexpr int kPopupGoToPc = 266, kPopupSetPc = 267, kPopupClearBreakpoints = 268;
inline constexpr int kDataEdit = 280, kDataGoToAddress = 281, kDataGoToSymbol = 282;
inline constexpr int kDataFill = 284, kDataMove = 285;
inline constexpr int kDataGoToPc = 283, kDataPerLine = 286, kDataAscii = 287, kDataUnit = 40013;
inline constexpr int kSourceRunToCursor = 320, kSourceGoToPc = 40012, kSourceGoToBreakpoint = 321;
inline constexpr int kSourceOpenFile = 322, kSourceFind = 323, kFindNext = 324;
inline constexpr int kSourceTabSize = 325;
inline constexpr int kWatchEdit = 300, kWatchAdd = 301, kWatchModify = 302, kWatchMoveUp = 303;
inline constexpr int kWatchMoveDown = 304, kWatchDelete = 305, kWatchOpen = 306, kWatchSave = 308;
inline constexpr int kReset = 340, kToolbarStep = 341, kToolbarNStep = 342;
inline constexpr int kToolbarStepOver = 343, kToolbarGo = 344, kToolbarTrace = 345;
inline constexpr int kRunMacro = 346, kToolbarRunToCursor = 347, kReStart = 348;
inline constexpr int kToggleBreakpoint = 41000, kRefresh = 41001, kPopupRefresh = 41002;
inline constexpr int kDataRefresh = 41003;
inline constexpr int kSaveMemory = 41020, kCompareFile = 41021;
inline constexpr int kOpenStack = 41040, kStackGoToCode = 41041, kStackRefresh = 41042;
inline constexpr int kClassicColours = 41010, kQuietColours = 41011;
inline constexpr int kSaveReport = 41140;
inline constexpr int kLargerText = 41012, kSmallerText = 41013;
inline constexpr int kStepLine = 41050, kStepOverLine = 41051, kStepOut = 41052;
inline constexpr int kOpenCalls = 41100, kCallGoTo = 41101, kCallsRefresh = 41102;
inline constexpr int kFlashImage = 41030;
inline constexpr int kTraceGoTo = 41120, kTraceFind = 41121, kTraceFindNext = 41122;
inline constexpr int kTraceExport = 41123, kTraceProfile = 41124;
inline constexpr int kOpenProfile = 41125, kProfileGoTo = 41126;
inline constexpr int kSourceToggleBreakpoint = 41061, kSourceRefresh = 41062;
inline constexpr int kSourceFindFile = 41063, kSourceGoToLine = 41064;
inline constexpr int kShowSource = 41090;
inline constexpr int kWatchAsC = 41071;
inline constexpr int kOpenVariables = 41080, kVariablesRefresh = 41081, kVariablesEdit = 41082;
inline constexpr int kOpenChip = 41110, kChipEdit = 41111, kChipRefresh = 41112;
inline constexpr int kChipReadNow = 41113;
inline constexpr int kAddToWatch = 41070, kDataAddToWatch = 41072, kWatchRefresh = 41073;
}  // namespace commands

// In menu order.
std::span<const CommandRow> CommandRows();
// nullptr for an id that is no command.
const CommandRow* FindCommand(int id);
// Popup menus may share a second shortcut: it is the row's when the window with the active menu has
// no such row, and the row is the first, or when it is of that menu. Those of kKeysOfItsView are
// given to no other window.
bool OwnsKeys(const CommandRow& row, Menu active);
// "F5, F11": the shortcuts of the command, or of the one whose action it shares.
std::string ShortcutText(const CommandRow& row);
// The menu item's text and, behind a tab, its shortcuts. "Go" reads "Break" while running.
std::string MenuText(const CommandRow& row, bool running);

// What repeats steps by itself until it is stopped.
enum class Repeating { Nothing, NSteps, Trace };

struct ToolbarButton {
  int id;
  std::string_view text;
  std::string_view tooltip;  // may be empty
};
// In their order.
std::span<const ToolbarButton> Toolbar();
std::string ToolbarText(const ToolbarButton& button, bool running, Repeating repeating);
// With the shortcuts behind it.
std::string Tooltip(const ToolbarButton& button, bool running);

// What decides whether a command may be carried out.
struct CommandConditions {
  bool running = false;  // the Go button reads "Break"
  bool fileIoActive = false;
  bool monitor_away = false;  // a program or a routine has the target
  bool operation = false;     // a block is written, or flash is worked on
  Repeating repeating = Repeating::Nothing;
};
// Items of the menu bar stay enabled while the target runs, like their keys: choosing one may say
// why it cannot be done now. Whether a
// command is carried out at all is not asked here.
enum class Place { MenuBar, Popup, Toolbar };
bool IsEnabled(const CommandRow& row, const CommandConditions& conditions, Place place);

// For the dispatch, however the command arrives.
enum class Verdict {
  CarryOut,
  Ignore,     // file I/O has the target
  StopFirst,  // the user is told to
  WaitFirst,
};
Verdict Judge(const CommandRow& row, const CommandConditions& conditions);

}  // namespace brevant::workspace
