// SPDX-License-Identifier: MIT
#include "gui/session.h"

#include <algorithm>
#include <filesystem>

#include "base/file_names.h"
#include "images/image_reader.h"
#include "link/connect_form.h"
#include "link/messages.h"
#include "link/native/native_serial_port.h"
#include "link/port_map.h"
#include "link/security_code.h"
#include "simulator/demo_firmware.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;

constexpr std::string_view kSimulatedName = "sim";
// The demo program is built for the first device.
constexpr int kDemoDevice = 0;
constexpr std::string_view kWholeAddressSpace = "FFFF";

}  // namespace

Session::Session(const Options& given)
    : options(given),
      settings(given.settings),
      router_(
          [this](const std::string& name) {
            return link::DeviceBehind(name, settings, link::FindSerialDevices());
          },
          [this](const std::string& device) { return Backend(device); }),
      debugger({.port = router_,
                .clock = router_,
                .settings = settings,
                .ui = ui,
                .workspace = *this,
                .indication = *this,
                .start_up_directory = std::filesystem::current_path().string()}),
      program_views({debugger.monitor, debugger.debug_info, debugger.frame, debugger.breakpoints,
                     debugger.run_state, ui}),
      registers(debugger.frame, ui),
      program_menu(program_views, debugger.frame, debugger.breakpoints, debugger.run_control,
                   *this) {
  ApplyOptions();
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

// Options rule this run only: they shadow the settings and are never written to the file.
void Session::ApplyOptions() {
  if (options.port.empty()) return;
  const std::string upper = base::UpperCase(options.port);
  if (link::IsLogicalPort(upper)) {
    settings.Override(keys::kPort, upper);
    return;
  }
  settings.Override(keys::kPort, "COM1");
  settings.Override(keys::kPortDevice,
                    options.port == kSimulatedName ? std::string(link::kSimulator) : options.port,
                    1);
}

// The simulated board lives as long as the program: connecting again finds the same flash.
link::PortBackend Session::Backend(const std::string& device) {
  if (device != link::kSimulator) return link::MakeNativeBackend();
  const int chosen = settings.Integer(keys::kDevice);
  if (!simulated_ || simulated_device_ != chosen) {
    simulated_device_ = chosen;
    simulated_ = std::make_shared<simulator::SimulatedTarget>(simulator::DeviceByIndex(chosen),
                                                              options.pace);
    if (chosen == kDemoDevice) {
      for (const images::Block& block :
           images::ParseImage(simulator::DemoFirmware()).image.Blocks()) {
        simulated_->board().Load(block.address, block.bytes);
      }
    }
  }
  return {simulated_, simulated_.get(), simulated_.get()};
}

link::ConnectResult Session::ShowConnecting(base::FunctionRef<link::ConnectResult()> connect) {
  const auto names = link::DeviceNames();
  const int last = static_cast<int>(names.size()) - 1;
  target_ = names[static_cast<std::size_t>(std::clamp(settings.Integer(keys::kDevice), 0, last))];
  ui.ShowWaiting("Look for hardware", "Connecting to the target...");
  ui.Hold();
  const link::ConnectResult result = connect();
  const auto held = ui.TakeHeld();
  ui.EndProgress();
  for (const base::Message& message : held) {
    // Said of the first code tried, and no longer true.
    const bool outdated = message.text == link::kSecurityNotPassed.text && debugger.security_passed;
    if (!outdated) ui.ShowMessage(message);
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
    // Shown by the connect dialog from now on, and used when connecting again.
    settings.Override(keys::kRecentSecurity, link::FormatSecurityCode(*code), 0);
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
          .device = router_.device(),
          .simulated = router_.device() == link::kSimulator,
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
