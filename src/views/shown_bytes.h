// SPDX-License-Identifier: MIT
// What a view shows at this stop and showed at the one before: by that it knows which bytes have
// changed. What was not shown at the stop before is compared with what was shown first.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/address.h"

namespace brevant::views {

class ShownBytes {
 public:
  // The target has come to rest anew.
  void BeginStop() { before_ = std::exchange(now_, {}); }
  // Whether the byte has changed.
  bool Show(base::Address address, std::uint8_t byte) {
    now_[address] = byte;
    return before_.try_emplace(address, byte).first->second != byte;
  }
  // What the byte is compared with.
  std::optional<std::uint8_t> Before(base::Address address) const {
    const auto found = before_.find(address);
    return found == before_.end() ? std::nullopt : std::optional(found->second);
  }
  // What was shown there last, at this stop or the one before; nothing otherwise.
  std::optional<std::uint8_t> Last(base::Address address) const {
    for (const auto* const shown : {&now_, &before_}) {
      const auto found = shown->find(address);
      if (found != shown->end()) return found->second;
    }
    return std::nullopt;
  }

 private:
  std::unordered_map<base::Address, std::uint8_t> now_, before_;
};

}  // namespace brevant::views
