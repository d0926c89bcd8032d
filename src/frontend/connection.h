// SPDX-License-Identifier: MIT
// Connecting as both front ends do it: what the command line says rules this run, known codes are
// tried, and what was said meanwhile is told afterwards. Rests on the engine's start-up.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "debugger/debugger.h"
#include "frontend/holding_ui.h"
#include "link/connector.h"
#include "link/security_code.h"

namespace brevant::frontend {

// How users name the simulated board where a port is asked for.
inline constexpr std::string_view kSimulatedName = "sim";

// What is said of the target for one run. What is left out is as the settings say.
struct TargetChoices {
  std::string port = {};           // COM1 to COM4, a device (see port_map.h), or "sim"
  std::optional<int> device = {};  // 0 GP32, 1 QL
  std::optional<link::SecurityCode> security = {};
  bool no_security = false;  // no code is sent

  // The user's own code is not second-guessed.
  bool NamesCode() const { return security || no_security; }
};
// The choices shadow the settings, whose file is not changed.
void UseForThisRun(const TargetChoices& choices, base::SettingsFile& settings);

// When the code of the settings does not fit. One that was found is offered first from then on if
// it is remembered.
enum class KnownCodes { Leave, Try, TryAndRemember };

struct Connection {
  link::ConnectResult result = link::ConnectResult::NotReady;
  // In its order, to be told to the user. That the security is not passed, which each connection
  // that was tried says, stands at the end, once, and not at all when another code fitted.
  std::vector<base::Message> said;
  std::optional<link::SecurityCode> found;  // the known code that fits

  bool ok() const { return debugger::IsConnected(result); }
};
// ui is the one that the engine has.
Connection Connect(debugger::Debugger& debugger, HoldingUi& ui, KnownCodes codes);
// The settings may name another port or code by now; known codes are not tried.
Connection ConnectAgain(debugger::Debugger& debugger, HoldingUi& ui);
// "The security code ffffffffffffffff fits."
std::string FitText(const link::SecurityCode& code);

}  // namespace brevant::frontend
