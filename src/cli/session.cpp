// SPDX-License-Identifier: MIT
#include "cli/session.h"

#include <fmt/format.h>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_number.h"
#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "debugger/command_ids.h"
#include "link/security_code.h"

namespace brevant::cli {
namespace {

constexpr std::chrono::milliseconds kTick{10};

ConsoleUi::Style UiStyle(const Options& options, bool terminal) {
  return {options.yes, options.quiet, options.json, terminal && !options.json};
}

simulator::Pace PaceFor(const Options& options) {
  const auto usual = options.Interactive() ? simulator::Pace::Bus : simulator::Pace::Instant;
  return options.pace.value_or(usual);
}

}  // namespace

Session::Session(const Options& options, bool terminal)
    : options_(options),
      settings_(options.settings),
      ui_(UiStyle(options, terminal)),
      ports_(settings_, {PaceFor(options), options.demo}) {
  ApplyOptions();
  debugger_ = std::make_unique<debugger::Debugger>(
      debugger::Surroundings{.port = ports_.router(),
                             .clock = ports_.router(),
                             .settings = settings_,
                             .ui = ui_,
                             .workspace = *this,
                             .indication = *this,
                             .start_up_directory = base::WorkingDirectory()});
  debugger_->connector.SetSessionCode(options_.security);
}

// Options rule this run only: they shadow the settings and are never written to the file.
void Session::ApplyOptions() {
  namespace keys = base::keys;
  frontend::UseForThisRun(options_.port, settings_);
  if (options_.device) settings_.Override(keys::kDevice, std::to_string(*options_.device));
  if (options_.no_security) settings_.Override(keys::kSecurityCheck, "0");
  if (options_.security) {
    const std::string code = link::FormatSecurityCode(*options_.security);
    settings_.Override(keys::kRecentSecurity, code, 0);
  }
}

Result Session::Connect() {
  // The user's own code is not second-guessed.
  const bool named = options_.security || options_.no_security;
  ui_.Hold(true);
  const link::ConnectResult connected =
      debugger_->Start(named ? debugger::OtherCodes::Leave : debugger::OtherCodes::Try);
  ui_.Hold(false);
  if (!debugger::IsConnected(connected)) return ConnectFailed(connected);
  if (debugger_->monitor.LinkError()) return ConnectFailed(link::ConnectResult::NotReady);
  const ConsoleUi::Said said = ui_.TakeSaid();
  if (!debugger_->security_passed) {
    for (const std::string& notice : said.notices) ui_.Notice(notice);
  } else if (const auto code = debugger_->connector.session_code(); code && !named) {
    ui_.Notice(fmt::format("The security code {} fits.", link::FormatSecurityCode(*code)));
  }
  ui_.TakeSaid();
  return {};
}

Result Session::ConnectFailed(link::ConnectResult result) {
  const bool port = result == link::ConnectResult::PortUnavailable;
  std::string why;
  for (const auto& said = ui_.TakeSaid(); const auto* lines : {&said.errors, &said.notices}) {
    for (const std::string& line : *lines) why += (why.empty() ? "" : "\n") + line;
  }
  if (why.empty()) why = "the target does not answer";
  if (!port)
    why += fmt::format("\nThe port was {}. Try -p sim for the simulated target.", PortName());
  return Failure(port ? ExitStatus::Port : ExitStatus::NoAnswer, std::move(why));
}

std::string Session::PortName() const {
  return ports_.is_simulated() ? std::string(frontend::kSimulatedName) : ports_.device();
}

Parsed<base::Address> Session::ResolveAddress(std::string_view word) const {
  Parsed<base::Address> address = ParseAddress(word);
  if (address.ok() || (!word.empty() && base::IsHexField(word))) return address;
  const symbols::DebugInfo& info = debugger_->debug_info;
  if (const auto symbol = info.SymbolTable.FindCName(word)) {
    return {.value = base::Low16(*symbol), .error = {}};
  }
  const std::size_t colon = word.rfind(':');
  if (colon != std::string_view::npos) {
    const auto line = static_cast<std::uint32_t>(base::ParseLeadingDecimal(word.substr(colon + 1)));
    const std::vector<std::string>& files = info.LineTable.files();
    for (std::uint32_t file = 0; file < files.size(); ++file) {
      if (!base::EqualIgnoringCase(files[file], word.substr(0, colon))) continue;
      if (const auto found = info.LineTable.AddressForLine(line, file)) {
        return {.value = base::Low16(*found), .error = {}};
      }
    }
    address.error = fmt::format("no code is known for {}", word);
  }
  return address;
}

std::string Session::Described(base::Address address) const {
  std::string text = fmt::format("{:04x}", address);
  if (const auto name = debugger_->debug_info.SymbolTable.FindSymbolName(address)) {
    text += fmt::format(" {}", *name);
  }
  return text;
}

Session::WaitEnd Session::WaitForStop() {
  return WaitForStop([] { return 0L; });
}

Session::WaitEnd Session::WaitForStop(base::FunctionRef<long()> progress) {
  const auto time_out = static_cast<std::int64_t>(options_.timeout_seconds * 1000);
  std::int64_t deadline = debugger_->clock.NowMs() + time_out;
  long reached = progress();
  while (debugger_->Busy()) {
    if (debugger_->monitor.LinkError()) return WaitEnd::LinkLost;
    if (Interrupted()) return WaitEnd::Interrupted;
    if (const long now = progress(); now != reached) {
      reached = now;
      deadline = debugger_->clock.NowMs() + time_out;
    }
    if (debugger_->clock.NowMs() >= deadline) return WaitEnd::TimedOut;
    debugger_->clock.Sleep(kTick);
    debugger_->Tick();
  }
  return debugger_->monitor.LinkError() ? WaitEnd::LinkLost : WaitEnd::Stopped;
}

std::optional<std::string> Session::Idle() {
  if (!debugger_->Busy()) return {};
  debugger_->Tick();
  if (debugger_->Busy()) return {};
  return fmt::format("stopped at {}", Described(debugger_->frame.PC));
}

void Session::SendCommand(int id) {
  if (id == debugger::kCommandReset) debugger_->Reset();
  if (id == debugger::kCommandTrace) debugger_->trace.Command();
}

Result Session::Execute(std::string_view line) {
  const Parsed<std::vector<std::string>> words = SplitWords(line);
  if (!words.ok()) return UsageError(words.error);
  if (words.value.empty()) return {};
  Result result = Run(words.value);
  const ConsoleUi::Said said = ui_.TakeSaid();
  for (const std::string& error : said.errors) {
    if (result.ok()) result.status = ExitStatus::Failed;
    if (!result.error.empty()) result.error += '\n';
    result.error += error;
  }
  if (said.refused && !result.ok()) result.status = ExitStatus::NeedsYes;
  if (!said.notices.empty()) result.fields["messages"] = said.notices;
  return result;
}

Result Session::Run(const std::vector<std::string>& words) {
  const Command* command = FindCommand(words.front());
  if (command == nullptr) {
    return UsageError(fmt::format("there is no command \"{}\"; try help", words.front()));
  }
  const Arguments arguments(words.begin() + 1, words.end());
  const int count = static_cast<int>(arguments.size());
  if (count < command->least || (command->most >= 0 && count > command->most)) {
    return UsageError(fmt::format("usage: {} {}", command->name, command->arguments));
  }
  if (debugger_->Busy() && !command->while_running) {
    return Failure(ExitStatus::Failed, "the target is running: stop it or wait first");
  }
  debugger_->BeginCommand();
  Result result = command->run(*this, arguments);
  if (result.ok() && debugger_->monitor.LinkError()) {
    return LinkLost();
  }
  return result;
}

}  // namespace brevant::cli
