// SPDX-License-Identifier: MIT
// The dialogs that a command opens at once, and how to come to them.
#pragma once

#include "gui/window_kinds.h"
#include "workspace/command_rows.h"

namespace brevant::gui {

struct DialogRow {
  const char* dialog;
  int command;                     // opens it
  const WindowKind* in = nullptr;  // the window that is active then
};
inline const DialogRow kDialogs[] = {
    {"LookHWDlg", workspace::commands::kReStart},
    {"SymTabDlg", workspace::commands::kSymbolTableStart},
    {"PROGRANGE", workspace::commands::kProgramRange},
    {"NSTEPDLG", workspace::commands::kNStep},
    {"COPYTOCLIP", workspace::commands::kCopyToClipboard},
    {"SAVEMEMORY", workspace::commands::kSaveMemory},
    {"FEEPROM", workspace::commands::kProgramFlash},
    {"FEEPERASE", workspace::commands::kEraseFlash},
    {"PROGLOCATION", workspace::commands::kProgramLocations},
    {"BKPTDLG", workspace::commands::kPopupGoToBreakpoint, &kProgramKind},
    {"CBDlgEdit", workspace::commands::kPopupGoToSymbol, &kProgramKind},
    {"FILLDLG", workspace::commands::kDataFill, &kDataKind},
    {"MOVEDLG", workspace::commands::kDataMove, &kDataKind},
    {"FindDlg", workspace::commands::kSourceFind, &kSourceKind},
    {"CBDlgList", workspace::commands::kSourceOpenFile, &kSourceKind},
    {"TabSizeDlg", workspace::commands::kSourceTabSize, &kSourceKind},
    {"WATCHDLGADD", workspace::commands::kWatchAdd, &kWatchKind},
};

}  // namespace brevant::gui
