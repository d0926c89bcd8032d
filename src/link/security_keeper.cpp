// SPDX-License-Identifier: MIT
#include "link/security_keeper.h"

#include <algorithm>
#include <string>

#include "devices/hc08.h"

namespace brevant::link {
namespace {

using namespace base::keys;

constexpr std::uint8_t kBlank = 0xFF;

// Where in the code the i-th byte from an address on stands; 8 or more when outside.
std::size_t PlaceOf(base::Address address, std::size_t i) {
  return base::Low16(address + static_cast<base::Address>(i) - devices::kSecurityCode);
}

}  // namespace

SecurityCode SecurityKeeper::Recent(int n) const {
  return ParseSecurityCode(settings_.String(kRecentSecurity, n)).value_or(kDefaultSecurityCode);
}

bool SecurityKeeper::Remember(const SecurityCode& code) {
  const std::string text = FormatSecurityCode(code);
  if (settings_.Overridden(kRecentSecurity, 0) && settings_.String(kRecentSecurity, 0) == text) {
    return true;
  }
  // Entries keep their text as it stands, even one that does not parse. What was given for this
  // session is none of them.
  std::array<std::string, kRecentCodes> entries;
  for (int n = 0; n < kRecentCodes; ++n) entries[n] = settings_.StringInFile(kRecentSecurity, n);

  int place = 0;
  while (place < kRecentCodes - 1 && entries[place] != text) ++place;
  base::SettingsFile::Change change;
  for (int n = place; n > 0; --n) change.Store(kRecentSecurity, entries[n - 1], n);
  change.Store(kRecentSecurity, text, 0);
  return settings_.Apply(change);
}

void SecurityKeeper::GiveForSession(const SecurityCode& code) {
  settings_.Override(kRecentSecurity, FormatSecurityCode(code), 0);
}

bool SecurityKeeper::Verify() const {
  return settings_.Integer(kSecurityCheck) != 0;
}

std::optional<SecurityCode> SecurityKeeper::ToConnect() const {
  if (!Verify()) return std::nullopt;
  return Recent(0);
}

std::optional<SecurityCode> SecurityKeeper::ToReset() const {
  if (!Verify()) return std::nullopt;
  if (settings_.Has(kResetSecurity.section, kResetSecurity.key)) {
    return ParseSecurityCode(settings_.String(kResetSecurity)).value_or(kDefaultSecurityCode);
  }
  if (const auto code = InFlash()) return code;
  if (accepted_) return accepted_;
  return settings_.Overridden(kRecentSecurity, 0) ? Recent(0) : kDefaultSecurityCode;
}

std::vector<SecurityCode> SecurityKeeper::ToTry() const {
  std::vector<SecurityCode> codes;
  const auto add = [&](const SecurityCode& code) {
    if (std::ranges::find(codes, code) == codes.end()) codes.push_back(code);
  };
  for (int n = 0; n < kRecentCodes; ++n) add(Recent(n));
  add(kBlankSecurityCode);
  return codes;
}

void SecurityKeeper::NoteConnected(const std::optional<SecurityCode>& sent, bool passed) {
  passed_ = passed;
  accepted_ = passed ? sent : std::nullopt;
  Forget();
  if (accepted_) Programmed(devices::kSecurityCode, *accepted_);
}

void SecurityKeeper::NoteReset(const std::optional<SecurityCode>& sent, bool passed) {
  passed_ = passed;
  if (passed && sent) accepted_ = sent;
}

std::optional<SecurityCode> SecurityKeeper::FoundByTrying() const {
  return accepted_ != Recent(0) ? accepted_ : std::nullopt;
}

std::optional<SecurityCode> SecurityKeeper::InFlash() const {
  SecurityCode code{};
  for (std::size_t i = 0; i < code.size(); ++i) {
    if (!in_flash_[i]) return std::nullopt;
    code[i] = *in_flash_[i];
  }
  return code;
}

void SecurityKeeper::Erased() {
  in_flash_.fill(kBlank);
}

void SecurityKeeper::Programmed(base::Address address, base::Bytes bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (PlaceOf(address, i) < in_flash_.size()) in_flash_[PlaceOf(address, i)] = bytes[i];
  }
}

void SecurityKeeper::Doubt(base::Address address, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (PlaceOf(address, i) < in_flash_.size()) in_flash_[PlaceOf(address, i)] = std::nullopt;
  }
}

}  // namespace brevant::link
