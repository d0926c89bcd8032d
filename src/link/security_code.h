// SPDX-License-Identifier: MIT
// The 8-byte code that opens the monitor, and its text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "link/monitor.h"

namespace brevant::link {

inline constexpr SecurityCode kDefaultSecurityCode{0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3, 0xC3};
// What an erased part compares with.
inline constexpr SecurityCode kBlankSecurityCode{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

// Eight hexadecimal numbers of one or two digits, with or without blanks between them; what follows
// the eighth is ignored. Nothing when fewer than eight can be read.
std::optional<SecurityCode> ParseSecurityCode(std::string_view text);
// 16 lower-case digits.
std::string FormatSecurityCode(const SecurityCode& code);

}  // namespace brevant::link
