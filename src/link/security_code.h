// SPDX-License-Identifier: MIT
// The 8-byte code that opens the monitor, and the list of the five used most recently.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "link/monitor.h"

namespace brevant::link {

inline constexpr SecurityCode kDefaultSecurityCode{0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3};
// What an erased part compares with.
inline constexpr SecurityCode kBlankSecurityCode{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
inline constexpr int kRecentCodes = 5;

// Eight hexadecimal numbers of one or two digits, with or without blanks between them; what follows
// the eighth is ignored. Nothing when fewer than eight can be read.
std::optional<SecurityCode> ParseSecurityCode(std::string_view text);
// 16 lower-case digits.
std::string FormatSecurityCode(const SecurityCode& code);

// Entry n of the list, the default code when it does not parse.
SecurityCode RecentSecurityCode(const base::SettingsFile& settings, int n);
// Puts the code at the head of the list: an equal entry (16 lower-case digits) moves up, else the
// oldest is dropped. False when the settings file could not be written.
bool RememberSecurityCode(base::SettingsFile& settings, const SecurityCode& code);

}  // namespace brevant::link
