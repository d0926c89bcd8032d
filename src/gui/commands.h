// SPDX-License-Identifier: MIT
// What the commands of the windows do: each collects what it needs from the user and hands it to
// the engine. All run inside the gate.
#pragma once

#include <string>

namespace brevant::gui {

class MainWindow;
class Session;

struct CommandContext {
  Session& session;
  MainWindow& window;
};

// Files
void LoadChosenImage(const CommandContext& context);
// A path as if it had been chosen.
void LoadImageFile(const CommandContext& context, const std::string& path);
void LoadRecentFile(const CommandContext& context, int index);
void RunChosenMacro(const CommandContext& context);
void LoadChosenSymbols(const CommandContext& context);

// Running
void Step(const CommandContext& context);
void StepOver(const CommandContext& context);
void GoOrBreak(const CommandContext& context);
void RunToCursor(const CommandContext& context);
void Reset(const CommandContext& context);
void ReStart(const CommandContext& context);

// Popup menu of the program windows
void PopupRunToCursor(const CommandContext& context);
void PopupRunToLabel(const CommandContext& context);
void PopupEdit(const CommandContext& context);
void PopupGoToBreakpoint(const CommandContext& context);
void PopupGoToAddress(const CommandContext& context);
void PopupGoToSymbol(const CommandContext& context);
void PopupGoToPc(const CommandContext& context);
void PopupSetPc(const CommandContext& context);
void PopupClearBreakpoints(const CommandContext& context);
void ToggleBreakpoint(const CommandContext& context);

// Settings, windows, help
void ToggleRunToMain(const CommandContext& context);
void ToggleSaveOnExit(const CommandContext& context);
void SetProgramRange(const CommandContext& context);
void SaveSettings(const CommandContext& context);
void Tile(const CommandContext& context);
void Cascade(const CommandContext& context);
void ArrangeIcons(const CommandContext& context);
void About(const CommandContext& context);
void Exit(const CommandContext& context);

}  // namespace brevant::gui
