// SPDX-License-Identifier: MIT
#include "gui/session.h"

#include "base/files.h"
#include "devices/device.h"
#include "link/messages.h"
#include "link/security_code.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;

constexpr const char* kDiagnosticFile = "vell";
// Often enough for the eye; the rest of the time is the wire's.
constexpr std::chrono::milliseconds kRepaintEvery{50};
constexpr std::string_view kWholeAddressSpace = "FFFF";

}  // namespace

Session::Session(const Options& given)
    : options(given),
      settings(given.settings),
      diagnostics_(kDiagnosticFile),
      ports_(settings, {.pace = given.pace, .demo = true}, [this] { RepaintNowAndThen(); }),
      debugger({.port = ports_.router(),
                .clock = ports_.router(),
                .settings = settings,
                .ui = ui,
                .workspace = *this,
                .indication = *this,
                .start_up_directory = base::WorkingDirectory(),
                .log = [this](const std::string& line) { diagnostics_ << line << std::flush; }}),
      program_views({debugger.monitor, debugger.debug_info, debugger.frame, debugger.breakpoints,
                     debugger.run_state, ui}),
      registers(debugger.frame, ui),
      program_menu(program_views, debugger.frame, debugger.breakpoints, debugger.run_control,
                   *this) {
  ports::UseForThisRun(options.port, settings);
  // Until the user has chosen a range, the flash is within sight.
  if (!settings.Has(keys::kProgramRange.section, keys::kProgramRange.key)) {
    settings.Override(keys::kProgramRange, kWholeAddressSpace);
  }
  program_views.ReadRange(settings);
  recent_files.Read(settings);
}

Session::~Session() {
  debugger.monitor_link.ClosePort();
}

void Session::RepaintNowAndThen() {
  if (screen_ == nullptr || !gate.busy() || gate.held() < kRepaintEvery) return;
  if (since_repaint_.isValid() && !since_repaint_.hasExpired(kRepaintEvery.count())) return;
  screen_->RepaintAtWork();
  since_repaint_.start();
}

link::ConnectResult Session::ShowConnecting(base::FunctionRef<link::ConnectResult()> connect) {
  target_ = devices::BySettingsNumber(settings.Integer(keys::kDevice)).name;
  ui.ShowWaiting("Look for hardware", "Connecting to the target...");
  ui.Hold();
  const link::ConnectResult result = connect();
  const auto held = ui.TakeHeld();
  ui.EndProgress();
  bool refused = false;
  for (const base::Message& message : held) {
    // Said of each connection that was tried: once is enough, and not when another code fitted.
    const bool of_the_code = message.text == link::kSecurityNotPassed.text;
    if (!of_the_code) ui.ShowMessage(message);
    refused = refused || of_the_code;
  }
  if (refused && !debugger.security_passed) {
    ui.ShowMessage(base::ToMessage(link::kSecurityNotPassed));
  }
  return result;
}

bool Session::Connect() {
  link::ConnectResult result = link::ConnectResult::NotReady;
  gate.Run([&] {
    result = ShowConnecting([this] { return debugger.Start(debugger::OtherCodes::Try); });
  });
  const auto code = debugger.connector.session_code();
  if (debugger.security_passed && code) {
    // Offered first by the connect dialog from now on, and used when connecting again.
    link::RememberSecurityCode(settings, *code);
    notice_ = "The security code " + link::FormatSecurityCode(*code) + " fits.";
  }
  return debugger::IsConnected(result);
}

void Session::Reconnect() {
  ShowConnecting([this] { return debugger.Restart(); });
  program_views.RefreshProgramWindows();
}

void Session::Tick() {
  gate.Run([this] { debugger.Tick(); });
}

ConnectionState Session::Connection() const {
  return {.port = debugger.monitor_link.PortName,
          .device = ports_.device(),
          .simulated = ports_.is_simulated(),
          .target = target_,
          .running = debugger.run_state.Busy(),
          .link_lost = debugger.monitor_link.LinkError,
          .security_passed = debugger.security_passed};
}

void Session::RefreshScreen() {
  if (screen_ != nullptr) screen_->Refresh();
}

void Session::RefreshViews() {
  registers.UpdateChangeFlags();
  program_views.ShowPc();
  RefreshScreen();
}

void Session::ShowRunning(bool) {
  RefreshScreen();
}

void Session::SendCommand(int id) {
  if (screen_ != nullptr) screen_->Carry(id);
}

}  // namespace brevant::gui
