// SPDX-License-Identifier: MIT
#include "simulator/monitor_rom.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host.h"

namespace brevant::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const ByteList kCode = {1, 2, 3, 4, 5, 6, 7, 8};

TEST(MonitorRom, AnswersTheCommandsOfOneSession) {
  Host host;
  ASSERT_THAT(host.Connect(), ElementsAre(0));
  host.board().Load(0x8000, ByteList{0x11, 0x22, 0x33, 0x44, 0x55});
  struct Row {
    ByteList sent;
    ByteList reply;
  };
  // In this order: each row may rest on the pointer that the one before has left.
  const Row rows[] = {
      {{0x4A, 0x80, 0x00}, {0x11}},    // READ
      {{0x1A}, {0x22, 0x33}},          // IREAD goes on behind it
      {{0x1A}, {0x44, 0x55}},          //
      {{0x49, 0x01, 0x00, 0xA5}, {}},  // WRITE
      {{0x19, 0x5A}, {}},              // IWRITE behind it
      {{0x19, 0x77}, {}},              //
      {{0x4A, 0x01, 0x00}, {0xA5}},    //
      {{0x1A}, {0x5A, 0x77}},          //
      {{0x49, 0x80, 0x00, 0x99}, {}},  // flash cannot be written like RAM
      {{0x4A, 0x80, 0x00}, {0x11}},    //
      {{0x4A, 0xFF, 0xFE}, {0xFF}},    //
      {{0x1A}, {0xFF, host.Peek(0)}},  // the pointer wraps at $FFFF
      {{0x0C}, {0x00, 0xFA}},          // READSP
      {{0x77}, {}},                    // unknown: echoed, ignored
      {{0x00}, {}},                    //
      {{0x4A, 0x80, 0x04}, {0x55}},    // and the next command is understood
      {{0x4A, 0x49, 0x1A}, {0xFF}},    // address bytes are not taken for commands
  };
  for (const Row& row : rows) {
    ByteList expected;
    for (const std::uint8_t byte : row.sent) expected.insert(expected.end(), {byte, byte});
    expected.insert(expected.end(), row.reply.begin(), row.reply.end());
    EXPECT_EQ(host.Exchange(row.sent, row.reply.size()), expected)
        << "command " << int{row.sent[0]};
    EXPECT_THAT(host.Read(1, milliseconds(5)), IsEmpty()) << "command " << int{row.sent[0]};
  }
}

TEST(MonitorRom, MakesTheFrameOfTheFirstEntry) {
  Host host;
  host.Connect();
  EXPECT_EQ(host.Ask({0x4A, 0x00, 0xF9}, 1).size(), 1u);
  EXPECT_THAT(host.Ask({0x1A}, 2), ElementsAre(0x00, 0x68));  // H, CCR
  EXPECT_THAT(host.Ask({0x1A}, 2), ElementsAre(0x00, 0x00));  // A, X
  EXPECT_THAT(host.Ask({0x1A}, 2), ElementsAre(0xFE, 0x20));  // PC
}

TEST(MonitorRom, OverwritesEightBytesBelowTheFrameWithEachCommand) {
  Host host;
  host.Connect();
  for (base::Address address = 0x80; address < 0xFA; ++address) host.mcu().Poke(address, 0x42);
  host.Exchange({0x77});
  for (base::Address address = 0x80; address < 0xF2; ++address) {
    EXPECT_EQ(host.Peek(address), 0x42) << address;
  }
  for (base::Address address = 0xF2; address < 0xFA; ++address) {
    EXPECT_NE(host.Peek(address), 0x42) << address;
  }
}

TEST(MonitorRom, ComparesTheSecurityCodeAfterPowerOn) {
  struct Row {
    const Device& device;
    ByteList code;
    bool passes;
  };
  const Row rows[] = {
      {Gp32(), kCode, true},
      {Gp32(), {1, 2, 3, 4, 5, 6, 7, 9}, false},
      {Gp32(), {0, 2, 3, 4, 5, 6, 7, 8}, false},
      {Ql(), kCode, true},
      {Ql(), ByteList(8, 0xFF), false},
  };
  for (const Row& row : rows) {
    Host host(row.device);
    host.board().Load(MonitorRom::kSecurityAddress, kCode);
    host.board().Load(0xF000, ByteList{0x12});
    EXPECT_THAT(host.Connect(row.code), ElementsAre(0)) << "the break character comes either way";
    EXPECT_EQ(host.Ask({0x4A, 0x00, 0x80}, 1).at(0) & 0x40, row.passes ? 0x40 : 0);
    EXPECT_THAT(host.Ask({0x4A, 0xF0, 0x00}, 1), ElementsAre(row.passes ? 0x12 : 0xAD));
  }
}

TEST(MonitorRom, TakesButDoesNotCompareTheCodeAfterAnotherReset) {
  Host host;
  host.board().Load(MonitorRom::kSecurityAddress, kCode);
  host.Connect(kCode);
  host.Plant(0x0100, {0x82});  // an illegal opcode
  host.Exchange({0x28});
  EXPECT_THAT(host.Read(1), IsEmpty()) << "no break character before the eight bytes";
  EXPECT_THAT(host.Ask(ByteList(8, 0x00), 1), ElementsAre(0));
  EXPECT_THAT(host.Ask({0x4A, 0x00, 0x80}, 1), ElementsAre(0x40)) << "what was passed stays passed";
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xFA));
}

}  // namespace
}  // namespace brevant::simulator
