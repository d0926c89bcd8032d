// SPDX-License-Identifier: MIT
// Has the target itself compute the CRC-16 of a stretch of its flash: a routine of 58 bytes in RAM
// that is borrowed for it, see RamRoutine, takes 65 cycles a byte. 32 KB take a second where
// reading them at 9600 baud takes a minute and a half.
#pragma once

#include <cstdint>
#include <optional>

#include "base/address.h"
#include "control/ram_routine.h"
#include "memory/memory.h"

namespace brevant::control {

class TargetCrc {
 public:
  TargetCrc(memory::Memory& memory, link::MonitorLink& link, RegisterFrame& frame)
      : memory_(memory), frame_(frame), routine_(memory, link, frame) {}

  // As base::Crc16. Of a stopped target. Nothing where the stretch is not all flash, there is no
  // room in RAM, or the routine has not come back; the stretch can then be read instead unless
  // LinkError is set.
  std::optional<std::uint16_t> Of(base::Address first, std::size_t count);
  // Several stretches, the RAM borrowed once: each then costs 0.13 s instead of a second. Next may
  // be asked as often as Begin has come true, until it says nothing; End is then still to be
  // called.
  bool Begin();
  std::optional<std::uint16_t> Next(base::Address first, std::size_t count);
  // False when the link failed.
  bool End() { return routine_.End(); }
  // From so many bytes on the routine is faster than reading.
  static constexpr std::size_t kWorthwhile = 256;

 private:
  bool IsFlash(base::Address first, std::size_t count) const;
  bool RunFirst(base::Bytes stretch, int polls);

  memory::Memory& memory_;
  RegisterFrame& frame_;
  RamRoutine routine_;
  bool written_ = false;
  base::Address place_ = 0;
};

}  // namespace brevant::control
