// SPDX-License-Identifier: MIT
#include "cli/session.h"

#include <fmt/format.h>

#include <filesystem>

#include "base/file_names.h"
#include "base/files.h"
#include "cli/command_table.h"
#include "cli/command_words.h"
#include "cli/interrupt.h"
#include "frontend/address_names.h"
#include "frontend/first_settings.h"
#include "frontend/report.h"
#include "link/messages.h"
#include "link/port_map.h"
#include "simulator/fault_text.h"

namespace brevant::cli {
namespace {

ConsoleUi::Style UiStyle(const Options& options, bool terminal) {
  return {options.yes, options.quiet, options.json, terminal && !options.json};
}

simulator::Pace PaceFor(const Options& options) {
  const auto usual = options.Interactive() ? simulator::Pace::Bus : simulator::Pace::Instant;
  return options.pace.value_or(usual);
}

simulator::FaultPlan FaultsOf(const Options& options) {
  simulator::FaultPlan plan;
  for (const std::string& text : options.faults) {
    if (const auto fault = simulator::ParseFault(text)) plan.push_back(*fault);
  }
  return plan;
}

constexpr auto kInterrupted = [] { return Interrupted(); };

}  // namespace

Session::Session(const Options& options, bool terminal)
    : options_(options),
      settings_(options.settings),
      had_settings_(std::filesystem::exists(settings_.path())),
      ui_(UiStyle(options, terminal)),
      ports_(settings_, {PaceFor(options), options.demo, FaultsOf(options)}),
      recorder_(ports_.router(), ports_.router()),
      engine_ui_(ui_),
      debugger_({.port = recorder_.port(),
                 .clock = ports_.router(),
                 .settings = settings_,
                 .ui = engine_ui_,
                 .events = *this,
                 .start_up_directory = base::WorkingDirectory(),
                 .log = [this](const std::string& line) { diagnostics_ += line; },
                 .secret = [this](bool on) { recorder_.Secret(on); }}) {
  frontend::UseForThisRun(options_.target, settings_);
  if (options_.record.file.empty()) return;
  recorder_.RecordTo(options_.record,
                     [this] { return frontend::DescribeTarget(settings_, options_.version); });
}

Session::~Session() {
  if (!had_settings_ && std::filesystem::exists(settings_.path())) {
    settings_.Apply(frontend::FirstSettings());
  }
}

void Session::SayRecordingProblem() {
  const std::string problem = recorder_.TakeProblem();
  if (!problem.empty()) ui_.Warn(problem);
}

Result Session::Connect() {
  const auto connection = frontend::Connect(
      debugger_, engine_ui_,
      options_.target.NamesCode() ? frontend::KnownCodes::Leave : frontend::KnownCodes::Try);
  SayRecordingProblem();
  if (!connection.ok() || debugger_.memory.LinkError()) return ConnectFailed(connection);
  for (const base::Message& message : connection.said) ui_.Notice(OneLine(message.text));
  if (connection.found) ui_.Notice(frontend::FitText(*connection.found));
  ui_.TakeSaid();
  return {};
}

Result Session::ConnectFailed(const frontend::Connection& connection) const {
  const bool port = connection.result == link::ConnectResult::PortUnavailable;
  std::string why;
  // Who cannot be talked to is not told that its RAM can be used.
  const bool silent = debugger::IsConnected(connection.result) && debugger_.memory.LinkError();
  for (const base::Message& message : connection.said) {
    if (silent) break;
    why += (why.empty() ? "" : "\n") + OneLine(message.text);
  }
  if (why.empty()) why = "the target does not answer";
  if (silent && options_.target.no_security) {
    why += ": its monitor waits for the eight bytes of a code, so leave out --no-security";
  }
  // The user has named a device, which is behind a logical port for this run alone.
  const std::string& named = options_.target.port;
  if (port && !named.empty() && !link::IsLogicalPort(base::UpperCase(named))) {
    why = OneLine(ToMessage(link::kPortNotAvailable, named).text) + ' ' +
          OneLine(debugger_.monitor_link.PortError());
  }
  if (const std::string reason = debugger_.monitor_link.PortError(); !port && !reason.empty()) {
    why += '\n' + OneLine(reason);
  }
  if (!port)
    why += fmt::format("\nThe port was {}. Try -p sim for the simulated target.", PortName());
  return Failure(port ? ExitStatus::Port : ExitStatus::NoAnswer, std::move(why));
}

std::string Session::PortName() const {
  return ports_.is_simulated() ? std::string(frontend::kSimulatedName) : ports_.device();
}

std::string Session::WriteReport(const std::string& path, link::Secrets secrets) {
  return base::ReplaceFile(
      path, frontend::ReportText({"brevant-cli", options_.version, diagnostics_}, debugger_,
                                 recorder_, secrets));
}

frontend::WaitEnd Session::WaitForStop() {
  return WaitForStop([] { return 0L; });
}

frontend::WaitLimits Session::LimitsOf(base::FunctionRef<long()> progress) const {
  const auto time_out = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::duration<double>(options_.timeout_seconds));
  return {time_out, progress, kInterrupted};
}

frontend::WaitEnd Session::WaitForStop(base::FunctionRef<long()> progress) {
  return frontend::WaitForStop(debugger_, LimitsOf(progress));
}

void Session::WaitForFlash(base::FunctionRef<long()> progress) {
  frontend::WaitForFlash(debugger_, LimitsOf(progress));
}

std::optional<std::string> Session::Idle() {
  if (!debugger_.Busy()) return {};
  debugger_.Tick();
  if (debugger_.Busy()) return {};
  return base::StopText(*debugger_.run_control.last_stop());
}

Result Session::Execute(std::string_view line) {
  const auto words = SplitWords(line);
  if (!words.ok()) return UsageError(words.error);
  if (words.value.empty()) return {};
  Result result = Run(words.value);
  const std::string problem = debugger_.macros.TakeProblem();
  if (!problem.empty()) ui_.Notice(problem);
  SayRecordingProblem();
  const ConsoleUi::Said said = ui_.TakeSaid();
  for (const std::string& error : said.errors) {
    if (result.ok()) result.status = ExitStatus::Failed;
    if (!result.error.empty()) result.error += '\n';
    result.error += error;
  }
  // Why the port gives nothing any more, in its own words.
  if (const std::string reason = debugger_.monitor_link.PortError();
      !result.ok() && debugger_.memory.LinkError() && !reason.empty()) {
    result.error += '\n' + OneLine(reason);
  }
  if (said.refused && result.status == ExitStatus::Failed) result.status = ExitStatus::NeedsYes;
  if (!said.notices.empty()) result.fields["messages"] = said.notices;
  return result;
}

Result Session::Run(const std::vector<std::string>& words) {
  const auto command = FindCommand(words.front());
  if (!command) {
    return UsageError(fmt::format("there is no command \"{}\"; try help", words.front()));
  }
  const auto arguments =
      ParseArguments(command->name, command->arguments, std::span(words).subspan(1),
                     debugger_.debug_info, debugger_.memory.device());
  if (!arguments.ok()) {
    return Failure(arguments.well_formed ? ExitStatus::Failed : ExitStatus::Usage, arguments.error);
  }
  // The program may have stopped meanwhile, or the port be gone.
  if (debugger_.Busy()) debugger_.Tick();
  if (debugger_.Busy() && !command->while_running) {
    return Failure(ExitStatus::Failed, "the target is running: stop it or wait first");
  }
  for (const std::string& note : arguments.value.notes) ui_.Warn(note);
  Result result = command->run(*this, arguments.value);
  const auto damaged = debugger_.memory.TakeDamage();
  if (result.ok() && debugger_.memory.LinkError()) return LinkLost();
  if (result.ok() && damaged) {
    return DamagedLine(*damaged);
  }
  return result;
}

}  // namespace brevant::cli
