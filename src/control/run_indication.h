// SPDX-License-Identifier: MIT
// How repeated stepping and tracing show themselves, besides the running state of base::Workspace.
#pragma once

#include <string>

namespace brevant::control {

class RunIndication {
 public:
  virtual ~RunIndication() = default;

  // The button reads "NStepping" or "Tracing" while on, and the commands that must not interfere
  // are disabled. May be repeated: showing the stopped state enables them too.
  virtual void ShowNStepping(bool on) = 0;
  virtual void ShowTracing(bool on) = 0;
  // A trace window is to be there, empty if it is new.
  virtual void OpenTraceWindow() = 0;
  // Shows the trace log from its first line.
  virtual void ShowTraceLog(const std::string& path, int line_count) = 0;
};

}  // namespace brevant::control
