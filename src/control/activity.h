// SPDX-License-Identifier: MIT
// What is under way on the target: the one owner of that answer. Run control and the operations
// that are advanced by the timer begin and end it; everybody else only asks.
#pragma once

#include "base/events.h"
#include "isa/next_pc.h"

namespace brevant::control {

// Something that takes the target for longer than one call and brings its own completion: repeated
// steps, tracing, a flash job. The timer carries it on.
class Operation {
 public:
  virtual ~Operation() = default;
  // One tick while no break byte is outstanding: the monitor listens.
  virtual void Advance() = 0;
  // One tick while its break byte is outstanding.
  virtual void Wait() {}
  // One tick after the link has been lost.
  virtual void LinkLost() {}
  // A stop, a run or a reset has ended it from outside.
  virtual void Abandon() {}
  // A step or a run of its own is about to be told as this stop. True: it goes on from there, and
  // nobody is told. Otherwise it has ended itself, where it ends with that.
  virtual bool Keeps(const base::Stop&) { return false; }
};

enum class Mode { Idle, Running, NStepping, Tracing, LineStepping, FileIo, Operation };

using isa::Calls;

// What the timer completes once the break byte has arrived.
enum class Pending {
  Nothing,
  Step,
  StepBeforeRun,  // off the breakpoint at which Go was chosen
  RunTo,
};

class Activity {
 public:
  explicit Activity(base::Events& events) : events_(events) {}
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;

  Mode RunMode() const { return mode_; }
  // RUN has been sent and the break byte is outstanding: the monitor does not listen.
  bool WaitingForBreak() const { return waiting_; }
  bool StepPending() const { return pending_ != Pending::Nothing; }
  Pending PendingStep() const { return pending_; }
  // The step under way must not follow a call.
  bool StepOver() const { return calls_ == Calls::StepOver; }
  // The Go button reads "Break".
  bool RunningShown() const { return running_shown_ || Passing(); }
  // What the target shows between two steps is of no interest to anybody.
  bool Passing() const { return mode_ == Mode::LineStepping || mode_ == Mode::FileIo; }
  // Something is under way that a later tick, a stop or a reset will end.
  bool Busy() const { return mode_ != Mode::Idle || waiting_ || StepPending(); }
  // File I/O has the target: nothing else may talk to it.
  bool FileIoActive() const { return file_io_active_; }
  // Moves whenever that changes.
  long file_io_changes() const { return file_io_changes_; }
  // Who carries the present mode on; nullptr when idle or running.
  Operation* CurrentOperation() const { return operation_; }

  // Each begin takes the place of what was under way; an operation that this ends is told.

  void BeginRun();
  // NStepping, Tracing, LineStepping, FileIo or Operation. The operation is borrowed until it ends.
  void BeginOperation(Mode mode, Operation& operation);
  // Nobody is told yet: most steps are over at once.
  void BeginStep(Calls calls) { calls_ = calls; }
  // The step or the run to an address has not come back at once.
  void AwaitStep(Pending pending);
  // An operation has let its routine run.
  void AwaitBreak();
  void BreakSeen() { waiting_ = false; }
  // The user has asked to stop: no run follows the step that is pending.
  void DropRun();
  // A tick has found no break byte: the user is shown that the target runs.
  void ShowRunning();
  // The step or the run to an address is over; a mode around it goes on.
  void EndStep();
  // An operation is over by its own doing. A step of it that is still pending stays so.
  void EndOperation();
  // The same from outside: the operation is told.
  void AbandonOperation();
  // Idle.
  void End();
  void SetFileIo(bool active);

 private:
  void LeaveMode();

  base::Events& events_;
  Mode mode_ = Mode::Idle;
  Pending pending_ = Pending::Nothing;
  Calls calls_ = Calls::Follow;
  bool waiting_ = false;
  bool running_shown_ = false;
  bool file_io_active_ = false;
  long file_io_changes_ = 0;
  Operation* operation_ = nullptr;
};

}  // namespace brevant::control
