// SPDX-License-Identifier: MIT
// What the engine asks of whatever shows the target: views, the running state, and commands that
// must go through the one dispatch.
#pragma once

namespace brevant::base {

class Workspace {
 public:
  virtual ~Workspace() = default;

  // Registers, memory or the program counter may have changed: show them anew.
  virtual void RefreshViews() = 0;
  // The Go/Break switch and what is enabled with it.
  virtual void ShowRunning(bool running) = 0;
  // Carries out a command by its id, as if the user had chosen it.
  virtual void SendCommand(int id) = 0;
};

}  // namespace brevant::base
