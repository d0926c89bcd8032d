// SPDX-License-Identifier: MIT
// Stepping and running.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/register_line.h"
#include "cli/session.h"

namespace brevant::cli {
namespace {

constexpr int kMostSteps = 1000000;

constexpr const char* kNoAnswerToBreak =
    "The break signal had no effect; the target is still running. It stops a program only when the "
    "program leaves interrupts enabled and its IRQ vector at FFFA holds FE27. Use reset to get the "
    "target back.";

// The registers, and why the target has stopped.
Result StopResult(Session& session) {
  Result result = RegisterResult(session.debugger().frame);
  if (const auto& stop = session.debugger().run_control.last_stop()) {
    result.fields["stop"] = base::StopWord(stop->reason);
    result.note = base::StopText(*stop);
  }
  return result;
}

Result StopNow(Session& session) {
  switch (session.debugger().run_control.Stop().reason) {
    case base::StopReason::NotRecovered:
      return Failure(ExitStatus::Failed,
                     "the target stopped, but its stack pointer could not be restored: use reset");
    case base::StopReason::LinkLost:
      return LinkLost();
    case base::StopReason::Refused:
      return Failure(ExitStatus::Failed, kNoAnswerToBreak);
    default:
      return StopResult(session);
  }
}

// The target did not stop by itself: take it back, so that a script never leaves it running unseen.
Result GiveUpWaiting(Session& session, std::string why, ExitStatus status) {
  const Result stopped = StopNow(session);
  why += stopped.ok() ? fmt::format("; the target was stopped at {}",
                                    session.Described(session.debugger().frame.PC))
                      : ". " + stopped.error;
  return Failure(status, std::move(why));
}

Result AwaitStop(Session& session) {
  switch (session.WaitForStop()) {
    case Session::WaitEnd::Stopped:
      return StopResult(session);
    case Session::WaitEnd::TimedOut:
      return GiveUpWaiting(session,
                           fmt::format("no stop within {} s", session.options().timeout_seconds),
                           ExitStatus::NoAnswer);
    case Session::WaitEnd::Interrupted:
      return GiveUpWaiting(session, "interrupted", ExitStatus::Failed);
    case Session::WaitEnd::LinkLost:
      break;
  }
  return LinkLost();
}

Result StepTimes(Session& session, Arguments arguments, control::Calls calls) {
  int steps = 1;
  if (!arguments.empty()) {
    const auto given = ParseCount(arguments[0], kMostSteps);
    if (!given.ok()) return UsageError(given.error);
    steps = given.value;
  }
  Result result;
  for (; steps > 0 && result.ok(); --steps) {
    session.debugger().run_control.StepCommand(calls);
    result = AwaitStop(session);
  }
  return result;
}

Result StartRun(Session& session, Arguments arguments) {
  debugger::Debugger& debugger = session.debugger();
  if (!arguments.empty()) {
    const auto address = session.ResolveAddress(arguments[0]);
    if (!address.ok()) return UsageError(address.error);
    debugger.frame.SetPC(address.value);
  }
  debugger.run_control.Go();
  return {};
}

}  // namespace

Result Step(Session& session, Arguments arguments) {
  return StepTimes(session, arguments, control::Calls::Follow);
}

Result Over(Session& session, Arguments arguments) {
  return StepTimes(session, arguments, control::Calls::StepOver);
}

Result Go(Session& session, Arguments arguments) {
  Result started = StartRun(session, arguments);
  return started.ok() ? AwaitStop(session) : started;
}

Result Until(Session& session, Arguments arguments) {
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  session.debugger().run_control.RunToAddress(address.value);
  return AwaitStop(session);
}

Result Run(Session& session, Arguments arguments) {
  return StartRun(session, arguments);
}

Result Stop(Session& session, Arguments) {
  if (!session.debugger().Busy()) return StopResult(session);
  return StopNow(session);
}

Result Wait(Session& session, Arguments) {
  return AwaitStop(session);
}

Result NStep(Session& session, Arguments arguments) {
  const auto count = ParseCount(arguments[0], control::kMaxNStepCount);
  if (!count.ok()) return UsageError(count.error);
  control::NStep& n_step = session.debugger().n_step;
  n_step.settings.count = count.value;
  n_step.settings.condition = control::NStepCondition::AfterCount;
  n_step.Start();
  return AwaitStop(session);
}

Result Trace(Session& session, Arguments arguments) {
  const auto count = ParseCount(arguments[0], kMostSteps);
  if (!count.ok()) return UsageError(count.error);
  control::Trace& trace = session.debugger().trace;
  trace.Start(count.value);
  const Session::WaitEnd end = session.WaitForStop([&trace] { return trace.steps(); });
  if (end == Session::WaitEnd::LinkLost) return LinkLost();
  if (end != Session::WaitEnd::Stopped) {
    const std::string why = end == Session::WaitEnd::Interrupted ? "interrupted" : "no step ended";
    trace.Stop();
    if (session.debugger().Busy()) return GiveUpWaiting(session, why, ExitStatus::NoAnswer);
    return Failure(ExitStatus::Failed, why);
  }
  Result result;
  result.text = trace.LogText();
  result.fields = {{"steps", trace.steps()}, {"log", trace.LogPath()}, {"text", trace.LogText()}};
  return result;
}

}  // namespace brevant::cli
