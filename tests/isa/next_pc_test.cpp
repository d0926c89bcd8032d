// SPDX-License-Identifier: MIT
#include "isa/next_pc.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "isa/legal_opcodes.h"
#include "isa/step_bench.h"

namespace brevant::isa {
namespace {

using base::Address;

Instruction Code(std::initializer_list<std::uint8_t> bytes) {
  return InstructionAt(0x100, std::vector(bytes));
}

// Memory of a few bytes, which notes what is read: "byte 80 ", "word fb ".
struct NotedMemory {
  std::map<Address, std::uint8_t> bytes;
  std::string reads;

  Address Predict(const StepRegisters& registers, const Instruction& code,
                  Calls calls = Calls::Follow) {
    reads.clear();
    return PredictNextPC(registers, code, calls, {byte, word});
  }
  BranchAnalysis Analyse(const StepRegisters& registers, const Instruction& code, Calls calls,
                         Address library) {
    const auto is_library = [library](Address target) { return target == library; };
    return AnalyseBranch(registers, code, calls, {byte, word}, is_library);
  }

  std::function<std::uint8_t(Address)> byte = [this](Address at) {
    return Read("byte ", at, bytes[at]);
  };
  std::function<std::uint32_t(Address)> word = [this](Address at) {
    return Read("word ", at, base::Word(bytes[at], bytes[at + 1]));
  };

 private:
  template <typename T>
  T Read(const char* what, Address at, T value) {
    char text[16];
    std::snprintf(text, sizeof text, "%s%x ", what, at);
    reads += text;
    return value;
  }
};

TEST(NextPc, AgreesWithTheSimulatedCpuOnEveryInstruction) {
  StepBench bench;
  const auto byte = [&](Address at) {
    EXPECT_LE(at, 0xFFFFu);
    return bench.before.Peek(at);
  };
  const auto word = [&](Address at) { return base::Word(byte(at), byte(base::Low16(at + 1))); };
  for (const auto& opcode : LegalOpcodes()) {
    for (int round = 0; round < 64; ++round) {
      SCOPED_TRACE(testing::PrintToString(opcode) + " round " + std::to_string(round));
      bench.Prepare(opcode, round);
      const Instruction& code = bench.instruction;
      const Address predicted = PredictNextPC(bench.registers, code, Calls::Follow, {byte, word});
      const BranchAnalysis analysis = AnalyseBranch(bench.registers, code, Calls::Follow,
                                                    {byte, word}, [](Address) { return false; });
      bench.Execute();
      ASSERT_EQ(predicted, bench.cpu.pc);
      // One of the two software breakpoints stands there as well.
      const bool planted = predicted == base::Low16(code.end()) ||
                           (analysis.kind != BranchKind::None && analysis.target == predicted);
      ASSERT_TRUE(planted);
    }
  }
}

TEST(NextPc, ReadsOnlyWhatTheInstructionReads) {
  NotedMemory memory;
  const StepRegisters registers{.sp = 0xFA, .hx = 0x1234, .a = 1, .ccr = 0x68};
  const std::pair<Instruction, const char*> rows[] = {
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

TEST(NextPc, StepsOverCallsButNotOverJumpsAndBranches) {
  NotedMemory memory;
  const StepRegisters registers{.hx = 0x1234};
  for (const auto& code : {Code({0xAD, 0x10}), Code({0xBD, 0x80}), Code({0xCD, 0x12, 0x34}),
                           Code({0xDD, 0x12, 0x34}), Code({0xED, 0x80}), Code({0xFD})}) {
    const Address behind = code.end();
    EXPECT_EQ(memory.Predict(registers, code, Calls::StepOver), behind);
    EXPECT_NE(memory.Predict(registers, code, Calls::Follow), behind);
    EXPECT_EQ(memory.Analyse(registers, code, Calls::StepOver, 0).kind, BranchKind::None);
    EXPECT_EQ(memory.Analyse(registers, code, Calls::Follow, 0).kind, BranchKind::Call);
  }
  EXPECT_EQ(memory.Predict(registers, Code({0xCC, 0x12, 0x34}), Calls::StepOver), 0x1234u);
  EXPECT_EQ(memory.Predict(registers, Code({0x20, 0x10}), Calls::StepOver), 0x112u);
}

TEST(NextPc, TellsTheKindOfTheSecondAddress) {
  NotedMemory memory;
  memory.bytes = {{0xFB, 0x12}, {0xFC, 0x34}, {0xFE, 0x56}, {0xFF, 0x78}};
  const StepRegisters registers{.sp = 0xFA, .hx = 0x2000, .ccr = 0x68};
  struct Row {
    Instruction code;
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
    const BranchAnalysis analysis = memory.Analyse(registers, row.code, Calls::Follow, 0x9999);
    EXPECT_EQ(analysis.kind, row.kind) << std::hex << int{row.code.bytes[0]};
    EXPECT_EQ(analysis.target, row.target) << std::hex << int{row.code.bytes[0]};
  }
}

TEST(NextPc, StepsOverLibraryRoutinesThatAreCalledThroughTheIndex) {
  NotedMemory memory;
  const StepRegisters registers{.hx = 0x2000};
  EXPECT_EQ(memory.Analyse(registers, Code({0xFD}), Calls::Follow, 0x2000).kind, BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xED, 0x10}), Calls::Follow, 0x2010).kind,
            BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xDD, 0x10, 0}), Calls::Follow, 0x3000).kind,
            BranchKind::None);
  EXPECT_EQ(memory.Analyse(registers, Code({0xCD, 0x20, 0}), Calls::Follow, 0x2000).kind,
            BranchKind::Call);
}

}  // namespace
}  // namespace brevant::isa
