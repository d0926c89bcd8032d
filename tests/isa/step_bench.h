// SPDX-License-Identifier: MIT
// The simulated CPU as the judge of what is predicted of a step: one instruction at a time, with
// operands, registers and memory at random. The whole address space is RAM.
#pragma once

#include <random>
#include <vector>

#include "isa/next_pc.h"
#include "simulator/bus.h"
#include "simulator/cpu.h"
#include "simulator/mcu_kit.h"

namespace brevant::isa {

class StepBench {
 public:
  StepBench() {
    for (base::Address at = 0; at < 0x10000; ++at) {
      few_values_.Poke(at, Few());
      any_values_.Poke(at, Any());
    }
  }

  // In even rounds few values are about, so that counters reach 0 and compares are equal; in odd
  // ones every fourth address is near an end of the address space.
  void Prepare(const std::vector<std::uint8_t>& opcode, int round) {
    const bool few = round % 2 == 0;
    const auto byte = [&] { return few ? Few() : Any(); };
    std::vector<std::uint8_t> code = opcode;
    while (code.size() < 4) code.push_back(byte());
    instruction = InstructionAt(few ? 0x8000 : Word(), code);
    registers = {.sp = few ? 0x0180 : Word(),
                 .hx = few ? base::Word(Any(), Few()) : Word(),
                 .a = byte(),
                 .ccr = Any() | 0x60u};
    before = few ? few_values_ : any_values_;
    for (base::Address i = 0; i < 4; ++i) before.Poke(instruction.address + i, code[i]);
    before.SetIrqLow(false);  // as nobody holds the line
  }
  void Execute() {
    cpu = {};
    cpu.a = base::LowByte(registers.a);
    cpu.x = base::LowByte(registers.hx);
    cpu.h = base::HighByte(registers.hx);
    cpu.sp = static_cast<std::uint16_t>(registers.sp);
    cpu.pc = static_cast<std::uint16_t>(instruction.address);
    cpu.flags.Unpack(base::LowByte(registers.ccr));
    after = before;
    after.horizon = after.cycle + 1;
    const simulator::Exit exit = cpu.Execute(after, simulator::Cpu::kNoWatch);
    if (exit == simulator::Exit::SoftwareInterrupt) cpu.StackForInterrupt(after);
  }

  Instruction instruction;
  StepRegisters registers;
  simulator::Bus before{simulator::kAllRam};
  simulator::Bus after{simulator::kAllRam};
  simulator::Cpu cpu;

 private:
  std::uint8_t Any() { return base::LowByte(static_cast<std::uint32_t>(random_())); }
  std::uint8_t Few() { return Any() & 3; }
  base::Address Word() {
    return Few() == 0 ? base::Low16(Any() % 16 - 8u) : base::Word(Any(), Any());
  }

  std::mt19937 random_{3};
  simulator::Bus few_values_{simulator::kAllRam};
  simulator::Bus any_values_{simulator::kAllRam};
};

}  // namespace brevant::isa
