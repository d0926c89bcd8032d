// SPDX-License-Identifier: MIT
// What is under way on the target. One object, shared by run control and everything that waits for
// the target in the background.
#pragma once

namespace brevant::control {

// What the timer completes when the break byte arrives. The values are the system's own.
enum class Mode {
  Idle = 0,
  Tracing = 2,
  NStepping = 4,
  Running = 0x10,     // after Go
  FlashShort = 0x40,  // IRQ vector or locations; ends with a reset
  MassErase = 0x80,   // ends with a reset
  FileProgramming = 0x200,
  EraseRange = 0x400,
};

enum class StopResult {
  Stopped,
  NoAnswer,      // the break signal had no effect: the program does not answer its IRQ pin
  NotRecovered,  // the target stopped, but its stack pointer could not be restored
  LinkLost,      // a transfer failed; nothing is known of the target
};

struct RunState {
  Mode RunMode = Mode::Idle;
  bool WaitingForBreak = false;   // the timer polls the link
  bool StepPending = false;       // a step or a run to an address will be completed by the timer
  bool StepOver = false;          // the current step must not follow calls
  bool RunningShown = false;      // the Go button reads "Break"
  bool HardwareBreakMode = true;  // setting "B32FLAG"

  // Something is under way that a later tick, a stop or a reset will end.
  bool Busy() const { return RunMode != Mode::Idle || WaitingForBreak || StepPending; }
};

}  // namespace brevant::control
