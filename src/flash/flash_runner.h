// SPDX-License-Identifier: MIT
// Lets a flash routine that has been prepared run, and waits for its end. Keeps the books of the
// security code, which stands in flash too: what a routine may change is in doubt until it has been
// looked at.
#pragma once

#include <functional>
#include <optional>

#include "base/user_interface.h"
#include "flash/flash_driver.h"
#include "flash/flash_plan.h"
#include "link/monitor_link.h"
#include "link/security_keeper.h"
#include "memory/memory.h"

namespace brevant::flash {

class FlashRunner {
 public:
  FlashRunner(memory::Memory& memory, link::MonitorLink& link, link::SecurityKeeper& security)
      : memory_(memory), link_(link), security_(security) {}

  // RUN, of an erase when there is no block. When the line has damaged what the routine was to work
  // on, that address, and nothing has run.
  std::optional<base::Address> LetRun(const FlashPlan& plan, const FlashBlock* block);
  // Waits for the end of a block, up to 100 polls. Without an end LinkError is set or will be.
  void AwaitBlock();
  // False when the routine has not ended in a time that is enough for all of them.
  bool AwaitEnd();
  // Programs the oscillator's trim, which an erase has taken with its page and the oscillator
  // needs. False unless it has been read back.
  bool WriteTrim(FlashDriver& driver, std::uint8_t trim);
  // The block has been read back as it was sent.
  void Programmed(const FlashBlock& block) { security_.Programmed(block.address, block.bytes); }

 private:
  memory::Memory& memory_;
  link::MonitorLink& link_;
  link::SecurityKeeper& security_;
};

// Resets after flash has changed, and keeps the code that the part now asks for when it is another
// than before; the user is told.
void ResetAndKeepCode(const std::function<void()>& reset_target, link::SecurityKeeper& security,
                      const std::optional<link::SecurityCode>& before, base::UserInterface& ui);

}  // namespace brevant::flash
