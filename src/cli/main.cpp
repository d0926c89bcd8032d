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
#include "cli/session.h"

namespace {

using brevant::cli::ExitStatus;

void Talk(brevant::cli::Session& session, brevant::cli::Runner& runner) {
  fmt::print(stderr, "Connected. Type help for the commands, quit to leave.\n");
  runner.Line("info", true);
  brevant::cli::Prompt prompt([&session] { return session.Idle(); });
  while (const auto line = prompt.ReadLine()) {
    if (!runner.Line(*line, true)) return;
  }
  std::putchar('\n');
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
  if (!connected.ok()) {
    runner.Report("connect", connected);
    return static_cast<int>(runner.status());
  }
  const bool terminal = isatty(STDIN_FILENO) != 0;
  if (!options.Interactive()) {
    RunAll(options, runner);
  } else if (terminal) {
    Talk(session, runner);
    return static_cast<int>(ExitStatus::Ok);
  } else {
    runner.File("-");
  }
  if (runner.status() == ExitStatus::Ok && !session.debugger().security.passed() &&
      !options.target.no_security) {
    return static_cast<int>(ExitStatus::Security);
  }
  return static_cast<int>(runner.status());
}
