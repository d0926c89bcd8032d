// SPDX-License-Identifier: MIT
// Connecting to a target and resetting it: port, security code, and whether the flash is readable.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "link/monitor.h"
#include "link/security_code.h"

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
  Connector(Monitor& monitor, base::SettingsFile& settings, base::UserInterface& ui,
            std::function<void(const std::string&)> log);

  // Everything after the dialog: clears LinkError, opens the port of the settings, sends the code,
  // checks the answer and the security flag, and tells the user what went wrong. With
  // "SecurityCheck" 0 no code is sent and only the flag is looked at: a target that does not answer
  // then shows as SecurityNotPassed with LinkError set.
  ConnectResult Connect();
  // Pulses reset and sends the code of key "Security" unless "SecurityCheck" is 0. Neither the
  // reply nor the flag is checked.
  void ResetTarget();

  // A code known better than the settings' own default: given on a command line, found to fit, or
  // just written to the part. Used by ResetTarget unless the settings name a code for resets.
  void SetSessionCode(std::optional<SecurityCode> code) { session_code_ = code; }
  std::optional<SecurityCode> session_code() const { return session_code_; }
  // Resets and tries the remembered codes and the blank part's code, each once and in that order,
  // until the security flag is set. The code that fits becomes the session code. Each try takes 1.1
  // seconds of reset. Afterwards the target is as the last try left it; LinkError is set when that
  // try got no answer.
  std::optional<SecurityCode> TryKnownCodes();
  // Bit 6 of $0080. False while LinkError is set.
  bool SecurityPassed();

 private:
  bool OpenConfiguredPort();
  SecurityCode ResetCode() const;

  Monitor& monitor_;
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  std::function<void(const std::string&)> log_;
  std::optional<SecurityCode> session_code_;
};

}  // namespace brevant::link
