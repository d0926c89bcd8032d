// SPDX-License-Identifier: MIT
// What is known of the security code in the target's flash ($FFF6-$FFFD), so that the code sent
// after an erase or after programming is the one that stands there now.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "base/address.h"
#include "link/monitor.h"

namespace brevant::flash {

inline constexpr base::Address kSecurityBytes = 0xFFF6;

class SecurityBytes {
 public:
  // The target has accepted this code.
  void Know(const link::SecurityCode& code);
  // Another target, or an erase that was broken off.
  void Forget() { bytes_ = {}; }
  void Erased();
  // Bytes that were programmed and read back.
  void Programmed(base::Address address, base::Bytes bytes);
  // Bytes that may or may not have been programmed.
  void Doubt(base::Address address, std::size_t count);
  // Nothing unless all eight bytes are known.
  std::optional<link::SecurityCode> Code() const;

 private:
  std::array<std::optional<std::uint8_t>, 8> bytes_;
};

}  // namespace brevant::flash
