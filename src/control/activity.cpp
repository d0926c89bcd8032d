// SPDX-License-Identifier: MIT
#include "control/activity.h"

#include <utility>

namespace brevant::control {

void Activity::LeaveMode() {
  mode_ = Mode::Idle;
  if (Operation* const ended = std::exchange(operation_, nullptr)) ended->Abandon();
}

void Activity::BeginRun() {
  LeaveMode();
  mode_ = Mode::Running;
  pending_ = Pending::Nothing;
  calls_ = Calls::Follow;
  waiting_ = true;
  running_shown_ = true;
  events_.Started();
  events_.ActivityChanged();
}

void Activity::BeginOperation(Mode mode, Operation& operation) {
  LeaveMode();
  mode_ = mode;
  operation_ = &operation;
  running_shown_ = false;
  events_.Started();
  events_.ActivityChanged();
}

void Activity::AwaitStep(Pending pending) {
  pending_ = pending;
  waiting_ = true;
  events_.Started();
  events_.ActivityChanged();
}

void Activity::AwaitBreak() {
  waiting_ = true;
  events_.ActivityChanged();
}

void Activity::ShowRunning() {
  if (std::exchange(running_shown_, true)) return;
  events_.ActivityChanged();
}

void Activity::EndStep() {
  const bool told = StepPending() || running_shown_;
  pending_ = Pending::Nothing;
  calls_ = Calls::Follow;
  waiting_ = false;
  running_shown_ = false;
  if (told) events_.ActivityChanged();
}

void Activity::DropRun() {
  if (pending_ == Pending::StepBeforeRun) pending_ = Pending::Step;
}

void Activity::AbandonOperation() {
  if (operation_ == nullptr) return;
  LeaveMode();
  events_.ActivityChanged();
}

void Activity::EndOperation() {
  mode_ = Mode::Idle;
  operation_ = nullptr;
  // A routine that a cancelled operation has left behind is waited for by nobody.
  if (!StepPending()) waiting_ = false;
  running_shown_ = running_shown_ && StepPending();
  events_.ActivityChanged();
}

void Activity::SetFileIo(bool active) {
  if (std::exchange(file_io_active_, active) == active) return;
  ++file_io_changes_;
  events_.ActivityChanged();
}

void Activity::End() {
  const bool told = Busy() || running_shown_;
  pending_ = Pending::Nothing;
  calls_ = Calls::Follow;
  waiting_ = false;
  running_shown_ = false;
  LeaveMode();
  if (told) events_.ActivityChanged();
}

}  // namespace brevant::control
