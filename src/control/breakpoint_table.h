// SPDX-License-Identifier: MIT
// The user's breakpoints and the two slots that a step uses. Software breakpoints are SWI bytes
// planted over code; the hardware breakpoint is the MCU's break module.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"
#include "memory/memory.h"

namespace brevant::control {

inline constexpr int kMaxBreakpoints = 100;
inline constexpr int kNoBreakpoint = kMaxBreakpoints;
inline constexpr std::uint8_t kSwiOpcode = 0x83;

enum class BreakMode {
  Software,  // any number of SWI bytes, in RAM only
  Hardware,  // the break module: one breakpoint, in flash too
};

struct Breakpoint {
  bool in_use = false;
  // An SWI of ours may stand there, also when the entry was freed meanwhile.
  bool planted = false;
  std::uint8_t saved = 0;  // the code byte under the SWI
  base::Address address = 0;
};

// Where an SWI cannot stand that a run needs; nothing when all stand.
using Refused = std::optional<base::Address>;

class BreakpointTable {
 public:
  explicit BreakpointTable(memory::Memory& memory) : memory_(memory) {}

  const std::array<Breakpoint, kMaxBreakpoints>& entries() const { return entries_; }
  int count() const { return count_; }

  // Index of the first entry in use with that address, or kNoBreakpoint.
  int FindBreakpoint(base::Address address) const;
  bool Has(base::Address address) const { return FindBreakpoint(address) != kNoBreakpoint; }
  // Table index of the n-th entry in use, from 0, or kNoBreakpoint.
  int NthBreakpoint(int n) const;
  // The address of the first entry in use, the one that the break module gets.
  std::optional<base::Address> First() const;
  // The table itself checks no limit but its size; see BreakpointLimit in control/messages.h.
  void AddBreakpoint(base::Address address);
  void RemoveBreakpoint(base::Address address);
  // Every entry free, without touching the target.
  void Clear();
  // Moves whenever entries come or go.
  long generation() const { return generation_; }

  // Setting "B32FLAG".
  bool HardwareBreakMode() const { return mode_ == BreakMode::Hardware; }
  void SetBreakMode(BreakMode mode) { mode_ = mode; }

  // Whether the memory there can hold an SWI: tried, and put back. In other memory a software
  // breakpoint would be silently missed.
  bool TakesSwi(base::Address address);
  // Arms the break module with the first entry in use (hardware), or plants an SWI at every entry
  // and looks that it stands. After a refusal, RemoveBreakpoints takes back what was planted.
  Refused InsertBreakpoints();
  // Restores the bytes of what was planted, also of entries that were freed since.
  void RemoveBreakpoints();
  // Whether the last InsertBreakpoints made the program stop there.
  bool InsertedAt(base::Address address) const;
  // The same for SWI bytes alone.
  bool SwiInsertedAt(base::Address address) const;

  // The break module.
  void ArmBreakModule(base::Address address);
  void DisarmBreakModule();
  // What it was armed for last; nothing when InsertBreakpoints had nothing to arm since.
  std::optional<base::Address> armed() const { return armed_; }

  // Step slots: 0 the fall-through or run-to address, 1 a branch target.
  Refused PlantStep(int slot, base::Address address);
  // Restores slot 0, then slot 1, so that two slots at one address end with the code byte. When the
  // link fails the slots stay in use: their code is still to be restored.
  void ClearStepBreakpoints();
  bool StepPlanted() const { return step_[0].in_use || step_[1].in_use; }
  bool StepPlantedAt(base::Address address) const;

 private:
  // Saves the code byte, writes an SWI over it and looks. What is not RAM is refused before. When
  // the link fails on the way nothing is refused; whether it was planted is told by the entry.
  Refused Plant(Breakpoint& breakpoint);
  bool HoldsSwi(base::Address address);
  // Only a byte that is still the SWI is replaced: the program may have been loaded anew.
  void Restore(Breakpoint& breakpoint);

  memory::Memory& memory_;
  std::array<Breakpoint, kMaxBreakpoints> entries_{};
  std::array<Breakpoint, 2> step_{};
  int count_ = 0;
  long generation_ = 0;
  BreakMode mode_ = BreakMode::Hardware;
  std::optional<base::Address> armed_;
  std::vector<base::Address> inserted_;  // in software mode
};

}  // namespace brevant::control
