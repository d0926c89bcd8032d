// SPDX-License-Identifier: MIT
#include "frontend/connection.h"

#include "base/file_names.h"
#include "link/messages.h"
#include "link/port_map.h"
#include "link/security_keeper.h"

namespace brevant::frontend {
namespace {

namespace keys = base::keys;

constexpr const char* kFirstPort = "COM1";
constexpr int kFirstPortNumber = 1;

void UsePort(const std::string& name, base::SettingsFile& settings) {
  const std::string upper = base::UpperCase(name);
  if (link::IsLogicalPort(upper)) {
    settings.Override(keys::kPort, upper);
    return;
  }
  const bool simulated = name == kSimulatedName;
  settings.Override(keys::kPort, kFirstPort);
  settings.Override(keys::kPortDevice, simulated ? std::string(link::kSimulator) : name,
                    kFirstPortNumber);
}

std::vector<base::Message> WorthTelling(const std::vector<base::Message>& said,
                                        bool security_passed) {
  std::vector<base::Message> told;
  bool refused = false;
  for (const base::Message& message : said) {
    const bool of_the_code = message.id == link::kSecurityNotPassed.id;
    if (!of_the_code) told.push_back(message);
    refused = refused || of_the_code;
  }
  if (refused && !security_passed) told.push_back(base::ToMessage(link::kSecurityNotPassed));
  return told;
}

// What the line cannot do is told before it is missed.
void TellOfBytesAlone(const base::SettingsFile& settings, Connection& connection) {
  if (connection.result == link::ConnectResult::PortUnavailable) return;
  const auto device =
      link::DeviceBehind(base::UpperCase(settings.String(keys::kPort)), settings, {});
  if (!device || !device->starts_with(link::kTcpScheme)) return;
  connection.said.push_back(base::ToMessage(link::kBytesAlone, *device));
}

}  // namespace

void UseForThisRun(const TargetChoices& choices, base::SettingsFile& settings) {
  if (!choices.port.empty()) UsePort(choices.port, settings);
  if (choices.device) settings.Override(keys::kDevice, std::to_string(*choices.device));
  if (choices.no_security) settings.Override(keys::kSecurityCheck, "0");
  if (choices.security) link::SecurityKeeper(settings).GiveForSession(*choices.security);
}

Connection Connect(debugger::Debugger& debugger, HoldingUi& ui, KnownCodes codes) {
  Connection connection;
  ui.Hold();
  connection.result = debugger.Start(codes == KnownCodes::Leave ? debugger::OtherCodes::Leave
                                                                : debugger::OtherCodes::Try);
  connection.said = WorthTelling(ui.Take(), debugger.security.passed());
  TellOfBytesAlone(debugger.settings, connection);
  connection.found = debugger.security.FoundByTrying();
  if (connection.found && codes == KnownCodes::TryAndRemember) {
    debugger.security.Remember(*connection.found);
  }
  return connection;
}

Connection ConnectAgain(debugger::Debugger& debugger, HoldingUi& ui) {
  ui.Hold();
  const link::ConnectResult result = debugger.Restart();
  Connection connection{result, WorthTelling(ui.Take(), debugger.security.passed()), std::nullopt};
  TellOfBytesAlone(debugger.settings, connection);
  return connection;
}

std::string FitText(const link::SecurityCode& code) {
  return "The security code " + link::FormatSecurityCode(code) + " fits.";
}

}  // namespace brevant::frontend
