// SPDX-License-Identifier: MIT
// Steps against the CPU itself: a copy of the MCU executes the same instruction without a debugger.
#include <algorithm>
#include <random>

#include "control/bench.h"
#include "isa/instruction_table.h"

namespace brevant::control {
namespace {

class SteppingTest : public Bench {
 protected:
  static simulator::Mcu AfterOneInstruction(simulator::Mcu mcu) {
    mcu.ResumeFromMonitor();
    mcu.Run(mcu.cycle() + 1);
    return mcu;
  }
  void ExpectRegistersOf(const simulator::Mcu& reference) const {
    EXPECT_EQ(frame.PC, reference.cpu().pc);
    EXPECT_EQ(frame.ProgramSP(), reference.cpu().sp);
    EXPECT_EQ(frame.HX, reference.cpu().hx());
    EXPECT_EQ(frame.A, reference.cpu().a);
    EXPECT_EQ(frame.CCR, reference.cpu().ccr());
  }
};

// Where a random instruction and all that it touches lie: zero page data, stack, more data, code.
constexpr base::Address kStack = 0x0130, kCode = 0x01C0, kRamEnd = 0x0240;

class RandomInstruction : public SteppingTest {
 protected:
  std::uint32_t Random(std::uint32_t low, std::uint32_t high) {
    return std::uniform_int_distribution<std::uint32_t>(low, high)(generator_);
  }
  ByteList Operands(isa::Entry entry, int prefix_length) {
    using isa::Mode;
    const auto direct = [&] { return base::LowByte(Random(0x40, 0x7F)); };
    const auto small = [&] { return base::LowByte(Random(0, 0x1F)); };
    const auto relative = [&] {
      return base::LowByte(Random(0, 1) != 0 ? Random(4, 0x20) : Random(0xD0, 0xF0));
    };
    switch (entry.mode()) {
      case Mode::BitTestBranch:
      case Mode::CompareBranchDirect:
      case Mode::DecBranchDirect:
        return {direct(), relative()};
      case Mode::CompareBranchImmediate:
      case Mode::CompareBranchIndexed8PostInc:
      case Mode::CompareBranchStack8:
      case Mode::DecBranchIndexed8:
      case Mode::DecBranchStack8:
        return {small(), relative()};
      case Mode::CompareBranchIndexedPostInc:
      case Mode::DecBranchRegister:
      case Mode::DecBranchIndexed:
      case Mode::Relative:
        return {relative()};
      case Mode::Extended:
        return {0x01, base::LowByte(Random(0x60, 0x9F))};
      case Mode::MoveDirectDirect:
      case Mode::MoveImmediateDirect:
        return {direct(), direct()};
      case Mode::Indexed16:
      case Mode::Stack16:
        return {0x00, small()};
      case Mode::Indexed8:
      case Mode::Stack8:
        return {small()};
      default: {
        ByteList bytes;
        for (int i = 1 + prefix_length; i < entry.length(); ++i) bytes.push_back(direct());
        return bytes;
      }
    }
  }
  void Prepare(ByteList code) {
    ByteList ram(kRamEnd - 0x40);
    for (std::uint8_t& byte : ram) byte = base::LowByte(Random(0, 0xFF));
    // Few values, so that compares and counters meet both outcomes.
    for (base::Address a = 0x40; a < 0x100; ++a) ram[a - 0x40] = base::LowByte(Random(0, 2));
    // What RTS and RTI find.
    for (base::Address a : {1, 4}) ram[kStack + a - 0x40] = 0x01;
    for (base::Address a : {2, 5}) ram[kStack + a - 0x40] = base::LowByte(Random(0x80, 0xA0));
    target.board().Load(0x0040, ram);
    ASSERT_TRUE(frame.SetStackPointer(kStack));
    target.board().Load(kCode, code);
    SetPC(kCode);
    frame.WriteHX(Random(0xB0, 0xDF));
    frame.WriteA(Random(0, 2));
    // The IRQ pin is high; a step takes it to agree with the I bit.
    const bool irq_branch = code[0] == 0x2E || code[0] == 0x2F;
    frame.WriteCCR(Random(0x60, 0xFF) | 0x60 | (irq_branch ? kCcrI : 0));
  }
  // What lies below the stack pointers is the monitor's.
  void ExpectMemoryOf(simulator::Mcu& reference, base::Address program_sp) {
    const auto is_monitors = [](base::Address a, base::Address sp) {
      return a <= sp && a + 0x20 > sp;
    };
    for (base::Address a = 0x40; a < kRamEnd; ++a) {
      if (is_monitors(a, kStack) || is_monitors(a, program_sp)) continue;
      ASSERT_EQ(Peek(a), reference.Peek(a)) << base::Format("at %04X", a);
    }
  }
  void StepLikeTheCpu(const ByteList& code) {
    Prepare(code);
    std::string text;
    for (const std::uint8_t byte : code) text += base::Format("%02X ", byte);
    SCOPED_TRACE(base::Format("%s CCR %02X HX %04X A %02X, %s", text, frame.CCR, frame.HX, frame.A,
                              state.HardwareBreakMode ? "hardware" : "software"));
    simulator::Mcu reference = AfterOneInstruction(mcu());
    ASSERT_TRUE(run.SingleStep());
    ExpectRegistersOf(reference);
    ExpectMemoryOf(reference, frame.ProgramSP());
  }
  std::mt19937 generator_{20260101};
};

TEST_F(RandomInstruction, EndsWhereTheCpuEndsInBothModes) {
  int stepped = 0;
  const auto step_row = [&](ByteList opcode, isa::Entry entry) {
    // No step ends behind these: SWI enters the monitor, WAIT and STOP wait for an interrupt.
    const auto name = isa::MnemonicName(entry.mnemonic());
    if (entry.illegal() || name == "SWI" || name == "WAIT" || name == "STOP") return;
    for (const bool hardware : {true, false}) {
      state.HardwareBreakMode = hardware;
      for (int i = 0; i < 6; ++i) {
        ByteList code = opcode;
        const ByteList operands = Operands(entry, static_cast<int>(opcode.size()) - 1);
        code.insert(code.end(), operands.begin(), operands.end());
        ASSERT_EQ(code.size(), static_cast<std::size_t>(entry.length()));
        StepLikeTheCpu(code);
        if (HasFailure()) return;
        ++stepped;
      }
    }
  };
  for (int b0 = 0; b0 < 256; ++b0) {
    step_row({static_cast<std::uint8_t>(b0)}, isa::kMainMap[b0]);
    const auto second = static_cast<std::uint8_t>(b0);
    if (isa::PageIndex(second)) {
      step_row({isa::kPagePrefix, second}, isa::Decode(isa::kPagePrefix, second));
    }
    if (HasFailure()) return;
  }
  EXPECT_EQ(stepped, (290 - 3) * 12);
}

TEST_F(SteppingTest, WalksThroughARealProgramInLockStepWithTheCpu) {
  LoadSRecords("recursion.s19");
  Connect();
  frame.LoadResetPC();
  for (int i = 0; i < 3000; ++i) {
    const simulator::Mcu reference = AfterOneInstruction(mcu());
    ASSERT_TRUE(run.SingleStep()) << i;
    ExpectRegistersOf(reference);
    ASSERT_FALSE(HasFailure()) << "step " << i;
  }
}

TEST_F(SteppingTest, SteppingOverEveryCallReachesTheEndOfMain) {
  LoadSRecords("recursion.s19");
  debug_info.SymbolTable.Assign({{.name = "_main", .address = 0x8129, .size = 0, .type = ""}});
  debug_info.DebugInfoLoaded = true;
  Connect();
  frame.LoadResetPC();
  run.RunToMain();
  TickUntilIdle();
  ASSERT_EQ(frame.PC, 0x8129u);
  constexpr base::Address kCallOfDone = 0x817A;
  int calls_into = 0;
  for (int i = 0; i < 100 && frame.PC != kCallOfDone; ++i) {
    state.StepOver = true;
    run.StepCommand(true);
    TickUntilIdle();
    if (frame.PC < 0x8129 || frame.PC > kCallOfDone) ++calls_into;
  }
  EXPECT_EQ(frame.PC, kCallOfDone);
  EXPECT_EQ(calls_into, 0);
  EXPECT_EQ(Peek(0x0092), 144);  // fib_12
}

}  // namespace
}  // namespace brevant::control
