// SPDX-License-Identifier: MIT
// Everything that connecting says to the user, word for word.
#pragma once

#include "base/message_text.h"

namespace brevant::link {

using base::MessageText;
using base::ToMessage;

inline constexpr MessageText kCodeNotCorrect{"Security string not correct", "Information",
                                             base::Icon::Information};
inline constexpr MessageText kPortNotCorrect{"Not a correct COM port number", "Information",
                                             base::Icon::Information};
inline constexpr MessageText kSettingsNotStored{
    "The settings file %s cannot be written, so this choice cannot take effect.\n\n"
    "Give yourself write permission for the file and its folder, or keep the settings shown at "
    "first.",
    "Error Message", base::Icon::Error};
// The port's own reason follows after an empty line.
inline constexpr MessageText kPortNotAvailable{"%s is not available. Please try another port",
                                               "Information", base::Icon::Information};
inline constexpr MessageText kNotReady{
    "Hardware is not ready.  Please check:\n\n"
    "1. Cable is plugged snuggly, the target and debugger are powered up.\n\n"
    "2. Try another port.\n",
    "Error Message", base::Icon::Error};
inline constexpr MessageText kSecurityNotPassed{
    "Security not passed, but RAM can be used for debugging", "Information",
    base::Icon::Information};

}  // namespace brevant::link
