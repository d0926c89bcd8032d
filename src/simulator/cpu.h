// SPDX-License-Identifier: MIT
// The CPU08: registers, and the loop that executes instructions against a bus. Dispatch is made at
// compile time from the instruction table.
#pragma once

#include <cstdint>

#include "simulator/alu.h"
#include "simulator/bus.h"

namespace brevant::simulator {

// Why the execution loop came back.
enum class Exit {
  Horizon,    // the bus's horizon is reached
  NearBreak,  // the next instruction is less than 4 bytes below the watched address, or at it
  SoftwareInterrupt,  // SWI: PC stands behind it, nothing is stacked yet
  Wait,
  Stop,
  IllegalOpcode,   // PC stands on it
  IllegalAddress,  // PC is where no opcode can be fetched
};

struct Cpu {
  static constexpr base::Address kNoWatch = 0xFFFF0000;

  std::uint8_t a = 0;
  std::uint8_t x = 0;
  std::uint8_t h = 0;
  std::uint16_t sp = 0x00FF;
  std::uint16_t pc = 0;
  Flags flags;
  // Set by an instruction that cleared the I mask: one more instruction goes before an interrupt.
  bool interrupts_deferred = false;

  void Reset(std::uint16_t start);
  std::uint8_t ccr() const { return flags.Pack(); }
  std::uint16_t hx() const { return static_cast<std::uint16_t>(h << 8 | x); }

  // Executes until the horizon or another Exit. At least one instruction is executed when the
  // horizon lies ahead and no exit precedes it. Advances bus.cycle, uses up the horizon.
  Exit Execute(Bus& bus, base::Address watch);

  void Push(Bus& bus, std::uint8_t value) { bus.Write(sp--, value); }
  // PCL, PCH, X, A, CCR, then I is set: what SWI, break and interrupts do before the vector.
  void StackForInterrupt(Bus& bus);

  bool operator==(const Cpu&) const = default;
};

}  // namespace brevant::simulator
