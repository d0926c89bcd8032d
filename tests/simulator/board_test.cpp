// SPDX-License-Identifier: MIT
#include "simulator/board.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host.h"

namespace brevant::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Points the IRQ vector at the monitor's own handler, which waits for the line to rise and then
// executes SWI, and connects; the vector is part of the security code.
void ConnectWithIrqVector(Host& host) {
  host.board().Load(0xFFFA, ByteList{0xFE, 0x27});
  host.Connect({0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x27, 0xFF, 0xFF});
}

constexpr Cycles Bits(int bits) {
  return static_cast<Cycles>(bits * kCyclesPerBit);
}

TEST(Board, TakesTheShortestTimesOfTheProtocol) {
  struct Row {
    const char* name;
    ByteList sent;
    std::size_t replies;
    int bits;
  };
  const Row rows[] = {
      {"READ", {0x4A, 0x01, 0x00}, 1, 91},
      {"WRITE", {0x49, 0x01, 0x00, 0x12}, 0, 92},
      {"IREAD", {0x1A}, 2, 55},
      {"IWRITE", {0x19, 0x34}, 0, 46},
      {"READSP", {0x0C}, 2, 55},
  };
  {
    Host host;
    host.PowerUp();
    const Cycles start = host.board().now();
    host.Exchange(ByteList(8, 0xFF));
    EXPECT_EQ(host.board().now() - start, Bits(8 * 23 - 1));
    EXPECT_THAT(host.Read(1), ElementsAre(0));
    EXPECT_EQ(host.board().now() - start, Bits(8 * 23 - 1 + 2 + 10));
  }
  constexpr int kTimes = 5;
  for (const Row& row : rows) {
    Host host;
    host.Connect();
    host.Exchange({0x4A, 0x01, 0x00}, 1);
    const Cycles start = host.board().now();
    for (int i = 0; i < kTimes; ++i) host.Exchange(row.sent, row.replies);
    // After an echo the host waits one more bit, which falls into the next command.
    const int last_wait = row.replies == 0 ? kNextByteBits : 0;
    EXPECT_EQ(host.board().now() - start, Bits(kTimes * row.bits - last_wait)) << row.name;
  }
}

TEST(Board, StartsTheProgramWhenTheCancelWindowHasPassed) {
  Host host;
  host.Connect();
  host.Plant(0x0100, {0x9D, 0x83});  // NOP, SWI
  const Cycles start = host.board().now();
  host.Exchange({0x28});
  EXPECT_EQ(host.board().now() - start, Bits(22));
  EXPECT_THAT(host.Read(1), ElementsAre(0));
  const Cycles program = host.board().now() - start - Bits(22 + 11 + 10);
  EXPECT_GE(program, 10u);  // NOP and SWI
  EXPECT_LE(program, 30u);
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xFA));
  EXPECT_EQ(base::Word(host.Peek(0xFE), host.Peek(0xFF)), 0x0102u);
}

TEST(Board, KeepsTheOrderOfTheLineForBytesThatComeEarly) {
  Host host;
  host.Connect();
  host.board().Load(0x0100, ByteList{0xC1, 0xC2});
  host.board().ClearHostLog();
  const Cycles start = host.board().now();
  const ByteList two_reads = {0x4A, 0x01, 0x00, 0x4A, 0x01, 0x01};
  host.target.Write(two_reads);
  EXPECT_THAT(host.Read(14), ElementsAre(0x4A, 0x4A, 0x01, 0x01, 0x00, 0x00, 0xC1,  //
                                         0x4A, 0x4A, 0x01, 0x01, 0x01, 0x01, 0xC2));
  EXPECT_EQ(host.board().now() - start, Bits(2 * 91));
  EXPECT_EQ(host.board().host_log(), two_reads);
}

TEST(Board, EchoesABreakAndForgetsTheCommandAtEveryPosition) {
  const ByteList write = {0x49, 0x01, 0x00, 0x77};
  for (std::size_t sent = 0; sent <= write.size(); ++sent) {
    Host host;
    host.Connect();
    host.board().Load(0x0100, ByteList{0x11});
    host.Exchange({write.begin(), write.begin() + static_cast<std::ptrdiff_t>(sent)});
    host.target.SetBreak(true);
    host.target.Sleep(milliseconds(5));
    const Cycles released = host.board().now();
    host.target.SetBreak(false);
    EXPECT_THAT(host.Read(2), ElementsAre(0, 0)) << sent;
    EXPECT_EQ(host.board().now() - released, Bits(2 + 10));
    EXPECT_THAT(host.Ask({0x4A, 0x01, 0x00}, 1), ElementsAre(0x11)) << sent;
  }
}

TEST(Board, IgnoresALowPulseShorterThanAByte) {
  Host host;
  host.Connect();
  host.target.SetBreak(true);
  host.board().RunUntil(host.board().now() + Bits(5));
  host.target.SetBreak(false);
  EXPECT_THAT(host.Read(1), IsEmpty());
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xFA));
}

TEST(Board, StopsARunningProgramByABreakThroughTheIrqVector) {
  Host host;
  ConnectWithIrqVector(host);
  host.Plant(0x0100, {0x9A, 0x20, 0xFE});  // CLI, BRA *
  host.Exchange({0x28});
  EXPECT_THAT(host.Read(1), IsEmpty());
  ASSERT_TRUE(host.board().running());
  host.target.SetBreak(true);
  host.target.Sleep(milliseconds(100));
  EXPECT_TRUE(host.board().running()) << "the handler waits while the line is low";
  host.target.SetBreak(false);
  EXPECT_THAT(host.Read(3), ElementsAre(0, 0)) << "its own copy, then the monitor's";
  EXPECT_FALSE(host.board().running());
  // The handler's frame lies below the program's.
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xF5));
  host.Ask({0x4A, 0x00, 0xFD}, 1);
  EXPECT_THAT(host.Ask({0x1A}, 2), ElementsAre(0x01, 0x01));
}

TEST(Board, ABreakHeardByTheMonitorDoesNotInterruptTheNextProgram) {
  Host host;
  ConnectWithIrqVector(host);
  host.target.SetBreak(true);
  host.target.Sleep(milliseconds(100));
  host.target.SetBreak(false);
  host.Read(2);
  host.Plant(0x0100, {0x9A, 0x9D, 0x9D, 0x83});  // CLI, NOP, NOP, SWI
  host.Exchange({0x28});
  EXPECT_THAT(host.Read(1), ElementsAre(0));
  EXPECT_EQ(base::Word(host.Peek(0xFE), host.Peek(0xFF)), 0x0104u);
}

TEST(Board, AsksForTheCodeAfterEachLossOfPower) {
  Host host;
  host.Connect();
  host.target.SetRts(false);
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xFA)) << "RTS was low before: no reset";
  host.target.SetRts(true);
  EXPECT_THAT(host.Exchange({0x0C}), ElementsAre(0x0C)) << "without power nobody echoes";
  host.target.SetRts(false);
  EXPECT_THAT(host.Exchange({0x0C}), ElementsAre(0x0C)) << "the reset takes longer than this byte";
  EXPECT_THAT(host.Ask(ByteList(8, 0xFF), 1), ElementsAre(0));
}

}  // namespace
}  // namespace brevant::simulator
