// SPDX-License-Identifier: MIT
#include "views/block_operation.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

class BlockOperationTest : public ViewBench {
 protected:
  void SetUp() override {
    // A background that tells each byte from its neighbours.
    for (base::Address a = kRam; a < kRamEnd; ++a) {
      Load(a, ByteList{Background(a)});
    }
  }
  static std::uint8_t Background(base::Address a) { return base::LowByte(a * 7 + 1); }
  control::TargetCrc crc{memory, link, frame};
  int Run(BlockOperation operation) {
    int slices = 1;
    while (operation.Step(memory, crc)) ++slices;
    EXPECT_EQ(operation.outcome(), BlockOutcome::Done);
    return slices;
  }
  static constexpr base::Address kRam = 0x0100;
  static constexpr base::Address kRamEnd = 0x0220;
};

TEST_F(BlockOperationTest, FillsWholeWordsAndNothingBeside) {
  struct Case {
    base::Address from, to, first, last;  // asked for; bytes written
    int slices;
  };
  for (const Case& c :
       {Case{0x0121, 0x0124, 0x0120, 0x0125, 1}, Case{0x0130, 0x0130, 0x0130, 0x0131, 1},
        Case{0x015F, 0x0140, 0x0140, 0x015F, 1},  // exchanged, exactly a slice
        Case{0x0180, 0x01A0, 0x0180, 0x01A1, 2}}) {
    EXPECT_EQ(Run(BlockOperation::Fill(c.from, c.to, 0x00FF)), c.slices);
    for (base::Address a = c.first - 4; a <= c.last + 4; ++a) {
      const bool inside = a >= c.first && a <= c.last;
      EXPECT_EQ(Peek(a), !inside ? Background(a) : a % 2 == 0 ? 0x00 : 0xFF) << a;
    }
  }
}

TEST_F(BlockOperationTest, MovesOverlappingBlocksAsTheyWere) {
  struct Case {
    base::Address from, to, destination;
  };
  for (const Case& c : {Case{0x0100, 0x014F, 0x0108}, Case{0x0108, 0x0157, 0x0100},
                        Case{0x0110, 0x012F, 0x0180}, Case{0x01C0, 0x01C1, 0x01C0}}) {
    SetUp();
    Run(BlockOperation::Move(c.from, c.to, c.destination));
    const base::Address size = c.to - c.from + 1;
    for (base::Address i = 0; i < size; ++i) {
      EXPECT_EQ(Peek(c.destination + i), Background(c.from + i)) << c.from << ' ' << i;
    }
    EXPECT_EQ(Peek(c.destination + size), Background(c.destination + size));
  }
}

TEST_F(BlockOperationTest, ABlockFromAddressZeroEndsThere) {
  // The first words are ports: what arrives is what they read as.
  Load(0x0040, ByteList{0xAA, 0x55});
  BlockOperation move = BlockOperation::Move(0x0000, 0x0041, 0x0100);
  EXPECT_EQ(move.words_total(), 0x21);
  EXPECT_TRUE(move.Step(memory, crc));
  EXPECT_TRUE(move.Step(memory, crc));
  EXPECT_FALSE(move.Step(memory, crc));
  EXPECT_EQ(Peek(0x0140), 0xAA);
  EXPECT_EQ(Peek(0x0142), Background(0x0142));
}

TEST_F(BlockOperationTest, StopsBetweenSlicesAndTellsHowFarItIs) {
  BlockOperation fill = BlockOperation::Fill(0x0100, 0x01FF, 0x1234);
  EXPECT_EQ(fill.Title(), "Fill memory");
  EXPECT_EQ(fill.ProgressText(), "\nFilling Memory at 000100");
  EXPECT_TRUE(fill.Step(memory, crc));
  EXPECT_EQ(fill.ProgressText(), "\nFilling Memory at 000120");
  EXPECT_EQ(fill.words_done(), 16);
  EXPECT_EQ(Peek(0x011F), 0x34);
  EXPECT_EQ(Peek(0x0120), Background(0x0120));

  BlockOperation move = BlockOperation::Move(0x0100, 0x0150, 0x0110);
  EXPECT_EQ(move.Title(), "Move memory");
  EXPECT_EQ(move.ProgressText(), "\nMoving Memory at 000150");
}

}  // namespace
}  // namespace brevant::views
