// SPDX-License-Identifier: MIT
// All that is known of the security code: which codes were used and which one was given for this
// session, which one the target accepted, and what stands in its flash ($FFF6-$FFFD), so that what
// connecting and resetting send is the code most likely to fit. Rests on the settings "Security0"
// to "Security4", "Security" and "SecurityCheck"; every code in them is read when it is asked for.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"
#include "base/settings_file.h"
#include "link/security_code.h"

namespace brevant::link {

inline constexpr int kRecentCodes = 5;

class SecurityKeeper {
 public:
  explicit SecurityKeeper(base::SettingsFile& settings) : settings_(settings) {}

  // Entry n of the codes used most recently, 0 the newest; the default when it does not parse.
  SecurityCode Recent(int n) const;
  // Puts the code at the head of the list: an equal entry (16 lower-case digits) moves up, else the
  // oldest is dropped. False when the settings file could not be written.
  bool Remember(const SecurityCode& code);
  // Counts as the newest in this run and is not stored.
  void GiveForSession(const SecurityCode& code);

  // False when no code is to be sent at all.
  bool Verify() const;
  // Nothing when no code is to be sent.
  std::optional<SecurityCode> ToConnect() const;
  // The settings' own code for resets, else the one that stands in flash, else the one that was
  // accepted last, else the one given for the session, else the default. Nothing when no code is to
  // be sent.
  std::optional<SecurityCode> ToReset() const;
  // The recent codes and the blank part's, each once.
  std::vector<SecurityCode> ToTry() const;

  // A target was connected to, perhaps another one than before: what it made of the code sent, and
  // that none was. Nothing else is known of it.
  void NoteConnected(const std::optional<SecurityCode>& sent, bool passed);
  // The same target was reset.
  void NoteReset(const std::optional<SecurityCode>& sent, bool passed);
  // The target accepted the code at the last connect or reset; else flash reads are not valid.
  bool passed() const { return passed_; }
  // The code accepted last since connecting.
  std::optional<SecurityCode> accepted() const { return accepted_; }
  // The accepted code when it is not the one that connecting sends.
  std::optional<SecurityCode> FoundByTrying() const;

  // What stands in flash. Nothing unless all eight bytes are known.
  std::optional<SecurityCode> InFlash() const;
  // An erase that was broken off.
  void Forget() { in_flash_ = {}; }
  void Erased();
  // Bytes that were programmed and read back.
  void Programmed(base::Address address, base::Bytes bytes);
  // Bytes that may or may not have been programmed.
  void Doubt(base::Address address, std::size_t count);

 private:
  base::SettingsFile& settings_;
  std::array<std::optional<std::uint8_t>, 8> in_flash_;
  std::optional<SecurityCode> accepted_;
  bool passed_ = false;
};

}  // namespace brevant::link
