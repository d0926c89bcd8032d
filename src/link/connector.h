// SPDX-License-Identifier: MIT
// Connecting to a target and resetting it: port, security code, and whether the flash is readable.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "link/monitor.h"
#include "link/security_keeper.h"

namespace brevant::link {

enum class ConnectResult {
  Connected,
  SecurityNotPassed,  // connected, RAM only
  PortUnavailable,
  NotReady,  // no zero reply to the code
};

class Connector {
 public:
  // log receives the line that connecting adds to the diagnostic file.
  Connector(Monitor& monitor, base::SettingsFile& settings, SecurityKeeper& security,
            base::UserInterface& ui, std::function<void(const std::string&)> log);

  // Everything after the dialog: clears LinkError, opens the port of the settings, sends the code,
  // checks the answer and the security flag, and tells the user what went wrong. Without a code to
  // send only the flag is looked at: a target that does not answer then shows as SecurityNotPassed
  // with LinkError set. The keeper knows of the target what was found out here, and nothing else.
  ConnectResult Connect();
  // Pulses reset, sends the keeper's code for resets and looks at the flag; the reply to the code
  // is not checked.
  void ResetTarget();
  // Resets and tries the codes known to the keeper, each once, until the security flag is set. Each
  // try takes 1.1 seconds of reset. Afterwards the target is as the last try left it; LinkError is
  // set when that try got no answer.
  std::optional<SecurityCode> TryKnownCodes();
  // Bit 6 of $0080. False while LinkError is set.
  bool SecurityPassed();

 private:
  bool OpenConfiguredPort();

  Monitor& monitor_;
  base::SettingsFile& settings_;
  SecurityKeeper& security_;
  base::UserInterface& ui_;
  std::function<void(const std::string&)> log_;
};

}  // namespace brevant::link
