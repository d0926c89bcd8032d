// SPDX-License-Identifier: MIT
#include "link/security_code.h"

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::link {

using base::keys::kRecentSecurity;

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

SecurityCode RecentSecurityCode(const base::SettingsFile& settings, int n) {
  return ParseSecurityCode(settings.String(kRecentSecurity, n)).value_or(kDefaultSecurityCode);
}

bool RememberSecurityCode(base::SettingsFile& settings, const SecurityCode& code) {
  const std::string text = FormatSecurityCode(code);
  // Entries keep their text as it stands, even one that does not parse.
  std::array<std::string, kRecentCodes> entries;
  for (int n = 0; n < kRecentCodes; ++n) entries[n] = settings.String(kRecentSecurity, n);

  int place = 0;
  while (place < kRecentCodes - 1 && entries[place] != text) ++place;
  bool stored = true;
  for (int n = place; n > 0; --n) {
    stored = settings.Store(kRecentSecurity, entries[n - 1], n) && stored;
  }
  return settings.Store(kRecentSecurity, text, 0) && stored;
}

}  // namespace brevant::link
