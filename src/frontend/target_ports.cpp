// SPDX-License-Identifier: MIT
#include "frontend/target_ports.h"

#include <utility>

#include "base/files.h"
#include "images/image_file.h"
#include "link/native/native_serial_port.h"
#include "link/native/net_serial_port.h"
#include "link/native/serial_devices.h"
#include "link/port_map.h"
#include "simulator/demo_firmware.h"

namespace brevant::frontend {
namespace {

namespace keys = base::keys;

constexpr int kDemoDevice = 0;

}  // namespace

TargetPorts::TargetPorts(const base::SettingsFile& settings, SimulatedBoard board,
                         std::function<void()> between_transfers)
    : settings_(settings),
      board_(std::move(board)),
      router_(
          [this](const std::string& name) {
            return link::IsLogicalPort(name)
                       ? link::DeviceBehind(name, settings_, link::FindSerialDevices())
                       : name;
          },
          [this](const std::string& device) { return Backend(device); },
          std::move(between_transfers)) {}

bool TargetPorts::is_simulated() const {
  return device() == link::kSimulator;
}

link::PortBackend TargetPorts::Backend(const std::string& device) {
  if (device.starts_with(link::kReplayScheme)) return Replay(device);
  if (link::IsNetDevice(device)) return link::MakeNetBackend();
  if (device != link::kSimulator) return link::MakeNativeBackend();
  const int chosen = settings_.Integer(keys::kDevice);
  if (!simulated_ || simulated_device_ != chosen) MakeBoard(chosen);
  return {simulated_, simulated_.get(), simulated_.get()};
}

link::PortBackend TargetPorts::Replay(const std::string& device) {
  if (!replay_ || replay_device_ != device) {
    const std::string name = device.substr(link::kReplayScheme.size());
    const base::FileText file = base::ReadFile(name);
    link::Recording recording;
    if (file.ok()) {
      recording = link::ParseRecording(file.text);
    } else {
      recording.error = file.error;
    }
    replay_ = std::make_shared<link::ReplayTarget>(std::move(recording), name);
    replay_device_ = device;
  }
  return {replay_, replay_.get(), replay_.get()};
}

void TargetPorts::MakeBoard(int device) {
  simulated_device_ = device;
  simulated_ =
      std::make_shared<simulator::SimulatedTarget>(simulator::DeviceByIndex(device), board_.pace);
  simulated_->SetFaultPlan(board_.faults);
  if (!board_.demo || device != kDemoDevice) return;
  for (const auto& record : images::ParseSRecords(simulator::DemoFirmware()).records) {
    simulated_->board().Load(record.address, record.bytes);
  }
}

}  // namespace brevant::frontend
