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

struct Write {
  std::string_view mnemonic;
  Place place;
  int count;
};
// A mnemonic that is not listed writes registers at most.
constexpr Write kWrites[] = {
    {"STA", Place::Operand, 1}, {"STX", Place::Operand, 1},  {"STHX", Place::Operand, 2},
    {"MOV", Place::Operand, 1}, {"BSET", Place::Operand, 1}, {"BCLR", Place::Operand, 1},
    {"NEG", Place::Operand, 1}, {"COM", Place::Operand, 1},  {"LSR", Place::Operand, 1},
    {"ROR", Place::Operand, 1}, {"ASR", Place::Operand, 1},  {"LSL", Place::Operand, 1},
    {"ROL", Place::Operand, 1}, {"DEC", Place::Operand, 1},  {"INC", Place::Operand, 1},
    {"CLR", Place::Operand, 1}, {"DBNZ", Place::Operand, 1}, {"PSHA", Place::Stack, 1},
    {"PSHX", Place::Stack, 1},  {"PSHH", Place::Stack, 1},   {"BSR", Place::Stack, 2},
    {"JSR", Place::Stack, 2},   {"SWI", Place::Stack, 5},
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

}  // namespace

StepEffects PredictEffects(const StepRegisters& registers, const Instruction& instruction) {
  const Write* const write = kWriteOf[static_cast<std::size_t>(instruction.entry().mnemonic())];
  if (write == nullptr) return {};
  if (write->place == Place::Operand) {
    return {OperandAddress(instruction, registers), write->count};
  }
  return {base::Low16(registers.sp + 1 - static_cast<base::Address>(write->count)), write->count};
}

}  // namespace brevant::isa
