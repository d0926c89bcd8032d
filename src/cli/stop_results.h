// SPDX-License-Identifier: MIT
// What the end of a run comes to on the console, also where the target has to be taken back.
#pragma once

#include <optional>
#include <string>

#include "base/function_ref.h"
#include "cli/result.h"
#include "cli/session.h"

namespace brevant::cli {

// What a stop comes to that nobody can have asked for; nothing for all others.
std::optional<Result> FailedStop(Session& session);
// The registers, and why the target has stopped.
Result StopResult(Session& session);
// By the break signal.
Result StopNow(Session& session);
// The target did not stop by itself: take it back, so that a script never leaves it running unseen.
// Who interrupts it wants it stopped at any price.
Result GiveUpWaiting(Session& session, std::string why, ExitStatus status);
// A wait has ended without a stop.
Result NotStopped(Session& session, frontend::WaitEnd end);
// Waits, with a time-out that starts anew whenever what progress returns changes.
Result AwaitStop(Session& session, base::FunctionRef<long()> progress);
Result AwaitStop(Session& session);

}  // namespace brevant::cli
