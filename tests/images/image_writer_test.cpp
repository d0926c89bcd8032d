// SPDX-License-Identifier: MIT
#include "images/image_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "images/image_file.h"

namespace brevant::images {
namespace {

TEST(ImageWriter, WritesGoldenRecords) {
  const std::vector<std::uint8_t> bytes{0x02, 0x33, 0x7A};
  EXPECT_EQ(SRecordText(0x0030, bytes), "S0030000FC\nS106003002337A1A\nS5030001FB\nS9030000FC\n");
  EXPECT_EQ(IntelHexText(0x0030, bytes), ":0300300002337A1E\n:00000001FF\n");
  EXPECT_EQ(BinaryText(bytes), "\x02\x33\x7A");
  EXPECT_EQ(SRecordText(0, {}), "S0030000FC\nS5030000FC\nS9030000FC\n");
}

TEST(ImageWriter, WhatItWritesReadsBackTheSame) {
  std::vector<std::uint8_t> bytes(300);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  // The second range runs over the end of the address space.
  for (const base::Address first : {0x8001u, 0xFFF5u}) {
    Image expected;
    expected.Put(first, bytes);
    for (const std::string& text : {SRecordText(first, bytes), IntelHexText(first, bytes)}) {
      const ImageFile file = ParseImage(text);
      EXPECT_EQ(file.ToImage(), expected);
      EXPECT_EQ(file.report.entry, std::nullopt);
      EXPECT_TRUE(std::ranges::all_of(file.records, &ImageRecord::checksum_right));
    }
  }
}

TEST(ImageWriter, ChoosesTheFormatByExtension) {
  EXPECT_EQ(FormatOfPath("a.b/x.S19"), FileFormat::SRecord);
  EXPECT_EQ(FormatOfPath("x.sx"), FileFormat::SRecord);
  EXPECT_EQ(FormatOfPath("x.Hex"), FileFormat::IntelHex);
  EXPECT_EQ(FormatOfPath("x.bin"), FileFormat::Binary);
  EXPECT_EQ(FormatOfPath("x.elf"), std::nullopt);
  EXPECT_EQ(FormatOfPath("s19"), std::nullopt);
}

}  // namespace
}  // namespace brevant::images
