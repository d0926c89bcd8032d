// SPDX-License-Identifier: MIT
#include "memory/register_access.h"

#include <gtest/gtest.h>

#include "link/connected_target.h"
#include "link/sent_commands.h"

namespace brevant::memory {
namespace {

class RegisterAccessTest : public testing::Test {
 protected:
  RegisterAccessTest() { board.TakeSent(); }
  std::string Sent() { return link::DecodeCommands(board.TakeSent()); }
  const devices::Register& Named(const char* name) {
    return *devices::FindRegister(memory.device(), name);
  }
  RegisterWrite SetField(const char* name, const char* field, std::uint32_t value) {
    return WriteField(memory, Named(name), *devices::FindField(Named(name), field), value);
  }

  link::ConnectedTarget board;
  Memory memory{board.monitor};
};

TEST_F(RegisterAccessTest, ReadsNeighboursTogetherAndNoRegisterBesideThem) {
  const std::vector<const devices::Register*> rows{&Named("PCTL"), &Named("PBWC"),
                                                   &Named("PMSH"), &Named("ADSCR"),
                                                   &Named("ADR"),  &Named("ADCLK")};
  const auto values = ReadRegisters(memory, rows);
  EXPECT_EQ(Sent(), "R0037 R0038 R003C R003E") << "PCTL and ADR change on being read";
  EXPECT_EQ(values[0], std::nullopt);
  EXPECT_EQ(values[1], 0x40);
  EXPECT_EQ(values[3], 0x9F);
  EXPECT_EQ(values[4], std::nullopt);
  EXPECT_EQ(ReadRegister(memory, Named("SRSR")), 0x80);
  EXPECT_EQ(Sent(), "RFE01");
  EXPECT_EQ(ReadRegister(memory, Named("SRSR")), 0) << "reading has cleared it";
}

TEST_F(RegisterAccessTest, ChangesTheBitsOfAFieldAlone) {
  EXPECT_EQ(WriteRegister(memory, Named("T1SC"), 0x65).remark, "");
  const RegisterWrite written = SetField("T1SC", "PS", 2);
  EXPECT_EQ(written.refused + written.remark, "");
  EXPECT_EQ(ReadRegister(memory, Named("T1SC")), 0x62);
  EXPECT_EQ(SetField("T1SC", "PS", 8).refused, "T1SC.PS takes 0 to 7");
  EXPECT_EQ(ReadRegister(memory, Named("T1SC")), 0x62);
}

TEST_F(RegisterAccessTest, RefusesWhatWouldDoHarmAndSaysWhatWasNotTaken) {
  EXPECT_EQ(WriteRegister(memory, Named("T1CNTL"), 1).refused, "T1CNTL can only be read");
  board.TakeSent();
  EXPECT_EQ(SetField("PCTL", "PLLON", 0).refused,
            "its other bits would have to be read, and reading PCTL clears PLLF: set the whole "
            "register");
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(WriteRegister(memory, Named("PCTL"), 0x20).remark,
            "PCTL was written but not read back: reading it clears PLLF");
  EXPECT_EQ(Sent(), "W0036=20");
  // Bits that do not exist, and a register that takes one write.
  EXPECT_EQ(WriteRegister(memory, Named("SCBR"), 0xFF).remark, "SCBR reads back 37");
  const auto before = ReadRegister(memory, Named("CONFIG2"));
  ASSERT_TRUE(before);
  EXPECT_EQ(WriteRegister(memory, Named("CONFIG2"), 0x01).remark, "");
  EXPECT_EQ(SetField("CONFIG2", "SCIBDSRC", 0).remark,
            "CONFIG2.SCIBDSRC reads back 1: it can be written once after a reset");
  board.link.LinkError = true;
  EXPECT_EQ(WriteRegister(memory, Named("PTA"), 1).refused, "the link is lost");
}

}  // namespace
}  // namespace brevant::memory
