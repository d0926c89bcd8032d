// SPDX-License-Identifier: MIT
#include "isa/step_effects.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

enum class Place : std::uint8_t {
  Operand,
  Stack,  // down from the stack pointer
};

// Where what is written comes from.
enum class Source : std::uint8_t {
  Memory,  // what was there before; also several registers at once
  A,
  X,
  H,
  HX,
  Zero,
  Immediate,  // of MOV; its other modes copy memory
  Return,     // the address behind the instruction
};

struct Write {
  std::string_view mnemonic;
  Place place;
  int count;
  Source source = Source::Memory;
};
// A mnemonic that is not listed writes registers at most.
constexpr Write kWrites[] = {
    {"STA", Place::Operand, 1, Source::A},
    {"STX", Place::Operand, 1, Source::X},
    {"STHX", Place::Operand, 2, Source::HX},
    {"MOV", Place::Operand, 1, Source::Immediate},
    {"BSET", Place::Operand, 1},
    {"BCLR", Place::Operand, 1},
    {"NEG", Place::Operand, 1},
    {"COM", Place::Operand, 1},
    {"LSR", Place::Operand, 1},
    {"ROR", Place::Operand, 1},
    {"ASR", Place::Operand, 1},
    {"LSL", Place::Operand, 1},
    {"ROL", Place::Operand, 1},
    {"DEC", Place::Operand, 1},
    {"INC", Place::Operand, 1},
    {"CLR", Place::Operand, 1, Source::Zero},
    {"DBNZ", Place::Operand, 1},
    {"PSHA", Place::Stack, 1, Source::A},
    {"PSHX", Place::Stack, 1, Source::X},
    {"PSHH", Place::Stack, 1, Source::H},
    {"BSR", Place::Stack, 2, Source::Return},
    {"JSR", Place::Stack, 2, Source::Return},
    {"SWI", Place::Stack, 5},
};

// By mnemonic, nullptr where nothing is written.
constexpr auto kWriteOf = [] {
  std::array<const Write*, kMnemonicCount> writes{};
  for (const Write& write : kWrites) {
    // A name that is not a mnemonic stops the compilation here.
    writes[static_cast<std::size_t>(MnemonicIndex(write.mnemonic).value())] = &write;
  }
  return writes;
}();

const Write* WriteOf(const Instruction& instruction) {
  return kWriteOf[static_cast<std::size_t>(instruction.entry().mnemonic())];
}

}  // namespace

StepEffects PredictEffects(const StepRegisters& registers, const Instruction& instruction) {
  const Write* const write = WriteOf(instruction);
  if (write == nullptr) return {};
  if (write->place == Place::Operand) {
    return {OperandAddress(instruction, registers), write->count};
  }
  return {base::Low16(registers.sp + 1 - static_cast<base::Address>(write->count)), write->count};
}

std::optional<std::uint32_t> WrittenValue(const StepRegisters& registers,
                                          const Instruction& instruction) {
  const Write* const write = WriteOf(instruction);
  switch (write == nullptr ? Source::Memory : write->source) {
    case Source::A:
      return registers.a & 0xFFu;
    case Source::X:
      return base::LowByte(registers.hx);
    case Source::H:
      return base::HighByte(registers.hx);
    case Source::HX:
      return base::Low16(registers.hx);
    case Source::Zero:
      return 0;
    case Source::Immediate:
      if (instruction.entry().mode() != Mode::MoveImmediateDirect) return std::nullopt;
      return instruction.bytes[1];
    case Source::Return:
      return base::Low16(instruction.end());
    case Source::Memory:
      break;
  }
  return std::nullopt;
}

}  // namespace brevant::isa
