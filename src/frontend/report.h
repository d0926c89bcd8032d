// SPDX-License-Identifier: MIT
// The report that a user saves when something went wrong: one text with what the program knew and
// the last of what has passed the wire. It is a recording too, its first part as notes.
#pragma once

#include <string>
#include <string_view>

#include "debugger/debugger.h"
#include "frontend/flight_recorder.h"
#include "link/recording_text.h"

namespace brevant::frontend {

struct ReportParts {
  std::string program;      // "brevant, Qt 6.4.2"
  std::string version;      // "0.1.0"
  std::string diagnostics;  // the lines that the engine has logged
};

// The security codes of the settings and of the log are hidden too, unless they are to be shown.
std::string ReportText(const ReportParts& parts, const debugger::Debugger& debugger,
                       FlightRecorder& recorder, link::Secrets secrets);

// Pure parts of it.
std::string SettingsForReport(std::string_view file_text, link::Secrets secrets);
std::string DiagnosticsForReport(std::string_view log, link::Secrets secrets);

}  // namespace brevant::frontend
