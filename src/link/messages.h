// SPDX-License-Identifier: MIT
// Everything that connecting says to the user, word for word.
#pragma once

#include <string_view>

#include "base/text_format.h"
#include "base/user_interface.h"

namespace brevant::link {

struct LinkMessage {
  const char* text;  // may hold one "%s"
  std::string_view caption;
  base::Icon icon;

  // With the argument in the place of "%s".
  template <typename... Args>
  base::Message With(const Args&... args) const {
    return {base::Format(text, args...), std::string(caption), icon, base::Buttons::Ok};
  }
};

inline constexpr LinkMessage kCodeNotCorrect{"Security string not correct", "Information",
                                             base::Icon::Information};
inline constexpr LinkMessage kPortNotCorrect{"Not a correct COM port number", "Information",
                                             base::Icon::Information};
inline constexpr LinkMessage kSettingsNotStored{
    "The settings file %s cannot be written, so this choice cannot take effect.\n\n"
    "Give yourself write permission for the file and its folder, or keep the settings shown at "
    "first.",
    "Error Message", base::Icon::Error};
// The port's own reason follows after an empty line.
inline constexpr LinkMessage kPortNotAvailable{"%s is not available. Please try another port",
                                               "Information", base::Icon::Information};
inline constexpr LinkMessage kNotReady{
    "Hardware is not ready.  Please check:\n\n"
    "1. Cable is plugged snuggly, the target and debugger are powered up.\n\n"
    "2. Try another port.\n",
    "Error Message", base::Icon::Error};
inline constexpr LinkMessage kSecurityNotPassed{
    "Security not passed, but RAM can be used for debugging", "Information",
    base::Icon::Information};

}  // namespace brevant::link
