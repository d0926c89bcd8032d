// SPDX-License-Identifier: MIT
#include "images/image_file.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace brevant::images {
namespace {

std::string BlocksOf(const Image& image) {
  std::string text;
  for (const Block& block : image.Blocks()) {
    text += "[" + std::to_string(block.address) + ":";
    for (const std::uint8_t byte : block.bytes) text += " " + std::to_string(byte);
    text += "]";
  }
  return text;
}

struct Case {
  std::string what;
  std::string text;
  std::string blocks;
  std::optional<base::Address> entry = {};
  long skipped = 0;
  long first_skipped_line = 0;
};

TEST(ImageFile, ReadsImagesWithTheirOddities) {
  const std::vector<Case> cases = {
      {"empty file", "", ""},
      {"header, data, entry", "S0030000FC\nS104001001EA\nS9038000FC\n", "[16: 1]", 0x8000},
      {"carriage returns alone", "S104001001EA\rS104001102EA\rS9038000FC", "[16: 1 2]", 0x8000},
      {"lower-case marks", "s104001001EA s9038000fc", "[16: 1]", 0x8000},
      {"S5 before S9 ends the image", "S104001001EA S5030001FB S9038000FC", "[16: 1]"},
      {"data after S9 count", "S9038000FC S104001001EA S903900000", "[16: 1]", 0x9000},
      {"later bytes win, neighbours merge", "S10500100102FF S104001203FF S104001109FF",
       "[16: 1 9 3]"},
      {"addresses beyond 16 bits wrap", "S206020010AAB0FF S3080001FFFE010203FF",
       "[0: 3][16: 170 176]"
       "[65534: 1 2]"},
      {"malformed records are passed over", "S104001001EA\nS1FF\nS10x\nS104001102EA", "[16: 1 2]",
       std::nullopt, 2, 2},
      {"no records at all", "Hello, world", ""},
      {"Intel HEX", ":02001000010200\n:0100130003AA\n:00000001FF\n:0100200009AA",
       "[16: 1 2][19: 3]"},
      {"odd and empty HEX records", ":0300100001020300 :0000200000", "[16: 1 2 3]"},
      {"HEX base addresses", ":020000020800F4 :0100100001AA :020000040000FA :0100200002AA",
       "[32: 2]"
       "[32784: 1]"},
      {"malformed HEX", ":01001000\n\n:01002000xxAA\n:0100300003AA", "[48: 3]", std::nullopt, 2, 1},
  };
  for (const Case& c : cases) {
    const ImageFile file = ParseImage(c.text);
    EXPECT_EQ(BlocksOf(file.ToImage()), c.blocks) << c.what;
    EXPECT_EQ(file.report.entry, c.entry) << c.what;
    EXPECT_EQ(file.report.skipped, c.skipped) << c.what;
    EXPECT_EQ(file.report.first_skipped_line, c.first_skipped_line) << c.what;
  }
}

TEST(ImageFile, CountsHexBytesBeyondTheAddressSpace) {
  // A base of $8000 from a segment record stays inside; a linear base of $00010000 does not.
  const auto inside = ParseImage(":020000020800F4 :02FFFF000102FD").report;
  EXPECT_EQ(inside.beyond_16_bits, 2);
  const auto linear = ParseImage(":020000040001F9 :02001000010200").report;
  EXPECT_EQ(linear.beyond_16_bits, 2);
  const auto crossing = ParseImage(":04FFFE0001020304FD").report;
  EXPECT_EQ(crossing.beyond_16_bits, 2);
  EXPECT_EQ(crossing.bytes, 4);
}

TEST(ImageFile, KeepsItsRecordsInFileOrder) {
  std::string seen;
  for (const auto& record :
       ParseImage("S00600004844521B\nS9038000FC\n\nS104001201E8 S1040010FFEA").records) {
    seen += std::to_string(record.line) +
            (record.kind == ImageRecord::Kind::Entry ? " entry " : " ") +
            std::to_string(record.address) + (record.checksum_right ? " right; " : " wrong; ");
  }
  EXPECT_EQ(seen, "2 entry 32768 wrong; 4 18 right; 4 16 wrong; ");
}

TEST(ImageFile, SaysWhatForeignWordEndedIt) {
  EXPECT_EQ(ParseImage("S104001001EA\n\nhello S104001001EA").report.no_record_line, 3);
  EXPECT_EQ(ParseImage(":0100100001EE\nS104001001EA").report.no_record_line, 2);
  EXPECT_EQ(ParseImage("S104001001EA\nS5030001FB\n").report.no_record_line, std::nullopt);
}

TEST(ImageFile, SurvivesJunk) {
  std::mt19937 random(1);
  const std::string alphabet = "S123:09AFsx \n\r" + std::string("\0\xFF", 2);
  for (int run = 0; run < 2000; ++run) {
    std::string text = run % 2 ? "S1" : ":";
    for (int i = 0; i < 600; ++i) text += alphabet[random() % alphabet.size()];
    const ImageFile file = ParseImage(text);
    EXPECT_GE(file.report.bytes, file.ToImage().size());
  }
}

TEST(ReadImageFile, NamesWhatIsWrongWithTheFile) {
  EXPECT_FALSE(ReadImageFile("/no/such/file.s19").report.ok());
  const auto directory = ReadImageFile(testing::TempDir());
  EXPECT_NE(directory.report.file_error, "");
  EXPECT_TRUE(directory.records.empty());
}

}  // namespace
}  // namespace brevant::images
