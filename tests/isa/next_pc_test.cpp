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

Instruction Code(std::string_view hex) {
  return InstructionAt(0x100, simulator::Bytes(hex));
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
  const std::pair<const char*, const char*> rows[] = {
      {"06 80 10", "byte 80 "},     // BRSET
      {"3B 80 10", "byte 80 "},     // DBNZ dir
      {"4B 10", ""},                // DBNZA
      {"6B 02 10", "byte 1236 "},   // DBNZ oprx8,X
      {"9E 6B 02 10", "byte fc "},  // DBNZ oprx8,SP
      {"71 10", "byte 1234 "},      // CBEQ ,X+
      {"41 01 10", ""},             // CBEQA
      {"81", "word fb "},           // RTS
      {"80", "word fe "},           // RTI
      {"FD", ""},                   // JSR ,X
      {"B6 80", ""},                // LDA dir
  };
  for (const auto& [code, reads] : rows) {
    memory.Predict(registers, Code(code));
    EXPECT_EQ(memory.reads, reads) << code;
  }
}

TEST(NextPc, StepsOverCallsButNotOverJumpsAndBranches) {
  NotedMemory memory;
  const StepRegisters registers{.hx = 0x1234};
  for (const auto& code : {Code("AD 10"), Code("BD 80"), Code("CD 12 34"), Code("DD 12 34"),
                           Code("ED 80"), Code("FD")}) {
    const Address behind = code.end();
    EXPECT_EQ(memory.Predict(registers, code, Calls::StepOver), behind);
    EXPECT_NE(memory.Predict(registers, code, Calls::Follow), behind);
    EXPECT_EQ(memory.Analyse(registers, code, Calls::StepOver, 0).kind, BranchKind::None);
    EXPECT_EQ(memory.Analyse(registers, code, Calls::Follow, 0).kind, BranchKind::Call);
  }
  EXPECT_EQ(memory.Predict(registers, Code("CC 12 34"), Calls::StepOver), 0x1234u);
  EXPECT_EQ(memory.Predict(registers, Code("20 10"), Calls::StepOver), 0x112u);
}

TEST(NextPc, TellsTheKindOfTheSecondAddress) {
  NotedMemory memory;
  memory.bytes = {{0xFB, 0x12}, {0xFC, 0x34}, {0xFE, 0x56}, {0xFF, 0x78}};
  const StepRegisters registers{.sp = 0xFA, .hx = 0x2000, .ccr = 0x68};
  struct Row {
    const char* code;
    BranchKind kind;
    Address target;
    Address library = 0x9999;  // a routine of the library, which is stepped over through the index
  };
  using enum BranchKind;
  const Row rows[] = {{"20 10", Jump, 0x112},
                      {"21 10", Conditional, 0x112},
                      {"90 FE", Conditional, 0x100},
                      {"07 80 10", Conditional, 0x113},
                      {"4B 10", Conditional, 0x112},
                      {"9E 61 01 10", Conditional, 0x114},
                      {"DC 01 02", Jump, 0x2102},
                      {"AD 10", Call, 0x112},
                      {"81", Return, 0x1234},
                      {"80", Return, 0x5678},
                      {"A6 10", None, 0},
                      {"9E", None, 0},
                      {"FD", None, 0, 0x2000},
                      {"ED 10", None, 0, 0x2010},
                      {"DD 10 00", None, 0, 0x3000},
                      {"CD 20 00", Call, 0x2000, 0x2000}};
  for (const Row& row : rows) {
    const BranchAnalysis analysis =
        memory.Analyse(registers, Code(row.code), Calls::Follow, row.library);
    EXPECT_EQ(analysis.kind, row.kind) << row.code;
    EXPECT_TRUE(row.kind == None || analysis.target == row.target) << row.code;
  }
}

}  // namespace
}  // namespace brevant::isa
