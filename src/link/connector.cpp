// SPDX-License-Identifier: MIT
#include "link/connector.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/file_names.h"
#include "base/text_format.h"
#include "devices/device.h"
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

// The last bytes of flash, among them the vectors that every program has.
constexpr base::Address kLookedAtFlash = 16;
constexpr std::uint8_t kErasedByte = 0xFF;

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
  if (!OpenConfiguredPort()) {
    // What was reached before is not reached any more.
    monitor_.link().LinkError = true;
    return ConnectResult::PortUnavailable;
  }

  const auto code = security_.ToConnect();
  const int answer = code ? monitor_.SendSecurityCode(*code) : 0;
  monitor_.WriteByte(kTestAddress, kTestValue);
  monitor_.ReadByte(kTestAddress);
  log_(base::Format("debug  %x  %x\n", answer, kTestValue));
  if (answer != 0) {
    monitor_.link().LinkError = true;
    ui_.ShowMessage(ToMessage(kNotReady));
    return ConnectResult::NotReady;
  }
  security_.NoteConnected(code, SecurityPassed());
  if (security_.passed()) return ConnectResult::Connected;
  ui_.ShowMessage(ToMessage(kSecurityNotPassed));
  return ConnectResult::SecurityNotPassed;
}

bool Connector::ResetTarget() {
  if (!monitor_.link().PulseReset()) {
    if (monitor_.LinkError()) security_.NoteReset(std::nullopt, false);
    return false;
  }
  const std::optional<SecurityCode> sent = security_.ToReset();
  if (sent) monitor_.SendSecurityCode(*sent);
  // Looked at now: the program that runs next may use the byte for itself.
  security_.NoteReset(sent, SecurityPassed());
  return true;
}

std::optional<std::uint8_t> Connector::EnterAgain() {
  MonitorLink& link = monitor_.link();
  link.LinkError = false;
  link.DiscardInput();
  // A code must not reach a monitor that would take its bytes for commands. One that waits for the
  // code echoes this, but has no answer.
  monitor_.ReadStackPointer();
  if (!link.LinkError) return std::nullopt;
  link.LinkError = false;
  // How many of the eight it has already taken is not known; which, does not matter unless it had
  // lost its power.
  const SecurityCode code = security_.ToReset().value_or(kBlankSecurityCode);
  bool entered = false;
  for (const std::uint8_t& byte : code) {
    link.SendSecret(base::Bytes(&byte, 1));
    if (link.LinkError) return std::nullopt;
    entered = link.PollBreak() == 0;
    if (entered) break;
  }
  const std::uint8_t status = entered ? monitor_.ReadByte(devices::kResetStatus) : 0;
  if (!entered) link.LinkError = true;
  if (link.LinkError) return std::nullopt;
  security_.NoteReset(code, SecurityPassed());
  return status;
}

bool Connector::SecurityPassed() {
  for (int tries = 0; tries < 2; ++tries) {
    const long before = monitor_.damage();
    sign_ = LookForSign();
    if (monitor_.damage() == before) break;
    // A byte that the line has added shifts all that follow.
    monitor_.DiscardUnexpected();
    sign_ = SecuritySign::None;
  }
  return sign_ != SecuritySign::None;
}

SecuritySign Connector::LookForSign() {
  const auto is_set = [](std::uint8_t status) { return (status & devices::kSecurityPassed) != 0; };
  const auto flag = [&] { return is_set(monitor_.ReadByte(devices::kSecurityStatus)); };
  // Twice, since no echo tells of a bit that the line turns in the answer.
  if (flag() && flag() && !monitor_.LinkError()) return SecuritySign::Flag;
  if (monitor_.LinkError()) return SecuritySign::None;
  using Vectors = std::array<std::uint8_t, kLookedAtFlash>;
  const auto read_vectors = [&] {
    Vectors bytes{};
    monitor_.ReadBlockBytes(bytes, base::kAddressSpace - kLookedAtFlash);
    return bytes;
  };
  const Vectors vectors = read_vectors();
  const bool differ =
      std::ranges::any_of(vectors, [&](std::uint8_t byte) { return byte != vectors[0]; });
  if (monitor_.LinkError()) return SecuritySign::None;
  if (differ) {
    const bool same = read_vectors() == vectors;
    return same && !monitor_.LinkError() ? SecuritySign::Flash : SecuritySign::None;
  }
  const devices::Device& device = devices::BySettingsNumber(settings_.Integer(kDevice));
  const auto ram =
      std::ranges::find(device.memory, devices::MemoryKind::Ram, &devices::MemoryRange::kind);
  // RAM that nobody has written may hold anything: of a part that reads as locked it is no sign.
  if (vectors[0] != kErasedByte || ram->first == devices::kSecurityStatus) {
    return SecuritySign::None;
  }
  const auto first = [&] { return is_set(monitor_.ReadByte(ram->first)); };
  return first() && first() && !monitor_.LinkError() ? SecuritySign::FirstRam : SecuritySign::None;
}

std::string_view SignText(SecuritySign sign) {
  switch (sign) {
    case SecuritySign::None:
      break;
    case SecuritySign::Flag:
      return "the flag at 0080";
    case SecuritySign::FirstRam:
      return "the first byte of RAM";
    case SecuritySign::Flash:
      return "flash reads as a program";
  }
  return "no sign";
}

bool Connector::Try(const SecurityCode& code) {
  // Each try is a new connection: the pulse takes the target's power away, so that nothing which
  // failed before it can still be believed to have happened. Only the port stays open.
  if (!monitor_.link().PulseReset()) return false;
  monitor_.link().LinkError = false;
  security_.NoteConnected(code, monitor_.SendSecurityCode(code) == 0 && SecurityPassed());
  return true;
}

std::optional<SecurityCode> Connector::TryKnownCodes() {
  for (const SecurityCode& code : security_.ToTry()) {
    if (!Try(code)) return std::nullopt;
    if (security_.passed()) return code;
  }
  const auto own = security_.ToConnect();
  return own && Try(*own) && security_.passed() ? own : std::nullopt;
}

}  // namespace brevant::link
