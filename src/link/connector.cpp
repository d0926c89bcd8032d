// SPDX-License-Identifier: MIT
#include "link/connector.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/file_names.h"
#include "base/text_format.h"
#include "devices/hc08.h"
#include "link/messages.h"
#include "link/port_map.h"

namespace brevant::link {

namespace {

using namespace base::keys;

// Exercises the link and its echo check once before anything depends on it.
constexpr base::Address kTestAddress = 0x0100;
constexpr std::uint32_t kTestValue = 0x5A;

constexpr std::size_t kPortNameLimit = 6;

std::vector<SecurityCode> KnownCodes(const base::SettingsFile& settings) {
  std::vector<SecurityCode> codes;
  const auto add = [&](const SecurityCode& code) {
    if (std::ranges::find(codes, code) == codes.end()) codes.push_back(code);
  };
  for (int n = 0; n < kRecentCodes; ++n) add(RecentSecurityCode(settings, n));
  add(kBlankSecurityCode);
  return codes;
}

}  // namespace

Connector::Connector(Monitor& monitor, base::SettingsFile& settings, base::UserInterface& ui,
                     std::function<void(const std::string&)> log)
    : monitor_(monitor), settings_(settings), ui_(ui), log_(std::move(log)) {}

bool Connector::OpenConfiguredPort() {
  const std::string name = base::UpperCase(settings_.String(kPort).substr(0, kPortNameLimit));
  // Any other name opens nothing; the missing answer then tells the user.
  if (!IsLogicalPort(name)) return true;
  MonitorLink& link = monitor_.link();
  link.PortName = name;
  if (link.OpenPort(name)) return true;
  base::Message message = ToMessage(kPortNotAvailable, name);
  if (const std::string reason = link.PortError(); !reason.empty()) {
    message.text += "\n\n" + reason;
  }
  ui_.ShowMessage(message);
  return false;
}

ConnectResult Connector::Connect() {
  monitor_.link().LinkError = false;
  if (!OpenConfiguredPort()) return ConnectResult::PortUnavailable;

  const bool verify = settings_.Integer(kSecurityCheck) != 0;
  const int answer = verify ? monitor_.SendSecurityCode(RecentSecurityCode(settings_, 0)) : 0;
  monitor_.WriteByte(kTestAddress, kTestValue);
  monitor_.ReadByte(kTestAddress);
  log_(base::Format("debug  %x  %x\n", answer, kTestValue));
  if (answer != 0) {
    ui_.ShowMessage(ToMessage(kNotReady));
    return ConnectResult::NotReady;
  }
  if (SecurityPassed()) return ConnectResult::Connected;
  ui_.ShowMessage(ToMessage(kSecurityNotPassed));
  return ConnectResult::SecurityNotPassed;
}

SecurityCode Connector::ResetCode() const {
  const bool named = settings_.Has(kResetSecurity.section, kResetSecurity.key);
  if (!named && session_code_) return *session_code_;
  return ParseSecurityCode(settings_.String(kResetSecurity)).value_or(kDefaultSecurityCode);
}

void Connector::ResetTarget() {
  if (!monitor_.link().PulseReset()) return;
  if (settings_.Integer(kSecurityCheck) == 0) return;
  monitor_.SendSecurityCode(ResetCode());
}

bool Connector::SecurityPassed() {
  const std::uint8_t status = monitor_.ReadByte(devices::kSecurityStatus);
  return !monitor_.LinkError() && (status & devices::kSecurityPassed) != 0;
}

std::optional<SecurityCode> Connector::TryKnownCodes() {
  MonitorLink& link = monitor_.link();
  for (const SecurityCode& code : KnownCodes(settings_)) {
    // Each try is a new connection: the pulse takes the target's power away, so that nothing which
    // failed before it can still be believed to have happened. Only the port stays open.
    if (!link.PulseReset()) return std::nullopt;
    link.LinkError = false;
    if (monitor_.SendSecurityCode(code) == 0 && SecurityPassed()) {
      session_code_ = code;
      return code;
    }
  }
  return std::nullopt;
}

}  // namespace brevant::link
