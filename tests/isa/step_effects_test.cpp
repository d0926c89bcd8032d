// SPDX-License-Identifier: MIT
#include "isa/step_effects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "isa/legal_opcodes.h"
#include "isa/step_bench.h"

namespace brevant::isa {
namespace {

using base::Address;

TEST(StepEffects, AreTheBytesThatTheSimulatedCpuWrites) {
  StepBench bench;
  int writing = 0;
  int known = 0;
  for (const auto& opcode : LegalOpcodes()) {
    std::array<bool, 5> changed{};
    int count = 0;
    for (int round = 0; round < 64; ++round) {
      bench.Prepare(opcode, round);
      const StepEffects effects = PredictEffects(bench.registers, bench.instruction);
      bench.Execute();
      count = effects.count;
      if (const auto value = WrittenValue(bench.registers, bench.instruction)) {
        ++known;
        for (int i = 0; i < count; ++i) {
          const Address at = base::Low16(effects.first + static_cast<Address>(i));
          const bool taken = bench.after.Peek(at) != bench.before.Peek(at);
          const auto byte = static_cast<std::uint8_t>(*value >> (8 * (count - 1 - i)));
          EXPECT_TRUE(!taken || bench.after.Peek(at) == byte) << testing::PrintToString(opcode);
        }
      }
      simulator::Bus expected = bench.before;
      for (int i = 0; i < count; ++i) {
        const Address at = base::Low16(effects.first + static_cast<Address>(i));
        ASSERT_TRUE(effects.Writes(at));
        const std::uint8_t value = bench.after.Peek(at);
        changed.at(static_cast<std::size_t>(i)) |= expected.Peek(at) != value;
        expected.Poke(at, value);
      }
      // Apart from the predicted bytes nothing has changed but the time.
      expected.cycle = bench.after.cycle;
      expected.horizon = bench.after.horizon;
      ASSERT_TRUE(expected == bench.after) << testing::PrintToString(opcode) << " round " << round;
    }
    EXPECT_EQ(std::count(changed.begin(), changed.end(), true), count)
        << testing::PrintToString(opcode) << " writes less than predicted";
    writing += count > 0 ? 1 : 0;
  }
  EXPECT_EQ(writing, 89);
  EXPECT_EQ(known, 29 * 64) << "stores, clears, pushes, calls and MOV of a constant";
}

TEST(StepEffects, GoRoundTheEndsOfTheAddressSpace) {
  const auto swi = InstructionAt(0x100, std::array<std::uint8_t, 1>{0x83});
  const StepEffects effects = PredictEffects({.sp = 0x0002}, swi);
  for (Address at : {0xFFFE, 0xFFFF, 0x0000, 0x0002}) EXPECT_TRUE(effects.Writes(at)) << at;
  for (Address at : {0xFFFD, 0x0003, 0x8000}) EXPECT_FALSE(effects.Writes(at)) << at;
}

}  // namespace
}  // namespace brevant::isa
