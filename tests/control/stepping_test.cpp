// SPDX-License-Identifier: MIT
// Steps against the CPU itself: a copy of the MCU executes the same instruction without a debugger.
#include <map>
#include <random>
#include <string>

#include "control/bench.h"
#include "isa/legal_opcodes.h"

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
constexpr base::Address kX = 0x00B0, kStack = 0x0130, kCode = 0x01C0, kRamEnd = 0x0240;

class RandomInstruction : public SteppingTest {
 protected:
  std::uint32_t Random(std::uint32_t low, std::uint32_t high) {
    return std::uniform_int_distribution<std::uint32_t>(low, high)(generator_);
  }
  // Operand bytes by mode: d direct address, s small, c what A or X may hold, r branch distance, 1
  // a high byte of RAM, 0 a zero byte.
  ByteList Operands(isa::Entry entry, int prefix_length) {
    using isa::Mode;
    static const std::map<Mode, std::string> kKinds{
        {Mode::BitTestBranch, "dr"},
        {Mode::CompareBranchDirect, "dr"},
        {Mode::DecBranchDirect, "dr"},
        {Mode::CompareBranchImmediate, "cr"},
        {Mode::CompareBranchIndexed8PostInc, "sr"},
        {Mode::CompareBranchStack8, "sr"},
        {Mode::DecBranchIndexed8, "sr"},
        {Mode::DecBranchStack8, "sr"},
        {Mode::CompareBranchIndexedPostInc, "r"},
        {Mode::DecBranchRegister, "r"},
        {Mode::DecBranchIndexed, "r"},
        {Mode::Relative, "r"},
        {Mode::Extended, "1s"},
        {Mode::Indexed16, "0s"},
        {Mode::Stack16, "0s"},
        {Mode::Indexed8, "s"},
        {Mode::Stack8, "s"},
    };
    const auto found = kKinds.find(entry.mode());
    const std::string kinds = found != kKinds.end()
                                  ? found->second
                                  : std::string(entry.length() - 1 - prefix_length, 'd');
    const bool compares_x = isa::MnemonicName(entry.mnemonic()) == "CBEQX";
    ByteList bytes;
    for (const char kind : kinds) {
      const std::uint32_t byte = kind == 'd'   ? Random(0x40, 0x7F)
                                 : kind == 's' ? Random(0, 0x1F) + (kinds[0] == '1' ? 0x60 : 0)
                                 : kind == 'c' ? Random(0, 2) + (compares_x ? kX : 0)
                                 : kind == 'r' ? Random(4, 0x20) + 0xC0 * Random(0, 1)
                                               : kind - '0';
      bytes.push_back(base::LowByte(byte));
    }
    return bytes;
  }
  void Prepare(ByteList code) {
    ByteList ram(kRamEnd - 0x40);
    for (std::uint8_t& byte : ram) byte = base::LowByte(Random(0, 0xFF));
    // Few values, so that compares and counters meet both outcomes.
    for (base::Address a = 0x40; a < 0x100; ++a) ram[a - 0x40] = base::LowByte(Random(0, 2));
    // What RTS and RTI find.
    for (base::Address a : {1, 4}) ram[kStack + a - 0x40] = 0x01;
    for (base::Address a : {2, 5}) ram[kStack + a - 0x40] = base::LowByte(Random(0x80, 0xA0));
    Load(0x0040, ram);
    ASSERT_TRUE(frame.SetStackPointer(kStack));
    Load(kCode, code);
    SetPC(kCode);
    frame.WriteHX(kX + Random(0, 2));
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
                              breakpoints.HardwareBreakMode() ? "hardware" : "software"));
    simulator::Mcu reference = AfterOneInstruction(mcu());
    run.StepCommand(Calls::Follow);
    ASSERT_FALSE(activity.Busy());
    ExpectRegistersOf(reference);
    ExpectMemoryOf(reference, frame.ProgramSP());
  }
  std::mt19937 generator_{20260101};
};

TEST_F(RandomInstruction, EndsWhereTheCpuEndsInBothModes) {
  int stepped = 0;
  for (const ByteList& opcode : isa::LegalOpcodes()) {
    const isa::Entry entry = isa::Decode(opcode.front(), opcode.back());
    // No step ends behind these: SWI enters the monitor, WAIT and STOP wait for an interrupt.
    const auto name = isa::MnemonicName(entry.mnemonic());
    if (name == "SWI" || name == "WAIT" || name == "STOP") continue;
    for (const bool hardware : {true, false}) {
      UseHardware(hardware);
      for (int i = 0; i < 6; ++i) {
        ByteList code = opcode;
        const ByteList operands = Operands(entry, static_cast<int>(opcode.size()) - 1);
        code.insert(code.end(), operands.begin(), operands.end());
        ASSERT_EQ(code.size(), static_cast<std::size_t>(entry.length()));
        ASSERT_NO_FATAL_FAILURE(StepLikeTheCpu(code));
        ASSERT_FALSE(HasFailure());
        ++stepped;
      }
    }
  }
  EXPECT_EQ(stepped, (290 - 3) * 12);
}

TEST_F(SteppingTest, WalksThroughARealProgramInLockStepWithTheCpu) {
  LoadSRecords("recursion.s19");
  Connect();
  frame.LoadResetPC();
  for (int i = 0; i < 3000; ++i) {
    const simulator::Mcu reference = AfterOneInstruction(mcu());
    run.StepCommand(Calls::Follow);
    ASSERT_FALSE(activity.Busy()) << i;
    ExpectRegistersOf(reference);
    ASSERT_FALSE(HasFailure()) << "step " << i;
  }
}

}  // namespace
}  // namespace brevant::control
