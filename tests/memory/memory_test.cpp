// SPDX-License-Identifier: MIT
#include "memory/memory.h"

#include <gtest/gtest.h>

#include <array>

#include "link/connected_target.h"
#include "link/sent_commands.h"

namespace brevant::memory {
namespace {

using link::ByteList;

class MemoryTest : public testing::Test {
 protected:
  MemoryTest() {
    board.TakeSent();
    memory.ReadStackPointer();  // the frame base, $00FA
    Sent();
  }
  std::string Sent() { return link::DecodeCommands(board.TakeSent()); }
  ByteList Read(base::Address address, std::size_t count) {
    ByteList bytes(count);
    memory.ReadBytes(bytes, address);
    return bytes;
  }

  link::ConnectedTarget board;
  Memory memory{board.monitor};
};

TEST_F(MemoryTest, HandsOutAgainWhatItHasReadWhileTheTargetStaysStopped) {
  board.Load(0x0110, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(Read(0x0110, 4), (ByteList{1, 2, 3, 4}));
  EXPECT_EQ(Sent(), "R010F r r");
  EXPECT_EQ(Read(0x0110, 4), (ByteList{1, 2, 3, 4}));
  EXPECT_EQ(memory.ReadByte(0x0112), 3);
  EXPECT_EQ(memory.ReadWord(0x0112), 0x0304u);
  EXPECT_EQ(Sent(), "");
  // Only what is missing is asked for, in one stretch where that is shorter.
  EXPECT_EQ(Read(0x0110, 6), (ByteList{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(Sent(), "R0113 r");
  EXPECT_EQ(Read(0x010E, 10).at(2), 1);
  EXPECT_EQ(Sent(), "R010D r r r r r");
  EXPECT_EQ(Read(0x0100, 0x20).at(0x10), 1);
  EXPECT_EQ(Sent(), "R00FF r r r r r r r R0117 r r r r");
  ByteList asked(2);
  memory.AskBytes(asked, 0x0110);
  EXPECT_EQ(Sent(), "R010F r") << "who asks the target gets its answer";
}

TEST_F(MemoryTest, KeepsNeitherRegistersNorTheMonitorsStack) {
  for (const base::Address address : {0x0020u, 0xFE08u, 0x00F9u, 0x00DAu}) {
    memory.ReadByte(address);
    Sent();
    memory.ReadByte(address);
    EXPECT_NE(Sent(), "") << std::hex << address;
  }
  for (const base::Address address : {0x00FAu, 0x00D9u, 0x8000u}) {
    memory.ReadByte(address);
    Sent();
    memory.ReadByte(address);
    EXPECT_EQ(Sent(), "") << std::hex << address;
  }
}

TEST_F(MemoryTest, TakesRamAtItsWordAndAsksWhatElseHasBecomeOfAWrite) {
  memory.WriteBytes(0x0110, ByteList{7, 8});
  memory.WriteByte(0x8000, 0x12);
  Sent();
  EXPECT_EQ(Read(0x0110, 2), (ByteList{7, 8}));
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(memory.ReadByte(0x8000), 0xFF) << "flash is not written like RAM";
  EXPECT_EQ(memory.WriteAndLook(0x0110, ByteList{9}), std::nullopt);
  EXPECT_EQ(memory.WriteAndLook(0x8000, ByteList{0xFF, 0x12}),
            (Difference{.address = 0x8001, .expected = 0x12, .found = 0xFF}));
}

TEST_F(MemoryTest, DropsWhatARunMayHaveTouched) {
  const auto kept = [this](base::Address address) {
    Sent();
    memory.ReadByte(address);
    return Sent().empty();
  };
  board.Load(0x00FE, {0x01, 0x50});
  board.Load(0x0150, {0x83, 0x83, 0x83, 0x83});  // each run ends at the next SWI
  const auto run = [this](auto... touched) {
    Read(0x0110, 2);
    memory.ReadByte(0x8000);
    memory.RunTarget(touched...);
    EXPECT_EQ(board.link.PollBreak(), 0);
  };
  run(std::array{Range{0x0111, 1}});
  EXPECT_TRUE(kept(0x0110) && kept(0x8000));
  EXPECT_FALSE(kept(0x0111));
  run(memory.Ram());
  EXPECT_TRUE(kept(0x8000));
  EXPECT_FALSE(kept(0x0110));
  run();
  EXPECT_FALSE(kept(0x8000));
  memory.UseDevice(devices::BySettingsNumber(1));
  EXPECT_FALSE(kept(0x0110));
}

TEST_F(MemoryTest, TouchesRegistersThatChangeOnBeingReadOnlyWhenTheyAreAskedFor) {
  constexpr base::Address kSrsr = 0xFE01;
  ByteList bytes(4);
  memory.ReadSparing(bytes, 0xFE00);
  EXPECT_EQ(Sent(), "RFE00 RFE02 RFE03");
  EXPECT_EQ(memory.LastRead(kSrsr), std::nullopt);
  EXPECT_EQ(board.Peek(kSrsr), 0x80) << "power-on, still to be read by the program";
  // Nor do its neighbours touch it, be they read or written.
  Read(0xFE00, 1);
  Read(0xFE02, 3);
  memory.WriteBytes(0xFE02, ByteList{0});
  EXPECT_EQ(Sent(), "RFE00 RFE02 r WFE02=00");
  EXPECT_EQ(board.Peek(kSrsr), 0x80);
  EXPECT_EQ(Read(0xFE00, 4).at(1), 0x80);
  EXPECT_EQ(memory.LastRead(kSrsr), 0x80);
  board.Load(0x0150, {0x83});
  board.Load(0x00FE, {0x01, 0x50});
  memory.RunTarget();
  EXPECT_EQ(board.link.PollBreak(), 0);
  memory.ReadSparing(bytes, 0xFE00);
  EXPECT_EQ(bytes.at(1), 0x80) << "what was read last, however long ago";
  memory.DropAll();
  EXPECT_EQ(memory.LastRead(kSrsr), std::nullopt);
}

TEST_F(MemoryTest, CountsChangesForTheViews) {
  const long before = memory.generation();
  Read(0x0110, 2);
  EXPECT_EQ(memory.generation(), before) << "reading changes nothing";
  memory.WriteByte(0x0110, 1);
  EXPECT_GT(memory.WrittenAt(0x0100, 0x20), before);
  EXPECT_LE(memory.WrittenAt(0x0120, 0x20), before);
  const long written = memory.generation();
  memory.Drop({0x0200, 1});
  EXPECT_LE(memory.WrittenAt(0x0200, 1), written) << "the host has not changed it";
  EXPECT_GT(memory.ChangedAt(0x0200, 1), written);
  EXPECT_LE(memory.ChangedAt(0x0110, 1), written);
}

// One byte altered or added anywhere in a block: it is done again, or somebody is told.
TEST_F(MemoryTest, DoesADamagedBlockAgain) {
  using enum simulator::FaultKind;
  const ByteList wanted{9, 8, 7, 6};
  for (const simulator::FaultKind kind : {ExtraByte, FlipEcho, FlipHostByte, DropLocalEcho}) {
    for (std::uint64_t at = 0; at < 11; ++at) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << " at " << at);
      ASSERT_TRUE(board.Connect());
      board.Load(0x0110, {0, 0, 0, 0});
      const long before = memory.damage();
      board.target.SetFaultPlan({{.kind = kind, .at_host_byte = at, .bit = 1}});
      memory.WriteBytes(0x0110, wanted);
      if (memory.LinkError()) continue;
      EXPECT_GT(memory.damage(), before);
      ByteList found;
      for (base::Address i = 0; i < 4; ++i) found.push_back(board.Peek(0x0110 + i));
      EXPECT_TRUE(memory.TakeDamage() || found == wanted);
      board.target.SetFaultPlan({{.kind = kind, .at_host_byte = at % 5, .bit = 1}});
      memory.AskBytes(found, 0x0110);
      EXPECT_TRUE(memory.LinkError() || memory.TakeDamage() || found == wanted);
    }
  }
  ASSERT_TRUE(board.Connect());
  board.target.SetFaultPlan(
      {{.kind = FlipEcho, .at_host_byte = 3}, {.kind = FlipEcho, .at_host_byte = 14}});
  memory.WriteBytes(0x0110, wanted);
  EXPECT_EQ(memory.TakeDamage(), 0x0110u);
  EXPECT_EQ(memory.TakeDamage(), std::nullopt);
  Sent();
  EXPECT_EQ(Read(0x0110, 4), wanted);
  EXPECT_EQ(Sent(), "R010F r r") << "what was in doubt is not handed out again";
}

TEST_F(MemoryTest, KeepsNothingOfALostLink) {
  board.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 4}});
  Read(0x0110, 4);
  EXPECT_TRUE(memory.LinkError());
  EXPECT_EQ(memory.WriteAndLook(0x0110, ByteList{9}), std::nullopt);
  board.target.SetFaultPlan({});
  ASSERT_TRUE(board.Connect());
  board.Load(0x0110, {5, 6, 7, 8});
  EXPECT_EQ(Read(0x0110, 4), (ByteList{5, 6, 7, 8}));
}

}  // namespace
}  // namespace brevant::memory
