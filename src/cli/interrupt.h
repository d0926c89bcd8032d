// SPDX-License-Identifier: MIT
// The signals that ask the console to end something. SIGINT (Ctrl-C) ends the command under way. A
// second one before that has been done, SIGTERM and SIGHUP end the program as well, in order: what
// runs on the target is stopped first. One more SIGINT ends it at once.
#pragma once

namespace brevant::cli {

// From now on these signals are noted. System calls that wait return early when one arrives. A
// closed output is an error of the write from now on.
void WatchForInterrupt();
// The command under way is to end.
bool Interrupted();
// The program is to end too.
bool Leaving();
// The command has ended. What ends the program stays.
void ClearInterrupt();
// 128 and the signal, as shells have it: 130 after SIGINT.
int InterruptStatus();

}  // namespace brevant::cli
