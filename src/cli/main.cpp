// SPDX-License-Identifier: MIT
// brevant-cli: the debugger on a console.
#include <fmt/format.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <iostream>

#include "cli/interrupt.h"
#include "cli/options.h"
#include "cli/prompt.h"
#include "cli/runner.h"
#include "cli/say.h"
#include "cli/session.h"

namespace {

using brevant::cli::ExitStatus;

void Talk(brevant::cli::Session& session, brevant::cli::Runner& runner) {
  using brevant::cli::Prompt;
  brevant::cli::Say("Connected. Type help for the commands, quit to leave.\n");
  runner.Line("info", true);
  session.ui().AnswerWith(Prompt::Ask);
  Prompt prompt([&session] { return session.Idle(); });
  bool warned = false;  // that the next Ctrl-C on an empty line leaves
  for (;;) {
    const Prompt::Typed typed = prompt.ReadLine();
    if (typed.end == Prompt::End::EndOfInput) return;
    if (typed.end == Prompt::End::Line) {
      warned = false;
      if (!runner.Line(typed.line, true)) return;
      continue;
    }
    // Ctrl-C stops a program that runs; else it drops the line, if there is one.
    const bool idle = typed.line.empty() && !session.debugger().Busy();
    if (brevant::cli::Leaving() || (idle && warned)) return;
    brevant::cli::ClearInterrupt();
    warned = idle;
    if (idle) brevant::cli::Say("Ctrl-C once more, or quit, leaves.\n");
    if (session.debugger().Busy()) runner.Line("stop", true);
  }
}

// Commands first, then files: whichever fails ends the run.
void RunAll(const brevant::cli::Options& options, brevant::cli::Runner& runner) {
  for (const std::string& line : options.commands) {
    if (!runner.Line(line)) return;
  }
  for (const std::string& file : options.files) {
    if (!runner.File(file)) return;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const brevant::cli::ParsedOptions parsed =
      brevant::cli::ParseOptions(argc, argv, BREVANT_VERSION);
  if (parsed.leave_with) return *parsed.leave_with;
  const brevant::cli::Options& options = parsed.options;
  brevant::cli::WatchForInterrupt();

  brevant::cli::Session session(options, isatty(STDERR_FILENO) != 0);
  brevant::cli::Runner runner(session, options);
  const brevant::cli::Result connected = session.Connect();
  if (!connected.ok() || brevant::cli::Interrupted()) {
    runner.Report("connect", connected.ok()
                                 ? brevant::cli::Interruption(" before the first command")
                                 : connected);
    return runner.status();
  }
  const bool terminal = isatty(STDIN_FILENO) != 0;
  if (!options.Interactive()) {
    RunAll(options, runner);
  } else if (terminal) {
    Talk(session, runner);
    if (!brevant::cli::Interrupted()) return static_cast<int>(ExitStatus::Ok);
  } else {
    runner.File("-");
  }
  if (brevant::cli::Interrupted()) runner.StopBeforeLeaving();
  if (runner.status() == 0 && !session.debugger().security.passed() &&
      !options.target.no_security) {
    runner.Report("security",
                  brevant::cli::Failure(ExitStatus::Security,
                                        "the security code was not accepted: RAM could "
                                        "be used, what was read of flash means nothing"));
  }
  return runner.status();
}
