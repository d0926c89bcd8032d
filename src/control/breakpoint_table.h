// SPDX-License-Identifier: MIT
// The user's breakpoints and the two slots that a step uses. Software breakpoints are SWI bytes
// planted over code; the hardware breakpoint is the MCU's break module.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

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
  std::uint8_t saved = 0;  // the code byte under the SWI
  base::Address address = 0;
};

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
  // Arms the break module with the first entry in use (hardware), or plants an SWI at every entry.
  void InsertBreakpoints();
  // Restores planted bytes. In hardware mode nothing was planted and nothing is touched.
  void RemoveBreakpoints();

  // The break module.
  void ArmBreakModule(base::Address address);
  void DisarmBreakModule();
  // What it was armed for last; nothing when InsertBreakpoints had nothing to arm since.
  std::optional<base::Address> armed() const { return armed_; }

  // Step slots: 0 the fall-through or run-to address, 1 a branch target.
  void PlantStep(int slot, base::Address address);
  // Restores slot 0, then slot 1, so that two slots at one address end with the code byte. When the
  // link fails the slots stay in use: their code is still to be restored.
  void ClearStepBreakpoints();
  bool StepPlanted() const { return step_[0].in_use || step_[1].in_use; }
  bool StepPlantedAt(base::Address address) const;

 private:
  // Saves the code byte and writes an SWI over it. False, with the saved byte untouched, when the
  // code could not be read.
  bool Plant(Breakpoint& breakpoint);
  // Only a byte that is still the SWI is replaced: the program may have been loaded anew.
  void Restore(const Breakpoint& breakpoint);
  memory::Memory& memory_;
  std::array<Breakpoint, kMaxBreakpoints> entries_{};
  std::array<Breakpoint, 2> step_{};
  int count_ = 0;
  long generation_ = 0;
  BreakMode mode_ = BreakMode::Hardware;
  std::optional<base::Address> armed_;
};

}  // namespace brevant::control
