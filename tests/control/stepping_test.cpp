// SPDX-License-Identifier: MIT
// Steps against the CPU itself: a copy of the MCU executes the same instruction without a debugger.
#include "control/bench.h"
#include "images/image_file.h"

namespace brevant::control {
namespace {

class SteppingTest : public Bench {
 protected:
  static simulator::Mcu AfterOneInstruction(simulator::Mcu mcu) {
    mcu.ResumeFromMonitor();
    mcu.Run(mcu.cycle() + 1);
    return mcu;
  }
};

// Code as a compiler writes it. What each single instruction does is the matter of isa's next_pc.
TEST_F(SteppingTest, WalksThroughARealProgramInLockStepWithTheCpu) {
  const std::string path = BREVANT_TEST_DATA "/programs/recursion.s19";
  for (const images::Block& block : images::ReadImageFile(path).ToImage().Blocks()) {
    Load(block.address, block.bytes);
  }
  Connect();
  frame.LoadResetPC();
  for (int i = 0; i < 3000; ++i) {
    const simulator::Mcu reference = AfterOneInstruction(mcu());
    run.StepCommand(Calls::Follow);
    ASSERT_FALSE(activity.Busy()) << i;
    EXPECT_EQ(frame.PC, reference.cpu().pc);
    EXPECT_EQ(frame.ProgramSP(), reference.cpu().sp);
    EXPECT_EQ(frame.HX, reference.cpu().hx());
    EXPECT_EQ(frame.A, reference.cpu().a);
    EXPECT_EQ(frame.CCR, reference.cpu().ccr());
    ASSERT_FALSE(HasFailure()) << "step " << i;
  }
}

// Every kind of branch, in RAM, where the steps of software mode stand in the code.
TEST_F(SteppingTest, EndsWhereTheCpuEndsInBothModes) {
  const ByteList program{
      0x45, 0x00, 0xB0,        // 0150 LDHX #$00B0
      0xA6, 0x02,              // 0153 LDA #2
      0xF7,                    // 0155 STA ,X
      0x4B, 0xFD,              // 0156 DBNZA 0155
      0x41, 0x00, 0x01,        // 0158 CBEQA #0,015C
      0x83,                    // 015B SWI, jumped over
      0x71, 0x00,              // 015C CBEQ X+,015E
      0x3F, 0x80,              // 015E CLR $80
      0x00, 0x80, 0xFB,        // 0160 BRSET 0,$80,015E
      0x01, 0x80, 0x02,        // 0163 BRCLR 0,$80,0168
      0x83, 0x83,              // 0166
      0xAD, 0x06,              // 0168 BSR 0170
      0x9E, 0x6B, 0x02, 0x00,  // 016A DBNZ 2,SP,016E
      0x20, 0xE0,              // 016E BRA 0150
      0x87, 0x8A, 0x81,        // 0170 PSHA; PULH; RTS
  };
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Program(0x0150, program);
    for (int i = 0; i < 60; ++i) {
      const simulator::Mcu reference = AfterOneInstruction(mcu());
      run.StepCommand(Calls::Follow);
      ASSERT_EQ(frame.PC, reference.cpu().pc) << "step " << i;
      ASSERT_EQ(frame.HX, reference.cpu().hx());
      ASSERT_EQ(frame.A, reference.cpu().a);
      ASSERT_EQ(frame.CCR, reference.cpu().ccr());
      for (base::Address k = 0; k < program.size(); ++k) ASSERT_EQ(Peek(0x0150 + k), program[k]);
    }
    EXPECT_NE(events.stops.size(), 0u);
  }
}

}  // namespace
}  // namespace brevant::control
