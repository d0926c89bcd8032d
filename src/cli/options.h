// SPDX-License-Identifier: MIT
// The command line of brevant-cli.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frontend/connection.h"
#include "frontend/flight_recorder.h"
#include "simulator/simulated_target.h"

namespace brevant::cli {

struct Options {
  frontend::TargetChoices target;
  frontend::RecordingChoice record;
  std::string settings = "brevant.ini";
  std::string version;
  std::optional<simulator::Pace> pace;  // default: instant for scripts, bus at the prompt
  double timeout_seconds = 10;
  std::vector<std::string> faults;  // of the simulated target's line, see simulator::ParseFault
  bool demo = false;                // the demo program in the simulated target's flash
  bool json = false;
  bool quiet = false;
  bool yes = false;
  std::vector<std::string> files;  // of commands; "-" is standard input
  std::vector<std::string> commands;

  bool Interactive() const { return files.empty() && commands.empty(); }
};

// Options, or the status to leave with: help and version have been printed to standard output then,
// usage errors to standard error.
struct ParsedOptions {
  Options options;
  std::optional<int> leave_with;
};
ParsedOptions ParseOptions(int argc, const char* const* argv, const std::string& version);

}  // namespace brevant::cli
