// SPDX-License-Identifier: MIT
#include "views/data_view.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

constexpr int kLineHeight = 10;

class DataViewTest : public ViewBench {
 protected:
  DataViewTest() {
    ByteList bytes(0x80);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i + 0x20);
    Load(0x0100, bytes);
    view.GoToDataAddress(0x0100);
    Show(4);
  }
  void Show(int lines) {
    view.Resize(lines * kLineHeight, kLineHeight);
    Follow();
    BytesSent();
  }
  std::string Line(std::size_t n) const { return view.lines().at(n).text; }

  DataSettings data_settings;
  DataView view{open, memory, activity, data_settings};
};

TEST_F(DataViewTest, ShowsBytesOrWordsWithTheirCharacters) {
  EXPECT_EQ(Line(0), "000100 2021 2223 2425 2627 2829 2a2b 2c2d 2e2f  !\"#$%&'()*+,-./");
  data_settings.unit = DataUnit::Bytes;
  data_settings.bytes_per_line = 8;
  Follow(1);
  EXPECT_EQ(Line(0), "000100 20 21 22 23 24 25 26 27  !\"#$%&'");
  EXPECT_EQ(Line(1), "000108 28 29 2a 2b 2c 2d 2e 2f ()*+,-./");
  EXPECT_EQ(view.state().topLine, 0x20) << "the same address at the top";
  data_settings.characters = false;
  Follow(2);
  EXPECT_EQ(Line(0), "000100 20 21 22 23 24 25 26 27 ");
}

TEST_F(DataViewTest, ReadsALineToScrollAndNothingToScrollBack) {
  view.MoveCursor(0, 3);
  view.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(BytesSent(), 3u + 8) << "one line";
  view.Scroll(ScrollCode::PageDown);
  Follow();
  EXPECT_GT(BytesSent(), 0u);
  view.Scroll(ScrollCode::PageUp);
  Follow();
  DataView second(open, memory, activity, data_settings, view.state().topLine);
  second.Resize(4 * kLineHeight, kLineHeight);
  Follow();
  EXPECT_EQ(second.lines().at(0).text, Line(0));
  EXPECT_EQ(BytesSent(), 0u);
  view.Refresh();
  Follow();
  EXPECT_GT(BytesSent(), 0u) << "the user wants to see the target";
}

TEST_F(DataViewTest, FollowsWhatTheHostAndTheProgramChange) {
  memory.WriteByte(0x0100, 0x7E);
  BytesSent();
  Follow();
  EXPECT_EQ(Line(0).substr(0, 12), "000100 7e21 ");
  EXPECT_EQ(BytesSent(), 0u) << "what was written is known";
  breakpoints.AddBreakpoint(0x0100);
  Follow();
  EXPECT_EQ(BytesSent(), 0u);
  // STA $0102 with interrupts masked: only that byte is read again.
  Program(0x0180, {0xC7, 0x01, 0x02});
  frame.WriteA(0x55);
  frame.WriteCCR(0x68);
  Follow();
  run.StepCommand(control::Calls::Follow);
  BytesSent();
  Follow();
  EXPECT_EQ(Line(0).substr(0, 17), "000100 7e21 5523 ");
  EXPECT_EQ(BytesSent(), 3u + 1);
}

TEST_F(DataViewTest, EndsWithItsRangeAndKeepsItsLinesWhenTheLinkIsLost) {
  view.GoToDataAddress(0xFFF5);
  EXPECT_EQ(view.CursorCellAddress(), 0xFFF4u);
  Follow();
  EXPECT_EQ(view.lines().size(), 1u);
  view.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(view.state().topLine, 0xFFF);
  const std::string shown = Line(0);
  link.LinkError = true;
  view.Scroll(ScrollCode::PageUp);
  Follow();
  EXPECT_EQ(Line(0), shown);
}

TEST_F(DataViewTest, ReadsNothingDuringFileIo) {
  activity.SetFileIo(true);
  Follow();
  EXPECT_EQ(Line(0).substr(0, 17), "000100 **** **** ");
  EXPECT_EQ(BytesSent(), 0u);
}

}  // namespace
}  // namespace brevant::views
