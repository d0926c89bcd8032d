// SPDX-License-Identifier: MIT
#include "control/breakpoint_table.h"

#include <algorithm>

#include "devices/hc08.h"

namespace brevant::control {

int BreakpointTable::FindBreakpoint(base::Address address) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [address](const auto& entry) {
    return entry.in_use && entry.address == address;
  });
  return static_cast<int>(found - entries_.begin());
}

int BreakpointTable::NthBreakpoint(int n) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&n](const auto& entry) { return entry.in_use && n-- == 0; });
  return static_cast<int>(found - entries_.begin());
}

void BreakpointTable::AddBreakpoint(base::Address address) {
  const auto free = std::find_if(entries_.begin(), entries_.end(),
                                 [](const auto& entry) { return !entry.in_use; });
  if (free == entries_.end()) return;
  free->in_use = true;
  free->address = address;
  ++count_;
  ++generation_;
}

void BreakpointTable::RemoveBreakpoint(base::Address address) {
  const int index = FindBreakpoint(address);
  if (index == kNoBreakpoint) return;
  entries_[index].in_use = false;
  --count_;
  ++generation_;
}

void BreakpointTable::Clear() {
  for (Breakpoint& entry : entries_) entry.in_use = false;
  count_ = 0;
  ++generation_;
}

bool BreakpointTable::TakesSwi(base::Address address) {
  const std::uint8_t saved = memory_.ReadByte(address);
  if (saved == kSwiOpcode) return true;
  const bool taken = !memory_.WriteAndLook(address, std::array{kSwiOpcode});
  memory_.WriteByte(address, saved);
  return taken;
}

void BreakpointTable::InsertBreakpoints() {
  armed_.reset();
  if (count_ < 1) return;
  if (HardwareBreakMode()) {
    ArmBreakModule(entries_[NthBreakpoint(0)].address);
    return;
  }
  for (Breakpoint& entry : entries_) {
    if (entry.in_use && !Plant(entry)) return;
  }
}

void BreakpointTable::RemoveBreakpoints() {
  if (HardwareBreakMode() || count_ < 1) return;
  for (const Breakpoint& entry : entries_) {
    if (entry.in_use) Restore(entry);
  }
}

void BreakpointTable::ArmBreakModule(base::Address address) {
  memory_.WriteWord(devices::kBRKH, address);
  memory_.WriteByte(devices::kBRKSCR, devices::kBreakEnable);
  armed_ = address;
}

void BreakpointTable::DisarmBreakModule() {
  memory_.WriteByte(devices::kBRKSCR, 0);
}

void BreakpointTable::PlantStep(int slot, base::Address address) {
  step_[slot].address = base::Low16(address);
  step_[slot].in_use = Plant(step_[slot]);
}

void BreakpointTable::ClearStepBreakpoints() {
  for (Breakpoint& slot : step_) {
    if (slot.in_use) Restore(slot);
    if (memory_.LinkError()) return;
    slot.in_use = false;
  }
}

bool BreakpointTable::StepPlantedAt(base::Address address) const {
  return std::ranges::any_of(
      step_, [address](const Breakpoint& slot) { return slot.in_use && slot.address == address; });
}

bool BreakpointTable::Plant(Breakpoint& breakpoint) {
  const std::uint8_t code = memory_.ReadByte(breakpoint.address);
  if (memory_.LinkError()) return false;
  breakpoint.saved = code;
  memory_.WriteByte(breakpoint.address, kSwiOpcode);
  return true;
}

void BreakpointTable::Restore(const Breakpoint& breakpoint) {
  if (memory_.AskByte(breakpoint.address) != kSwiOpcode) return;
  memory_.WriteByte(breakpoint.address, breakpoint.saved);
}

}  // namespace brevant::control
