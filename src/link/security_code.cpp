// SPDX-License-Identifier: MIT
#include "link/security_code.h"

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::link {

std::optional<SecurityCode> ParseSecurityCode(std::string_view text) {
  SecurityCode code{};
  for (std::uint8_t& byte : code) {
    const auto value = base::ScanHex(text, 2);
    if (!value) return std::nullopt;
    byte = base::LowByte(*value);
  }
  return code;
}

std::string FormatSecurityCode(const SecurityCode& code) {
  std::string text;
  for (const std::uint8_t byte : code) text += base::Format("%02x", byte);
  return text;
}

}  // namespace brevant::link
