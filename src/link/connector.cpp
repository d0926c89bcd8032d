// SPDX-License-Identifier: MIT
#include "link/connector.h"

#include <utility>

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

}  // namespace

Connector::Connector(Monitor& monitor, base::SettingsFile& settings, SecurityKeeper& security,
                     base::UserInterface& ui, std::function<void(const std::string&)> log)
    : monitor_(monitor), settings_(settings), security_(security), ui_(ui), log_(std::move(log)) {}

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
  security_.NoteConnected(std::nullopt, false);
  if (!OpenConfiguredPort()) return ConnectResult::PortUnavailable;

  const auto code = security_.ToConnect();
  const int answer = code ? monitor_.SendSecurityCode(*code) : 0;
  monitor_.WriteByte(kTestAddress, kTestValue);
  monitor_.ReadByte(kTestAddress);
  log_(base::Format("debug  %x  %x\n", answer, kTestValue));
  if (answer != 0) {
    ui_.ShowMessage(ToMessage(kNotReady));
    return ConnectResult::NotReady;
  }
  security_.NoteConnected(code, SecurityPassed());
  if (security_.passed()) return ConnectResult::Connected;
  ui_.ShowMessage(ToMessage(kSecurityNotPassed));
  return ConnectResult::SecurityNotPassed;
}

void Connector::ResetTarget() {
  std::optional<SecurityCode> sent;
  if (monitor_.link().PulseReset()) sent = security_.ToReset();
  if (sent) monitor_.SendSecurityCode(*sent);
  // Looked at now: the program that runs next may use the byte for itself.
  security_.NoteReset(sent, SecurityPassed());
}

bool Connector::SecurityPassed() {
  const std::uint8_t status = monitor_.ReadByte(devices::kSecurityStatus);
  return !monitor_.LinkError() && (status & devices::kSecurityPassed) != 0;
}

std::optional<SecurityCode> Connector::TryKnownCodes() {
  MonitorLink& link = monitor_.link();
  for (const SecurityCode& code : security_.ToTry()) {
    // Each try is a new connection: the pulse takes the target's power away, so that nothing which
    // failed before it can still be believed to have happened. Only the port stays open.
    if (!link.PulseReset()) return std::nullopt;
    link.LinkError = false;
    security_.NoteConnected(code, monitor_.SendSecurityCode(code) == 0 && SecurityPassed());
    if (security_.passed()) return code;
  }
  return std::nullopt;
}

}  // namespace brevant::link
