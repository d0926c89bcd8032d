// SPDX-License-Identifier: MIT
// What the commands of the windows do: each collects what it needs from the user and hands it to
// the engine. All run inside the gate. The table of a group stands at the end of its
// commands_*.cpp, below the functions that it names.
#pragma once

#include <span>
#include <string>

#include "base/address.h"

namespace brevant::gui {

class MainWindow;
class Session;

struct CommandContext {
  Session& session;
  MainWindow& window;
};

struct CommandAction {
  int id;  // of a command row
  void (*run)(const CommandContext&);
};

std::span<const CommandAction> FileActions();
std::span<const CommandAction> RunActions();
std::span<const CommandAction> FileIoActions();
std::span<const CommandAction> TraceActions();
std::span<const CommandAction> ProgramActions();
std::span<const CommandAction> DataActions();
std::span<const CommandAction> SourceActions();
std::span<const CommandAction> BlockActions();
std::span<const CommandAction> ClipboardActions();
std::span<const CommandAction> MemoryFileActions();
std::span<const CommandAction> FlashActions();
std::span<const CommandAction> WatchActions();
std::span<const CommandAction> ConfigureActions();
std::span<const CommandAction> ChipActions();
std::span<const CommandAction> WindowActions();

// The one of the command, or of the command whose action it shares. nullptr when there is none.
const CommandAction* FindAction(int id);
// This version carries the command out: it has an action or opens a kind of window.
bool IsBuilt(int id);

// Shows the code, as a source line where the source window is open and has it.
void ShowCode(const CommandContext& context, base::Address address);
// To the line under the cursor of the source window, when that was active last; false when not.
bool RunToSourceCursor(const CommandContext& context);
// For "Find next": the trace window is the active one, and it has been done there.
bool FindNextInTrace(const CommandContext& context);
// A path as if it had been chosen for loading.
void LoadImageFile(const CommandContext& context, const std::string& path);
// The list of watched variables that is kept beside the image.
void LoadWatchList(const CommandContext& context, const std::string& image_path);

}  // namespace brevant::gui
