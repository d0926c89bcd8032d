// SPDX-License-Identifier: MIT
// Everything that connecting says to the user.
#pragma once

#include "base/message_text.h"

namespace brevant::link {

using base::MessageText;
using base::ToMessage;

inline constexpr MessageText kCodeNotCorrect{"connect.code-not-correct", base::Severity::Notice,
                                             "Security string not correct",
                                             base::captions::kInformation, base::Icon::Information};
inline constexpr MessageText kPortNotCorrect{"connect.port-not-correct", base::Severity::Notice,
                                             "Not a correct COM port number",
                                             base::captions::kInformation, base::Icon::Information};
inline constexpr MessageText kSettingsNotStored{
    "connect.settings-not-stored", base::Severity::Error,
    "The settings file %s cannot be written, so this choice cannot take effect.\n\n"
    "Give yourself write permission for the file and its folder, or keep the settings shown at "
    "first.",
    base::captions::kError, base::Icon::Error};
// The port's own reason follows after an empty line.
inline constexpr MessageText kPortNotAvailable{
    "connect.port-not-available", base::Severity::Warning,
    "%s is not available. Please try another port", base::captions::kInformation,
    base::Icon::Information};
inline constexpr MessageText kNotReady{
    "connect.not-ready", base::Severity::Error,
    "Hardware is not ready.  Please check:\n\n"
    "1. Cable is plugged snuggly, the target and debugger are powered up.\n\n"
    "2. Try another port.\n",
    base::captions::kError, base::Icon::Error};
inline constexpr MessageText kSecurityNotPassed{
    "connect.security-not-passed", base::Severity::Warning,
    "Security not passed, but RAM can be used for debugging", base::captions::kInformation,
    base::Icon::Information};

inline constexpr MessageText kBytesAlone{
    "connect.bytes-alone", base::Severity::Notice,
    "%s carries bytes alone: it can neither reset the target nor stop a running program.\n\n"
    "Press the board's reset right before you connect, and again where a program does not stop by "
    "itself. Behind a server that speaks RFC 2217 both work: use rfc2217:// then.",
    base::captions::kInformation, base::Icon::Information};

inline constexpr MessageText kNotReset{"connect.not-reset", base::Severity::Error,
                                       "The target was not reset.\n\n%s", base::captions::kError,
                                       base::Icon::Error};

inline constexpr const MessageText* kAllMessages[] = {
    &kCodeNotCorrect, &kPortNotCorrect,    &kSettingsNotStored, &kPortNotAvailable,
    &kNotReady,       &kSecurityNotPassed, &kBytesAlone,        &kNotReset};

}  // namespace brevant::link
