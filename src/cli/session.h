// SPDX-License-Identifier: MIT
// One debugging session on the console: the engine with its surroundings, and the few things that
// several commands share.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/function_ref.h"
#include "base/settings_file.h"
#include "base/workspace.h"
#include "cli/command_words.h"
#include "cli/console_ui.h"
#include "cli/options.h"
#include "cli/result.h"
#include "control/run_indication.h"
#include "debugger/debugger.h"
#include "frontend/target_ports.h"

namespace brevant::cli {

class Session final : private base::Workspace, private control::RunIndication {
 public:
  Session(const Options& options, bool terminal);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Connects as the options say. On failure the result says why and how to go on.
  Result Connect();
  // Runs one command line.
  Result Execute(std::string_view line);

  debugger::Debugger& debugger() { return *debugger_; }
  base::SettingsFile& settings() { return settings_; }
  ConsoleUi& ui() { return ui_; }
  const Options& options() const { return options_; }
  // The device behind the port, as the user would name it: "sim" or a path.
  std::string PortName() const;

  // An address as the user types it: hexadecimal digits, else a symbol, else FILE:LINE.
  Parsed<base::Address> ResolveAddress(std::string_view word) const;
  // Hexadecimal with the name of the symbol at it, if any: "8036 _main".
  std::string Described(base::Address address) const;

  enum class WaitEnd { Stopped, TimedOut, LinkLost, Interrupted };
  // Ticks until nothing is under way any more. The time-out starts anew whenever what progress
  // returns changes.
  WaitEnd WaitForStop(base::FunctionRef<long()> progress);
  WaitEnd WaitForStop();
  // One step of the background while the prompt waits for input; a line to show when the target has
  // stopped.
  std::optional<std::string> Idle();

 private:
  void RefreshViews() override {}
  void ShowRunning(bool) override {}
  void SendCommand(int id) override;
  void ShowNStepping(bool) override {}
  void ShowTracing(bool) override {}
  void OpenTraceWindow() override {}
  void ShowTraceLog(const std::string&, int) override {}

  void ApplyOptions();
  Result ConnectFailed(link::ConnectResult result);
  Result Run(const std::vector<std::string>& words);

  Options options_;
  base::SettingsFile settings_;
  ConsoleUi ui_;
  frontend::TargetPorts ports_;
  std::unique_ptr<debugger::Debugger> debugger_;
};

}  // namespace brevant::cli
