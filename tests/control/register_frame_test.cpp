// SPDX-License-Identifier: MIT
#include "control/register_frame.h"

#include "control/bench.h"

namespace brevant::control {
namespace {

class RegisterFrameTest : public Bench {};

TEST_F(RegisterFrameTest, ReadsTheFrameWithFiveCommands) {
  const ByteList stacked{0x12, 0x6B, 0xA5, 0x34, 0x01, 0x23};
  Load(0x00FA, stacked);
  target.board().ClearHostLog();
  ASSERT_TRUE(frame.ReadRegisters());
  EXPECT_EQ(Commands(), "SP R00F9 r r r");
  EXPECT_EQ(frame.SP, 0x00FAu);
  EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
  EXPECT_EQ(frame.HX, 0x1234u);
  EXPECT_EQ(frame.A, 0xA5u);
  EXPECT_EQ(frame.CCR, 0x6Bu);
  EXPECT_EQ(frame.PC, 0x0123u);
  EXPECT_EQ(frame.ReadFramePC(), 0x0123u);
}

TEST_F(RegisterFrameTest, MovesTheStackAndKeepsEveryOtherRegisterAndTheBorrowedRam) {
  const ByteList borrowed{1, 2, 3, 4, 5, 6};
  Load(0x0080, borrowed);
  SetPC(0x0150);
  frame.WriteHX(0xBEEF);
  frame.WriteA(0x5A);
  frame.WriteCCR(0x6D);
  target.board().ClearHostLog();
  ASSERT_TRUE(frame.SetStackPointer(0x023F));
  EXPECT_EQ(Commands(),
            "R007F r r r R007F r r r "
            "R007F w45 w02 w40 w94 w83 "
            "W00FE=00 W00FF=80 RUN "
            "R007F w01 w02 w03 w04 w05 w06 "
            "R00FD w01 w50 SP "
            "R0239 wBE w6D w5A wEF w01 w50");
  EXPECT_EQ(frame.SP, 0x023Au);
  ASSERT_TRUE(frame.ReadRegisters());
  EXPECT_EQ(frame.ProgramSP(), 0x023Fu);
  EXPECT_EQ(frame.PC, 0x0150u);
  EXPECT_EQ(frame.HX, 0xBEEFu);
  EXPECT_EQ(frame.A, 0x5Au);
  EXPECT_EQ(frame.CCR, 0x6Du);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(Peek(0x0080 + i), borrowed[i]);
}

TEST_F(RegisterFrameTest, SetsTheStackEvenWhenItsBreakByteIsLost) {
  Load(0x0080, ByteList{1, 2, 3, 4, 5, 6});
  // Host bytes up to RUN: 3 + 3 reads, 3 + 5 * 2 for the program, 2 * 4 for the PC, then RUN.
  target.SetFaultPlan({{.kind = simulator::FaultKind::LoseReply, .at_host_byte = 27}});
  EXPECT_TRUE(frame.SetStackPointer(0x023F));
  EXPECT_EQ(frame.SP, 0x023Au);
  EXPECT_EQ(Peek(0x0085), 6);
}

TEST_F(RegisterFrameTest, SaysSoWhenTheStackCannotBeSetAndKeepsTheLinkForAReset) {
  // The frame lies elsewhere, so the program counter is not pointed at the borrowed RAM.
  Program(0x0150, {0x20, 0xFE});
  frame.SP = 0x0200;
  EXPECT_FALSE(frame.SetStackPointer(0x023F));
  EXPECT_FALSE(link.LinkError);
  EXPECT_TRUE(target.board().running());
}

TEST_F(RegisterFrameTest, TakesThePcFromTheResetVectorUnlessItIsErased) {
  SetPC(0x0150);
  frame.LoadResetPC();
  EXPECT_EQ(frame.PC, 0x0150u);
  Load(0xFFFE, ByteList{0x80, 0x02});
  frame.LoadResetPC();
  EXPECT_EQ(frame.PC, 0x8002u);
  EXPECT_EQ(frame.ReadFramePC(), 0x8002u);
}

TEST_F(RegisterFrameTest, StoresEditedCellsInTheFrame) {
  frame.WriteCCR(0x68);
  EXPECT_TRUE(frame.Edit(Register::CcrLow, "0101"));
  EXPECT_EQ(Peek(0x00FB), 0x65);
  EXPECT_TRUE(frame.Edit(Register::CcrHigh, "1110"));
  EXPECT_EQ(Peek(0x00FB), 0xE5);
  EXPECT_TRUE(frame.Edit(Register::HX, "1234"));
  EXPECT_EQ(Peek(0x00FA), 0x12);
  EXPECT_EQ(Peek(0x00FD), 0x34);
  EXPECT_TRUE(frame.Edit(Register::A, ""));
  EXPECT_EQ(Peek(0x00FC), 0x00);
  EXPECT_TRUE(frame.Edit(Register::PC, "7"));
  EXPECT_EQ(frame.ReadFramePC(), 7u);
  EXPECT_TRUE(frame.Edit(Register::SP, "1ff"));
  EXPECT_EQ(frame.ProgramSP(), 0x01FFu);

  target.board().ClearHostLog();
  EXPECT_FALSE(frame.Edit(Register::HX, "12 34"));
  EXPECT_FALSE(frame.Edit(Register::CcrLow, "0121"));
  EXPECT_EQ(Commands(), "");
  EXPECT_EQ(frame.HX, 0x1234u);
}

}  // namespace
}  // namespace brevant::control
