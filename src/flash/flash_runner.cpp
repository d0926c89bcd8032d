// SPDX-License-Identifier: MIT
#include "flash/flash_runner.h"

#include "flash/messages.h"

namespace brevant::flash {
namespace {

constexpr int kMostPolls = 100;
// A poll waits 0.11 s; the longest routine, which erases 256 pages, takes 0.4 s.
constexpr int kRoutinePolls = 20;

}  // namespace

std::optional<base::Address> FlashRunner::LetRun(const FlashPlan& plan, const FlashBlock* block) {
  if (const auto damaged = memory_.TakeDamage()) return damaged;
  if (plan.erases_security) security_.Forget();
  if (block != nullptr) security_.Doubt(block->address, block->bytes.size());
  memory_.RunTarget();
  return std::nullopt;
}

void FlashRunner::AwaitBlock() {
  // A stray byte before the break byte would be taken for an echo, and shift every one after it.
  int poll = link_.PollBreak();
  for (int polls = 1; poll != 0 && poll != link::MonitorLink::kNoByte && polls < kMostPolls;
       ++polls) {
    poll = link_.PollBreak();
  }
}

bool FlashRunner::AwaitEnd() {
  for (int polls = 0; polls < kRoutinePolls; ++polls) {
    if (link_.PollBreak() == 0) return true;
  }
  return false;
}

bool FlashRunner::WriteTrim(FlashDriver& driver, std::uint8_t trim) {
  const devices::FlashGeometry& flash = memory_.device().flash;
  const FlashPlan plan = PlanLocations(flash, flash.trim, base::Bytes(&trim, 1));
  driver.Prepare(plan);
  if (LetRun(plan, &plan.blocks.front())) return false;
  AwaitBlock();
  return !driver.VerifyFailed() && !memory_.LinkError();
}

void ResetAndKeepCode(const std::function<void()>& reset_target, link::SecurityKeeper& security,
                      const std::optional<link::SecurityCode>& before, base::UserInterface& ui) {
  reset_target();
  const auto code = security.accepted();
  if (!security.passed() || !code || code == before) return;
  const bool kept = security.Remember(*code) || security.Recent(0) == *code;
  ui.ShowMessage(ToMessage(kept ? messages::kCodeChanged : messages::kCodeChangedNotKept,
                           link::FormatSecurityCode(*code)));
}

}  // namespace brevant::flash
