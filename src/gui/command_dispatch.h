// SPDX-License-Identifier: MIT
// Where every command arrives, whether from a menu, a button, a key or the engine itself. Whether
// it may run is said by its row in the workspace, what it does by its action.
#pragma once

#include <functional>
#include <string>

#include "gui/command_actions.h"

namespace brevant::gui {

class CommandDispatch {
 public:
  CommandDispatch(Session& session, MainWindow& window) : context_{session, window} {}

  // From the user. Ignored while another command is under way.
  void Send(int id);
  // A file that was dropped on the window or named at start-up.
  void LoadFile(const std::string& path);
  // What a window does by itself, as a command is done.
  void CarryOut(const std::function<void()>& work);
  // From within a command.
  void Carry(int id);
  // Tells what the user should know of a stop that the command has brought about.
  void ExplainStopAfter(long stops);

 private:
  template <typename Work>
  void Enter(const Work& work);

  CommandContext context_;
};

}  // namespace brevant::gui
