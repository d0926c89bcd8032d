// SPDX-License-Identifier: MIT
// The command line of brevant.
#pragma once

#include <optional>
#include <string>

#include "frontend/flight_recorder.h"
#include "simulator/simulated_target.h"

namespace brevant::gui {

struct Options {
  std::string port = {};   // COM1..COM4, a device path, "sim" or "replay:FILE"; empty: settings
  bool connect = false;    // at once, without the connect dialog
  std::string image = {};  // loaded after connecting; empty: none
  std::string settings = "brevant.ini";
  frontend::RecordingChoice record = {};
  std::string version = {};
  simulator::Pace pace = simulator::Pace::Bus;  // of the simulated target
};

// Qt's own options ("-style fusion", "-stylesheet FILE", "-platform NAME" ...) are for QApplication
// and are passed over.
//
// Options, or the status to leave with: help and version have been printed to standard output then,
// usage errors to standard error.
struct ParsedOptions {
  Options options;
  std::optional<int> leave_with;
};
ParsedOptions ParseOptions(int argc, const char* const* argv, const std::string& version);

}  // namespace brevant::gui
