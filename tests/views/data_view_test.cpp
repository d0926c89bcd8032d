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

TEST_F(DataViewTest, MarksWhatDiffersFromTheStopBefore) {
  const auto marked = [this] {
    std::string addresses;
    for (const DataLine& line : view.lines()) {
      for (base::Address i = 0; i < line.bytes.size(); ++i) {
        if (line.bytes[i].mark != DataMark::Changed) continue;
        addresses += base::Format("%04x ", line.address + i);
      }
    }
    return addresses;
  };
  // STA $0102; STA $0180; BRA to the first: the second byte is out of sight at first.
  Program(0x0190, {0xC7, 0x01, 0x02, 0xC7, 0x01, 0x80, 0x20, 0xF8});
  frame.WriteA(0x55);
  const auto step = [this] {
    run.StepCommand(control::Calls::Follow);
    Follow();
  };
  Follow();
  EXPECT_EQ(marked(), "");
  step();
  EXPECT_EQ(marked(), "0102 ");
  view.Scroll(ScrollCode::PageDown);
  Follow();
  view.Scroll(ScrollCode::PageUp);
  Follow();
  EXPECT_EQ(marked(), "0102 ") << "scrolling is no stop";
  step();
  EXPECT_EQ(marked(), "") << "changed by the step before";
  view.GoToDataAddress(0x0180);
  Follow();
  EXPECT_EQ(marked(), "") << "was not in sight at the stop before";
  memory.WriteByte(0x0181, 0x12);
  Follow();
  EXPECT_EQ(marked(), "0181 ") << "the user's own change, too";
  step();
  EXPECT_EQ(marked(), "");
}

TEST_F(DataViewTest, ReadsSomeRegistersOnlyOnRequest) {
  data_settings.unit = DataUnit::Bytes;
  view.GoToDataAddress(0xFE01);
  Follow(1);
  EXPECT_EQ(Line(0).substr(0, 16), "00fe00 00 -- 00 ");
  EXPECT_EQ(view.lines()[0].bytes[1].mark, DataMark::OnRequest);
  EXPECT_EQ(view.Explain(view.cursor(), debug_info),
            "fe01; SRSR not read yet: reading it clears the causes of the last reset, so only "
            "Refresh (Ctrl+F5) does");
  EXPECT_EQ(view.Explain({3, 0}, debug_info),
            "fe03 SBFCR (flag control): 00 0 '.' %00000000, word "
            "0000 0");
  view.Refresh();
  Follow(1);
  EXPECT_EQ(Line(0).substr(0, 16), "00fe00 00 80 00 ");
  EXPECT_EQ(Peek(0xFE01), 0) << "read";
  Follow(2);
  EXPECT_EQ(Line(0).substr(0, 16), "00fe00 00 80 00 ") << "not read again";
}

TEST_F(DataViewTest, ExplainsTheCellUnderTheMouse) {
  debug_info.SymbolTable.Assign({{"_speed", 0x010F, 2, {}}});
  Load(0x0110, ByteList{0xFE});
  Follow();
  const CellSize character{8, kLineHeight};
  EXPECT_EQ(view.HitTest(44, 0, character), std::nullopt);
  EXPECT_EQ(view.HitTest(45, 0, character), (DataCell{0, 0}));
  EXPECT_EQ(view.HitTest((6 + 5 * 8) * 8 - 1, 39, character), (DataCell{7, 3}));
  EXPECT_EQ(view.HitTest((6 + 5 * 8) * 8, 0, character), std::nullopt);
  EXPECT_EQ(view.HitTest(60, 40, character), std::nullopt) << "below the last line";
  EXPECT_EQ(view.Explain({0, 0}, debug_info), "0100: 20 32 ' ' %00100000, word 2021 8225");
  view.Refresh();
  Follow();
  EXPECT_EQ(view.Explain({0, 1}, debug_info),
            "0110 _speed+1: fe 254 -2 '.' %11111110, word fe31 65073 -463");
  EXPECT_EQ(view.Explain({0, 4}, debug_info), "");
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
  EXPECT_EQ(Line(0).substr(47), " !\"#$%&'()*+,-./") << "as they were last";
  EXPECT_EQ(BytesSent(), 0u);
}

}  // namespace
}  // namespace brevant::views
