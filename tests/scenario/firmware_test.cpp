// SPDX-License-Identifier: MIT
#include "target/firmware.h"

#include <gtest/gtest.h>

namespace brevant::target {
namespace {

TEST(Firmware, IsTakenWholeOrRefusedWithTheLineThatIsWrong) {
  struct Row {
    const char* text;
    const char* error;
  };
  const Row rows[] = {
      {"S00600004844521B\r\nS10680009A20FEC1\r\n\nS20600F000AA550A\nS3060000FFFE807C\nS9030000FC",
       ""},
      {"", "no data records"},
      {"S9030000FC\n", "no data records"},
      {"S10680009A20FEC1\nhello\n", "line 2: no S-record"},
      {"S10680009A20FEC2\n", "line 1: wrong checksum"},
      {"S10680009A20FEC1\nS9030000FD\n", "line 2: wrong checksum"},
      {"S10780009A20FEC0\n", "line 1: fewer characters than the count says"},
      {"S10680009A2XFEC1\n", "line 1: a field is not hexadecimal"},
      {"S105FFFF1122C9\n", "line 1: address above FFFF"},
      {"S2060100001122C5\n", "line 1: address above FFFF"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(WhatIsWrong(images::ParseSRecords(row.text)), row.error) << row.text;
  }
}

}  // namespace
}  // namespace brevant::target
