// SPDX-License-Identifier: MIT
// Lets the stopped target run a short routine of ours from RAM. The RAM and the registers that this
// needs are borrowed: End puts all of them back.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"
#include "control/register_frame.h"
#include "link/monitor_link.h"
#include "memory/memory.h"

namespace brevant::control {

class RamRoutine {
 public:
  RamRoutine(memory::Memory& memory, link::MonitorLink& link, RegisterFrame& frame)
      : memory_(memory), link_(link), frame_(frame) {}

  // A place for so many bytes below $0100 that the stack in use leaves free. Nothing if there is
  // none.
  std::optional<base::Address> FindPlace(std::size_t bytes) const;

  // Reads the registers and saves the RAM. False when the link failed; nothing has been changed
  // then.
  bool Begin(base::Address place, std::size_t bytes);
  // Writes the routine to the place, looks that it stands, and lets it run with interrupts masked
  // until it executes the SWI at that offset; A and H:X of the frame then hold its results. A poll
  // takes 0.11 s. False when it did not come back from there, or the line has damaged a byte.
  bool Run(base::Bytes routine, std::size_t swi, int max_polls);
  // Once more, after it was Run, with other bytes from that offset on.
  bool RunAgain(std::size_t at, base::Bytes bytes, std::size_t swi, int max_polls);
  // Of a target that is in its monitor. False when the link failed.
  bool End();

 private:
  bool WriteAndRun(std::size_t at, base::Bytes bytes, std::size_t swi, int max_polls);
  bool AwaitBreak(int max_polls);

  memory::Memory& memory_;
  link::MonitorLink& link_;
  RegisterFrame& frame_;
  base::Address place_ = 0;
  std::vector<std::uint8_t> borrowed_;
  base::Address pc_ = 0;
  std::uint32_t hx_ = 0, a_ = 0, ccr_ = 0;
};

}  // namespace brevant::control
