// SPDX-License-Identifier: MIT
// Connecting to a target and resetting it: port, security code, and whether the flash is readable.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

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

// What shows that the target has accepted the code. The monitors of some devices keep their verdict
// elsewhere than at $0080, and a search for a code must not shut flash that was open.
enum class SecuritySign {
  None,
  Flag,      // bit 6 of $0080
  FirstRam,  // bit 6 of the first RAM byte, and flash reads as blank
  Flash,     // flash reads as more than one repeated byte, which a locked part never does
};
// "the flag at 0080"
std::string_view SignText(SecuritySign sign);

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
  // is not checked. False, and nothing else is done, when the port refuses the pulse; LinkError is
  // set where it is gone.
  bool ResetTarget();
  // Resets and tries the codes known to the keeper, each once, until one is accepted. Each try
  // takes 1.1 seconds of reset. If none is, the user's own code is sent once more, so that the
  // search leaves nothing worse than it was. LinkError is set when the last try got no answer.
  std::optional<SecurityCode> TryKnownCodes();
  // For an MCU that has reset itself and waits for its code again: enters it without taking the
  // power away, so that RAM stays as it is. Returns the reset status register, which reading
  // clears. Nothing when it does not wait for the code; LinkError is then set unless its monitor
  // answers as always.
  std::optional<std::uint8_t> EnterAgain();
  // Looks for a sign that the target has accepted the code; see sign(). False while LinkError is
  // set.
  bool SecurityPassed();
  // What the last look has seen.
  SecuritySign sign() const { return sign_; }

 private:
  bool OpenConfiguredPort();
  SecuritySign LookForSign();
  // Resets, sends the code and notes what became of it. False when the port refuses.
  bool Try(const SecurityCode& code);

  Monitor& monitor_;
  base::SettingsFile& settings_;
  SecurityKeeper& security_;
  base::UserInterface& ui_;
  std::function<void(const std::string&)> log_;
  SecuritySign sign_ = SecuritySign::None;
};

}  // namespace brevant::link
