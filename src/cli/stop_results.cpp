// SPDX-License-Identifier: MIT
#include "cli/stop_results.h"

#include <algorithm>

#include "cli/register_line.h"
#include "frontend/address_names.h"

namespace brevant::cli {
namespace {

constexpr const char* kNoAnswerToBreak =
    "The break signal had no effect; the target is still running. It stops a program only when the "
    "program leaves interrupts enabled and its IRQ vector at FFFA holds FE27. Use reset to get the "
    "target back.";
constexpr const char* kNoBreakSent =
    "The break signal could not be sent, and nothing says that the target has stopped. ";

Result WithReason(Result result, base::StopReason reason) {
  result.fields["stop"] = base::StopWord(reason);
  return result;
}

}  // namespace

std::optional<Result> FailedStop(Session& session) {
  static constexpr base::StopReason kFailed[] = {
      base::StopReason::BadStack, base::StopReason::NotStarted, base::StopReason::McuReset};
  const auto& stop = session.debugger().run_control.last_stop();
  if (!stop || std::ranges::find(kFailed, stop->reason) == std::end(kFailed)) return std::nullopt;
  return WithReason(Failure(ExitStatus::Failed, base::StopText(*stop)), stop->reason);
}

Result StopResult(Session& session) {
  Result result = RegisterResult(session.debugger().frame);
  const auto& stop = session.debugger().run_control.last_stop();
  if (!stop) return result;
  if (const auto failed = FailedStop(session)) return *failed;
  result.note = base::StopText(*stop);
  return WithReason(std::move(result), stop->reason);
}

Result StopNow(Session& session) {
  const base::Stop stop = session.debugger().run_control.Stop();
  const base::StopReason reason = stop.reason;
  switch (reason) {
    case base::StopReason::NotRecovered:
      return WithReason(Failure(ExitStatus::Failed,
                                "the target stopped, but its stack pointer could not be restored: "
                                "use reset"),
                        reason);
    case base::StopReason::LinkLost:
      return WithReason(LinkLost(), reason);
    case base::StopReason::Refused:
      return WithReason(
          Failure(ExitStatus::Failed,
                  stop.detail.empty() ? kNoAnswerToBreak : kNoBreakSent + stop.detail),
          reason);
    default:
      return StopResult(session);
  }
}

Result GiveUpWaiting(Session& session, std::string why, ExitStatus status) {
  const Result stopped = StopNow(session);
  // There is nothing left that could have been waited for.
  if (stopped.fields.value("stop", "") == base::StopWord(base::StopReason::McuReset)) {
    return stopped;
  }
  if (!stopped.ok() && status == ExitStatus::Interrupted && session.debugger().Busy()) {
    if (session.debugger().Reset()) {
      return Failure(status, why + "; a break had no effect, so the target was reset");
    }
    return Failure(status, why + "; a break had no effect, and the target may still be running");
  }
  why += stopped.ok() ? fmt::format("; the target was stopped at {}",
                                    frontend::Described(session.debugger().frame.PC,
                                                        session.debugger().debug_info))
                      : ". " + stopped.error;
  return Failure(status, std::move(why));
}

Result NotStopped(Session& session, frontend::WaitEnd end) {
  switch (end) {
    case frontend::WaitEnd::TimedOut:
      return GiveUpWaiting(session,
                           fmt::format("no stop within {} s", session.options().timeout_seconds),
                           ExitStatus::NoAnswer);
    case frontend::WaitEnd::Interrupted:
      return GiveUpWaiting(session, "interrupted", ExitStatus::Interrupted);
    case frontend::WaitEnd::LinkLost:
    case frontend::WaitEnd::Stopped:
      break;
  }
  return WithReason(LinkLost(), base::StopReason::LinkLost);
}

Result AwaitStop(Session& session) {
  return AwaitStop(session, [] { return 0L; });
}

Result AwaitStop(Session& session, base::FunctionRef<long()> progress) {
  const frontend::WaitEnd end = session.WaitForStop(progress);
  return end == frontend::WaitEnd::Stopped ? StopResult(session) : NotStopped(session, end);
}

}  // namespace brevant::cli
