// SPDX-License-Identifier: MIT
#include "flash/security_bytes.h"

namespace brevant::flash {
namespace {

constexpr std::uint8_t kBlank = 0xFF;

}  // namespace

void SecurityBytes::Know(const link::SecurityCode& code) {
  for (std::size_t i = 0; i < code.size(); ++i) bytes_[i] = code[i];
}

void SecurityBytes::Erased() {
  bytes_.fill(kBlank);
}

void SecurityBytes::Programmed(base::Address address, base::Bytes bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const base::Address offset =
        base::Low16(address + static_cast<base::Address>(i) - kSecurityBytes);
    if (offset < bytes_.size()) bytes_[offset] = bytes[i];
  }
}

void SecurityBytes::Doubt(base::Address address, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const base::Address offset =
        base::Low16(address + static_cast<base::Address>(i) - kSecurityBytes);
    if (offset < bytes_.size()) bytes_[offset] = std::nullopt;
  }
}

std::optional<link::SecurityCode> SecurityBytes::Code() const {
  link::SecurityCode code{};
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (!bytes_[i]) return std::nullopt;
    code[i] = *bytes_[i];
  }
  return code;
}

}  // namespace brevant::flash
