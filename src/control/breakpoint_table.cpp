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
  // The code byte that a planted entry has saved is still needed.
  const auto free = std::find_if(entries_.begin(), entries_.end(),
                                 [](const auto& entry) { return !entry.in_use && !entry.planted; });
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
  entries_.fill({});
  count_ = 0;
  ++generation_;
}

bool BreakpointTable::TakesSwi(base::Address address) {
  if (memory_.KindOf(address) != devices::MemoryKind::Ram) return false;
  std::uint8_t saved = 0;
  if (!memory_.AskConfirmed(std::span(&saved, 1), address)) return false;
  if (saved == kSwiOpcode) return true;
  const bool taken = !memory_.WriteAndLook(address, std::array{kSwiOpcode});
  memory_.WriteByte(address, saved);
  return taken;
}

std::optional<base::Address> BreakpointTable::First() const {
  if (count_ < 1) return std::nullopt;
  return entries_[NthBreakpoint(0)].address;
}

Refused BreakpointTable::InsertBreakpoints() {
  armed_.reset();
  inserted_.clear();
  if (count_ < 1) return std::nullopt;
  if (HardwareBreakMode()) {
    ArmBreakModule(*First());
    return std::nullopt;
  }
  for (Breakpoint& entry : entries_) {
    if (!entry.in_use) continue;
    if (const Refused refused = Plant(entry)) return refused;
    if (!entry.planted) break;
    inserted_.push_back(entry.address);
  }
  return std::nullopt;
}

void BreakpointTable::RemoveBreakpoints() {
  for (Breakpoint& entry : entries_) {
    if (entry.planted) Restore(entry);
  }
}

bool BreakpointTable::InsertedAt(base::Address address) const {
  return armed_ == address || SwiInsertedAt(address);
}

bool BreakpointTable::SwiInsertedAt(base::Address address) const {
  return std::ranges::find(inserted_, address) != inserted_.end();
}

void BreakpointTable::ArmBreakModule(base::Address address) {
  memory_.WriteWord(devices::kBRKH, address);
  memory_.WriteByte(devices::kBRKSCR, devices::kBreakEnable);
  armed_ = address;
}

void BreakpointTable::DisarmBreakModule() {
  memory_.WriteByte(devices::kBRKSCR, 0);
}

Refused BreakpointTable::PlantStep(int slot, base::Address address) {
  step_[slot].address = base::Low16(address);
  const Refused refused = Plant(step_[slot]);
  step_[slot].in_use = step_[slot].planted;
  return refused;
}

void BreakpointTable::ClearStepBreakpoints() {
  for (Breakpoint& slot : step_) {
    if (slot.in_use) Restore(slot);
    if (memory_.LinkError()) return;
    slot.in_use = slot.planted = false;
  }
}

bool BreakpointTable::StepPlantedAt(base::Address address) const {
  return std::ranges::any_of(
      step_, [address](const Breakpoint& slot) { return slot.in_use && slot.address == address; });
}

Refused BreakpointTable::Plant(Breakpoint& breakpoint) {
  if (memory_.KindOf(breakpoint.address) != devices::MemoryKind::Ram) {
    return breakpoint.address;
  }
  std::uint8_t code = 0;
  if (!memory_.AskConfirmed(std::span(&code, 1), breakpoint.address)) {
    return memory_.LinkError() ? std::nullopt : Refused(breakpoint.address);
  }
  breakpoint.saved = code;
  breakpoint.planted = true;
  memory_.WriteByte(breakpoint.address, kSwiOpcode);
  if (HoldsSwi(breakpoint.address) || memory_.LinkError()) return std::nullopt;
  breakpoint.planted = false;
  return breakpoint.address;
}

// A bit that the line turns in one answer makes no SWI look like none.
bool BreakpointTable::HoldsSwi(base::Address address) {
  return memory_.AskByte(address) == kSwiOpcode ||
         (!memory_.LinkError() && memory_.AskByte(address) == kSwiOpcode);
}

void BreakpointTable::Restore(Breakpoint& breakpoint) {
  const bool there = HoldsSwi(breakpoint.address);
  if (!memory_.LinkError() && there) {
    memory_.WriteByte(breakpoint.address, breakpoint.saved);
  }
  if (!memory_.LinkError()) breakpoint.planted = false;
}

}  // namespace brevant::control
