// SPDX-License-Identifier: MIT
#include "views/clipboard_text.h"

#include <gtest/gtest.h>

namespace brevant::views {
namespace {

using ByteList = std::vector<std::uint8_t>;

TEST(ClipboardText, IsWordsAndReadsAsThem) {
  const ByteList bytes{0x12, 0x34, 0x00, 0xFF};
  EXPECT_EQ(ClipboardText(bytes), "1234\r\n00ff\r\n");
  struct Case {
    const char* text;
    ByteList bytes;
    std::optional<long> wrong_line;
  };
  for (const Case& c :
       {Case{"1234\r\n00ff\r\n", bytes, {}}, Case{"1234\r\n00FF", bytes, {}},
        Case{"12", {0x00, 0x12}, {}}, Case{"1234\r\n12x4\r\n00ff\r\n", {0x12, 0x34}, 2},
        Case{"1234\n00ff\n", {0x12, 0x34}, 2}, Case{"12\r\n3456\r\n", {}, 1},
        Case{"1234\r\n\r\n", {0x12, 0x34}, 2}, Case{"hello", {}, 1}}) {
    const ClipboardWords words = ParseClipboardText(c.text, LineEnds::TwoCharacters);
    EXPECT_EQ(words.bytes, c.bytes) << c.text;
    EXPECT_EQ(words.wrong_line, c.wrong_line) << c.text;
  }
}

TEST(ClipboardText, ThatAnEditorHasTouchedReadsLineByLine) {
  const ClipboardWords words = ParseClipboardText("1234\n\n 12 \r\n00ff", LineEnds::LineFeeds);
  EXPECT_EQ(words.bytes, (ByteList{0x12, 0x34, 0x00, 0x12, 0x00, 0xFF}));
  EXPECT_FALSE(words.wrong_line);
  EXPECT_EQ(ParseClipboardText("1234\n\n12345\n", LineEnds::LineFeeds).wrong_line, 3);
}

}  // namespace
}  // namespace brevant::views
