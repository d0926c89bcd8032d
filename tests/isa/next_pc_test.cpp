// SPDX-License-Identifier: MIT
#include "isa/next_pc.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "isa/instruction_table.h"
#include "simulator/bus.h"
#include "simulator/cpu.h"

namespace brevant::isa {
namespace {

using base::Address;

StepInstruction Code(std::initializer_list<std::uint8_t> bytes) {
  StepInstruction code;
  std::copy(bytes.begin(), bytes.end(), code.bytes.begin());
  code.length = static_cast<int>(bytes.size());
  return code;
}

// Memory of a few bytes, which notes what is read: "byte 80 ", "word fb ".
struct NotedMemory {
  std::map<Address, std::uint8_t> bytes;
  std::string reads;

  Address Predict(const StepRegisters& registers, const StepInstruction& code, bool over = false) {
    reads.clear();
    const auto byte = [this](Address at) { return Read("byte ", at, bytes[at]); };
    const auto word = [this](Address at) {
      return Read("word ", at, base::Word(bytes[at], bytes[at + 1]));
    };
    return PredictNextPC(registers, code, over, {byte, word});
  }
  BranchAnalysis Analyse(const StepRegisters& registers, const StepInstruction& code, bool over,
                         Address library) {
    reads.clear();
    const auto byte = [this](Address at) { return Read("byte ", at, bytes[at]); };
    const auto word = [this](Address at) {
      return Read("word ", at, base::Word(bytes[at], bytes[at + 1]));
    };
    const auto is_library = [library](Address target) { return target == library; };
    return AnalyseBranch(registers, code, over, {byte, word}, is_library);
  }

 private:
  template <typename T>
  T Read(const char* what, Address at, T value) {
    char text[16];
    std::snprintf(text, sizeof text, "%s%x ", what, at);
    reads += text;
    return value;
  }
};

// Every legal instruction, with operands, registers and memory at random, ends where the simulated
// CPU takes it. Addresses stay inside the RAM, where reading has no side effects.
TEST(NextPc, AgreesWithTheSimulatedCpuOnEveryInstruction) {
  constexpr Address kCode = 0x0150;
  std::mt19937 random(3);
  const auto pick = [&random](Address low, Address high) {
    return low + static_cast<Address>(random() % (high - low + 1));
  };
  simulator::Bus bus(simulator::Gp32());
  for (int pair = 0; pair < 256 + 256; ++pair) {
    const auto b0 = pair < 256 ? static_cast<std::uint8_t>(pair) : kPagePrefix;
    const auto page_opcode = static_cast<std::uint8_t>(pair & 0xFF);
    if (Decode(b0, page_opcode).illegal()) continue;
    for (int round = 0; round < 64; ++round) {
      for (Address at = 0x40; at < 0x240; ++at) {
        // Small values too, so that counters reach 1 and compares are equal now and then.
        bus.Poke(at, static_cast<std::uint8_t>(pick(0, round % 2 == 0 ? 3 : 255)));
      }
      StepInstruction code;
      code.bytes = {b0, static_cast<std::uint8_t>(pick(0x80, 0xFF)),
                    static_cast<std::uint8_t>(pick(0, 0xFF)),
                    static_cast<std::uint8_t>(pick(0, 0xFF))};
      if (b0 == kPagePrefix) code.bytes[1] = page_opcode;
      code.length = InstructionLength(b0, code.bytes[1]);
      for (Address i = 0; i < 4; ++i) bus.Poke(kCode + i, code.bytes[i]);

      const StepRegisters registers{.pc = kCode,
                                    .sp = pick(0x80, 0x13F),
                                    .hx = pick(0x80, 0x13F),
                                    .a = round % 2 == 0 ? pick(0, 3) : code.bytes[1],
                                    .ccr = pick(0, 255) | 0x60};
      const auto byte = [&bus](Address at) { return bus.Peek(at); };
      const auto word = [&bus](Address at) { return base::Word(bus.Peek(at), bus.Peek(at + 1)); };
      const Address predicted = PredictNextPC(registers, code, false, {byte, word});
      const BranchAnalysis analysis =
          AnalyseBranch(registers, code, false, {byte, word}, [](Address) { return false; });

      simulator::Cpu cpu;
      cpu.a = static_cast<std::uint8_t>(registers.a);
      cpu.x = base::LowByte(registers.hx);
      cpu.h = base::HighByte(registers.hx);
      cpu.sp = static_cast<std::uint16_t>(registers.sp);
      cpu.pc = kCode;
      cpu.flags.Unpack(static_cast<std::uint8_t>(registers.ccr));
      bus.SetIrqLow((registers.ccr & 0x08) == 0);  // as the mask stands in for the pin
      bus.horizon = bus.cycle + 1;
      cpu.Execute(bus, simulator::Cpu::kNoWatch);

      ASSERT_EQ(predicted, cpu.pc) << std::hex << pair << " round " << round;
      // One of the two software breakpoints stands there as well.
      const bool planted = cpu.pc == kCode + static_cast<Address>(code.length) ||
                           (analysis.kind != BranchKind::None && analysis.target == cpu.pc);
      ASSERT_TRUE(planted) << std::hex << pair << " round " << round;
    }
  }
}

TEST(NextPc, ReadsOnlyWhatTheInstructionReads) {
  NotedMemory memory;
  const StepRegisters registers{.pc = 0x100, .sp = 0xFA, .hx = 0x1234, .a = 1, .ccr = 0x68};
  const std::pair<StepInstruction, const char*> rows[] = {
      {Code({0x06, 0x80, 0x10}), "byte 80 "},        // BRSET
      {Code({0x3B, 0x80, 0x10}), "byte 80 "},        // DBNZ dir
      {Code({0x4B, 0x10}), ""},                      // DBNZA
      {Code({0x6B, 0x02, 0x10}), "byte 1236 "},      // DBNZ oprx8,X
      {Code({0x9E, 0x6B, 0x02, 0x10}), "byte fc "},  // DBNZ oprx8,SP
      {Code({0x71, 0x10}), "byte 1234 "},            // CBEQ ,X+
      {Code({0x41, 0x01, 0x10}), ""},                // CBEQA
      {Code({0x81}), "word fb "},                    // RTS
      {Code({0x80}), "word fe "},                    // RTI
      {Code({0xFD}), ""},                            // JSR ,X
      {Code({0xB6, 0x80}), ""},                      // LDA dir
      {Code({0x9E, 0xE6, 0x01}), ""},                // LDA oprx8,SP
  };
  for (const auto& [code, reads] : rows) {
    memory.Predict(registers, code);
    EXPECT_EQ(memory.reads, reads) << std::hex << int{code.bytes[0]};
  }
}

TEST(NextPc, WrapsAtTheEndOfTheAddressSpace) {
  NotedMemory memory;
  EXPECT_EQ(memory.Predict({.pc = 0xFFFF}, Code({0x9D})), 0x0000u);
  EXPECT_EQ(memory.Predict({.pc = 0xFFF0}, Code({0x20, 0x7F})), 0x0071u);
  EXPECT_EQ(memory.Predict({.pc = 0x0000}, Code({0x20, 0x80})), 0xFF82u);
  EXPECT_EQ(memory.Predict({.hx = 0xFFFF}, Code({0xEC, 0x02})), 0x0001u);
  memory.Predict({.sp = 0xFFFF}, Code({0x81}));
  EXPECT_EQ(memory.reads, "word 0 ");
}

TEST(NextPc, StepsOverCallsButNotOverJumpsAndBranches) {
  NotedMemory memory;
  const StepRegisters registers{.pc = 0x100, .hx = 0x1234};
  for (const auto& code : {Code({0xAD, 0x10}), Code({0xBD, 0x80}), Code({0xCD, 0x12, 0x34}),
                           Code({0xDD, 0x12, 0x34}), Code({0xED, 0x80}), Code({0xFD})}) {
    const Address behind = 0x100 + static_cast<Address>(code.length);
    EXPECT_EQ(memory.Predict(registers, code, true), behind);
    EXPECT_NE(memory.Predict(registers, code, false), behind);
    EXPECT_EQ(memory.Analyse(registers, code, true, 0).kind, BranchKind::None);
    EXPECT_EQ(memory.Analyse(registers, code, false, 0).kind, BranchKind::Call);
  }
  EXPECT_EQ(memory.Predict(registers, Code({0xCC, 0x12, 0x34}), true), 0x1234u);
  EXPECT_EQ(memory.Predict(registers, Code({0x20, 0x10}), true), 0x112u);
}

TEST(NextPc, TellsTheKindOfTheSecondAddress) {
  NotedMemory memory;
  memory.bytes = {{0xFB, 0x12}, {0xFC, 0x34}, {0xFE, 0x56}, {0xFF, 0x78}};
  const StepRegisters registers{.pc = 0x100, .sp = 0xFA, .hx = 0x2000, .ccr = 0x68};
  struct Row {
    StepInstruction code;
    BranchKind kind;
    Address target;
  };
  const Row rows[] = {
      {Code({0x20, 0x10}), BranchKind::Jump, 0x112},
      {Code({0x21, 0x10}), BranchKind::Conditional, 0x112},
      {Code({0x90, 0xFE}), BranchKind::Conditional, 0x100},
      {Code({0x07, 0x80, 0x10}), BranchKind::Conditional, 0x113},
      {Code({0x9E, 0x61, 0x01, 0x10}), BranchKind::Conditional, 0x114},
      {Code({0x4B, 0x10}), BranchKind::Conditional, 0x112},
      {Code({0xDC, 0x01, 0x02}), BranchKind::Jump, 0x2102},
      {Code({0xAD, 0x10}), BranchKind::Call, 0x112},
      {Code({0x81}), BranchKind::Return, 0x1234},
      {Code({0x80}), BranchKind::Return, 0x5678},
      {Code({0xA6, 0x10}), BranchKind::None, 0},
      {Code({0x9E}), BranchKind::None, 0},
  };
  for (const Row& row : rows) {
    const BranchAnalysis analysis = memory.Analyse(registers, row.code, false, 0x9999);
    EXPECT_EQ(analysis.kind, row.kind) << std::hex << int{row.code.bytes[0]};
    EXPECT_EQ(analysis.target, row.target) << std::hex << int{row.code.bytes[0]};
  }
}

TEST(NextPc, StepsOverLibraryRoutinesThatAreCalledThroughTheIndex) {
  NotedMemory memory;
  const StepRegisters registers{.pc = 0x100, .hx = 0x2000};
  EXPECT_EQ(memory.Analyse(registers, Code({0xFD}), false, 0x2000).kind, BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xED, 0x10}), false, 0x2010).kind, BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xDD, 0x10, 0}), false, 0x3000).kind, BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xCD, 0x20, 0}), false, 0x2000).kind, BranchKind::Call);
}

}  // namespace
}  // namespace brevant::isa
