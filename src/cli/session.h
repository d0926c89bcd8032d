// SPDX-License-Identifier: MIT
// One debugging session on the console: the engine with its surroundings, and the few things that
// several commands share.
#pragma once

#include <optional>
#include <string>

#include "base/events.h"
#include "base/function_ref.h"
#include "base/settings_file.h"
#include "cli/console_ui.h"
#include "cli/options.h"
#include "cli/result.h"
#include "debugger/debugger.h"
#include "frontend/connection.h"
#include "frontend/flight_recorder.h"
#include "frontend/holding_ui.h"
#include "frontend/stop_wait.h"
#include "frontend/target_ports.h"

namespace brevant::cli {

class Session final : private base::Events {
 public:
  Session(const Options& options, bool terminal);
  // A settings file that this run has made begins as one that the windows make.
  ~Session() override;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Connects as the options say. On failure the result says why and how to go on.
  Result Connect();
  // Runs one command line.
  Result Execute(std::string_view line);

  debugger::Debugger& debugger() { return debugger_; }
  base::SettingsFile& settings() { return settings_; }
  ConsoleUi& ui() { return ui_; }
  const Options& options() const { return options_; }
  // The device behind the port, as the user would name it: "sim" or a path.
  std::string PortName() const;

  // With the time-out of the options, which starts anew whenever what progress returns changes, and
  // with Ctrl-C.
  frontend::WaitEnd WaitForStop(base::FunctionRef<long()> progress);
  frontend::WaitEnd WaitForStop();
  // The end of the flash job, likewise.
  void WaitForFlash(base::FunctionRef<long()> progress);
  // Empty, or why the report could not be written.
  std::string WriteReport(const std::string& path, link::Secrets secrets);
  // One step of the background while the prompt waits for input; a line to show when the target has
  // stopped.
  std::optional<std::string> Idle();

 private:
  // Commands look at the engine when they are done.
  void Started() override {}
  void Stopped(const base::Stop&) override {}
  void ActivityChanged() override {}
  void LinkChanged() override {}

  // Said once, and no failure of a command.
  void SayRecordingProblem();
  Result ConnectFailed(const frontend::Connection& connection) const;
  Result Run(const std::vector<std::string>& words);
  frontend::WaitLimits LimitsOf(base::FunctionRef<long()> progress) const;

  Options options_;
  base::SettingsFile settings_;
  bool had_settings_;
  ConsoleUi ui_;
  frontend::TargetPorts ports_;
  frontend::FlightRecorder recorder_;
  std::string diagnostics_;
  frontend::HoldingUi engine_ui_;
  debugger::Debugger debugger_;
};

}  // namespace brevant::cli
