// SPDX-License-Identifier: MIT
#include "target/srecord_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brevant::target {
namespace {

using testing::ElementsAre;

TEST(SRecordFile, TakesTheDataRecordsOfAllAddressWidths) {
  const SRecords records = ParseSRecords(
      "S00600004844521B\r\n"
      "S10680009A20FEC1\r\n"
      "\n"
      "S20600F000AA550A\n"
      "S3060000FFFE807C\n"
      "S9030000FC");
  EXPECT_EQ(records.error, "");
  EXPECT_THAT(records.segments,
              ElementsAre(Segment{0x8000, {0x9A, 0x20, 0xFE}}, Segment{0xF000, {0xAA, 0x55}},
                          Segment{0xFFFE, {0x80}}));
}

TEST(SRecordFile, NamesTheLineThatIsWrong) {
  struct Row {
    const char* text;
    const char* error;
  };
  const Row rows[] = {
      {"", "no data records"},
      {"S9030000FC\n", "no data records"},
      {"S10680009A20FEC1\nhello\n", "line 2: no S-record"},
      {"S10680009A20FEC2\n", "line 1: wrong checksum"},
      {"S10780009A20FEC0\n", "line 1: wrong length"},
      {"S10680009A2XFEC1\n", "line 1: not hexadecimal"},
      {"S10680009A20FEC\n", "line 1: not hexadecimal"},
      {"S102807D\n", "line 1: too short"},
      {"S105FFFF1122C9\n", "line 1: address above FFFF"},
      {"S2060100001122C5\n", "line 1: address above FFFF"},
  };
  for (const Row& row : rows) EXPECT_EQ(ParseSRecords(row.text).error, row.error) << row.text;
}

}  // namespace
}  // namespace brevant::target
