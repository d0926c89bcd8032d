// SPDX-License-Identifier: MIT
#include "views/program_view.h"

#include "views/instruction_editor.h"
#include "views/program_views.h"
#include "views/view_bench.h"

namespace brevant::views {
namespace {

using ::testing::ElementsAre;
using Addresses = std::vector<base::Address>;

constexpr int kCodeLineHeight = 10;
constexpr CellSize kCell{8, kCodeLineHeight};
// What a read costs in host bytes: the address, then two bytes with each command.
constexpr std::size_t kForwardCost = 3 + 2;
constexpr std::size_t kBackwardCost = 3 + 12;

// Loops, calls and tables as a compiler leaves them, with no two instructions alike in a row.
const ByteList kCode{0x45, 0x02, 0x3F, 0x94, 0xA6, 0x03, 0xB7, 0x1E, 0xA6, 0x01, 0xB7, 0x1F,
                     0x8C, 0x9A, 0xCD, 0x01, 0x13, 0x20, 0xFB, 0x5F, 0xBF, 0x40, 0x3C, 0x40,
                     0xBE, 0x40, 0xA6, 0x02, 0xB1, 0x40, 0x26, 0xF6, 0x81, 0x9E, 0xE6, 0x03,
                     0xAF, 0x01, 0xF7, 0x87, 0x6E, 0x55, 0x40, 0x4F, 0x88, 0xC6, 0x01, 0x00,
                     0xD7, 0x01, 0x80, 0x03, 0x40, 0xF0, 0x8B, 0x86, 0x81};
const Addresses kStarts{0x0100, 0x0103, 0x0104, 0x0106, 0x0108, 0x010A, 0x010C, 0x010D,
                        0x010E, 0x0111, 0x0113, 0x0114, 0x0116, 0x0118, 0x011A, 0x011C,
                        0x011E, 0x0120, 0x0121, 0x0124, 0x0126, 0x0127, 0x0128, 0x012B,
                        0x012C, 0x012D, 0x0130, 0x0133, 0x0136, 0x0137, 0x0138};

class ProgramViewTest : public ViewBench {
 protected:
  ProgramViewTest() { Load(0x0100, kCode); }

  ProgramView& Open(base::Address first, int lines) {
    opened.push_back(views.Open(first));
    opened.back()->Resize(lines * kCodeLineHeight, kCodeLineHeight);
    Follow();
    BytesSent();
    return *opened.back();
  }
  static Addresses Of(const ProgramView& view) {
    Addresses addresses;
    for (const ProgramLine& line : view.Lines()) addresses.push_back(line.address);
    return addresses;
  }
  static Addresses Starts(std::size_t first, std::size_t count) {
    return {kStarts.begin() + static_cast<long>(first),
            kStarts.begin() + static_cast<long>(first + count)};
  }
  std::size_t CostOf(ProgramView& view, ScrollCode code, int position = 0) {
    BytesSent();
    view.Scroll(code, position);
    Follow();
    return BytesSent();
  }

  SourceFiles files{debug_info, [this] {
                      return symbols::SourceFolders{folder.path().string(), {}, {}};
                    }};
  const ProgramSources sources{memory,   debug_info, frame, breakpoints,
                               activity, settings,   user,  &files};
  ProgramViews views{open, sources};
  std::vector<std::unique_ptr<ProgramView>> opened;

  void Follow() { ViewBench::Follow(views.generation()); }
};

TEST_F(ProgramViewTest, NamesTheRegistersInOperandsUnlessTheSettingsSayNo) {
  Load(0x0160, ByteList{0xB6, 0x01, 0x16, 0x04, 0xA6, 0x01, 0xC6, 0xFE, 0x01, 0xB6, 0x03});
  debug_info.SymbolTable.Assign({{"SWITCHES", 0x0001, 0, ""}});
  ProgramView& view = Open(0x0160, 5);
  const auto operands = [&] {
    std::vector<std::string> texts;
    for (const ProgramLine& line : view.Lines())
      texts.push_back(line.text.substr(line.text.rfind('\t') + 1));
    return texts;
  };
  EXPECT_THAT(operands(), ElementsAre("SWITCHES", "3,DDRA", "#SWITCHES", "SRSR", "PTD"));
  EXPECT_EQ(Peek(0xFE01), 0x80) << "its name is not read off the register";
  settings.Store(base::keys::kRegisterNames, 0L);
  view.RequestRedraw();
  Follow();
  EXPECT_THAT(operands(), ElementsAre("SWITCHES", "3,4", "#SWITCHES", "fe01", "3"));
  // What is shown with them can be typed with them, whatever the setting is.
  const symbols::OperandNames names(debug_info.SymbolTable, memory, settings);
  InstructionEditor editor(*view.CursorLine(), memory, names, user);
  EXPECT_TRUE(editor.Accept("bset 5,ddra"));
  EXPECT_EQ(Peek(0x0160), 0x1A);
  EXPECT_EQ(Peek(0x0161), 0x04);
}

TEST_F(ProgramViewTest, ShowsAnInstructionALine) {
  ProgramView& view = Open(0x0100, 3);
  const std::vector<ProgramLine> lines = view.Lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].text, "000100 45 02 3f \tLDHX\t#23f");
  EXPECT_EQ(ExpandTabs(lines[0].text), "000100 45 02 3f       LDHX    #23f");
  EXPECT_EQ(ExpandTabs("0123456789012345678901234567890\tX\tY"),
            "0123456789012345678901234567890 X Y");
  EXPECT_EQ(Of(view), Starts(0, 3));
}

TEST_F(ProgramViewTest, ScrollsByALineForTheCostOfALine) {
  ProgramView& view = Open(0x010E, 5);
  EXPECT_LE(CostOf(view, ScrollCode::LineDown), kForwardCost);
  EXPECT_EQ(Of(view), Starts(9, 5));
  EXPECT_LE(CostOf(view, ScrollCode::LineUp), kBackwardCost);
  EXPECT_EQ(Of(view), Starts(8, 5));
  EXPECT_LE(CostOf(view, ScrollCode::PageDown), 5 * kForwardCost);
  EXPECT_EQ(Of(view), Starts(13, 5));
  CostOf(view, ScrollCode::PageUp);
  EXPECT_EQ(Of(view), Starts(8, 5));
  // What has been seen while the target is stopped costs nothing to see again.
  view.GoToAddress(0x0124);
  CostOf(view, ScrollCode::PageDown);
  EXPECT_EQ(CostOf(view, ScrollCode::PageUp), 0u);
  EXPECT_EQ(CostOf(view, ScrollCode::PageDown), 0u);
  const auto second = views.Open(0x0124);
  second->Resize(5 * kCodeLineHeight, kCodeLineHeight);
  Follow();
  EXPECT_EQ(BytesSent(), 0u) << "a second window on the same place";
  view.Refresh();
  Follow();
  EXPECT_GT(BytesSent(), 0u) << "the user wants to see the target";
  view.GoToAddress(0x010E);
  Follow();
  // Nothing is read for what is on the screen already.
  EXPECT_EQ(CostOf(view, ScrollCode::RepaintOnly), 0u);
  view.Resize(3 * kCodeLineHeight + 4, kCodeLineHeight);
  Follow();
  EXPECT_EQ(Of(view), Starts(8, 3));
  EXPECT_EQ(BytesSent(), 0u);
  view.Resize(3 * kCodeLineHeight + 5, kCodeLineHeight);
  Follow();
  EXPECT_EQ(Of(view), Starts(8, 4));
  EXPECT_LE(BytesSent(), kForwardCost);
}

TEST_F(ProgramViewTest, ScrollsBackwardsFromInstructionToInstruction) {
  ProgramView& view = Open(kStarts.back(), 1);
  // The first instructions have what lies before the program above them; from there on no byte of
  // an operand is taken for an opcode.
  for (std::size_t i = kStarts.size() - 1; i > 8; --i) {
    view.Scroll(ScrollCode::LineUp);
    Follow();
    ASSERT_EQ(view.state().top, kStarts[i - 1]) << std::hex << kStarts[i];
    base::Address next = kStarts[i - 1];
    EXPECT_EQ(view.Lines()[0].text, ReadCodeLine(memory, debug_info.SymbolTable, next).text);
  }
}

TEST_F(ProgramViewTest, ReadsOverlappingBytesOnce) {
  constexpr int kLines = 60;
  views.SetRange(ProgramScrollRange("FFFF"));
  Load(0x8000, ByteList(0x200, 0x9D));  // NOPs
  ProgramView& view = Open(0x8100, kLines);
  // An address and a command for every two bytes, of which there are 1 a line, 3 behind the last
  // one, and up to a run of 32 in vain.
  EXPECT_LE(CostOf(view, ScrollCode::PageDown), 3 * 3 + (kLines + 3 + 32) / 2u);
  EXPECT_EQ(view.state().top, 0x8100u + kLines);
  EXPECT_LE(CostOf(view, ScrollCode::PageUp), 3 * 3 + (kLines + 24 + 32) / 2u);
  EXPECT_EQ(view.state().top, 0x8100u);
  EXPECT_EQ(view.Lines().back().address, 0x8100u + kLines - 1);
  // Up to the end of the address space and no further.
  Load(0xFFF0, ByteList(0x10, 0x9D));
  view.GoToAddress(0xFFF8);
  BytesSent();
  Follow();
  EXPECT_EQ(view.Lines().back().address, 0xFFFFu);
}

TEST_F(ProgramViewTest, EndsAtAddressZero) {
  ProgramView& view = Open(0x0000, 4);
  EXPECT_EQ(CostOf(view, ScrollCode::LineUp), 0u);
  EXPECT_EQ(CostOf(view, ScrollCode::PageUp), 0u);
  // From just above it a page up shows what is there, from 0 on.
  view.GoToAddress(0x0003);
  Follow();
  ASSERT_EQ(view.state().top, 3u);
  view.Scroll(ScrollCode::PageUp);
  Follow();
  EXPECT_EQ(view.state().top, 0u);
  EXPECT_EQ(view.Lines().size(), 4u);
  view.GoToAddress(0x0001);
  Follow();
  view.Scroll(ScrollCode::LineUp);
  Follow();
  EXPECT_EQ(view.state().top, 0u);
}

TEST_F(ProgramViewTest, EndsWithTheProgramRange) {
  views.SetRange(ProgramScrollRange("0104"));
  ProgramView& view = Open(0x0100, 6);
  EXPECT_EQ(Of(view), Starts(0, 3));  // a line beyond the range is not shown
  CostOf(view, ScrollCode::LineDown);
  EXPECT_EQ(view.state().top, 0x0103u);
  EXPECT_EQ(CostOf(view, ScrollCode::LineDown), 0u);
  EXPECT_EQ(view.state().top, 0x0103u);
  CostOf(view, ScrollCode::PageDown);
  EXPECT_EQ(view.state().top, 0x0103u);
  view.GoToAddress(0x8000);
  Follow();
  EXPECT_EQ(view.state().top, 0x0103u);
  CostOf(view, ScrollCode::ThumbTrack, 0x0100);
  EXPECT_EQ(view.ScrollPosition(), 0x0100);

  views.SetRange(ProgramScrollRange("FFFF"));
  CostOf(view, ScrollCode::ThumbTrack, 0x0082);
  EXPECT_EQ(view.state().top, 0x0104u);
  EXPECT_EQ(view.ScrollPosition(), 0x0082);
}

TEST_F(ProgramViewTest, CarriesOutTheLastRequestOnly) {
  ProgramView& view = Open(0x0100, 4);
  for (int i = 0; i < 5; ++i) view.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(Of(view), Starts(1, 4));
  // But memory that has changed is read all the same.
  Load(0x0106, ByteList{0x9D, 0x9D});
  view.RequestRedraw();
  view.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(Of(view), (Addresses{0x0104, 0x0106, 0x0107, 0x0108}));
}

TEST_F(ProgramViewTest, EachKeepsItsOwnLines) {
  ProgramView& first = Open(0x0100, 3);
  ProgramView& second = Open(0x0118, 4);
  first.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(Of(first), Starts(1, 3));
  EXPECT_EQ(Of(second), Starts(13, 4));
  second.MoveCursor(2);
  EXPECT_EQ(first.state().cursorLine, 0);
  memory.WriteByte(0x0103, 0x9D);
  Follow();
  EXPECT_EQ(first.Lines()[0].text, "000103 9d \tNOP");
}

TEST_F(ProgramViewTest, TheOneThatWasActiveLastFollowsPcAtAStop) {
  const auto stop_at = [this](base::Address pc) {
    SetPC(pc);
    run.Report({base::StopReason::StepDone, pc, {}});
    BytesSent();
    Follow();
  };
  stop_at(0x0100);  // without any window
  ProgramView& first = Open(0x0100, 3);
  ProgramView& second = Open(0x0100, 3);
  EXPECT_EQ(views.main(), &second);
  views.Activate(first);
  stop_at(0x0118);
  EXPECT_EQ(first.state().top, 0x0118u);
  EXPECT_EQ(second.state().top, 0x0100u);
  EXPECT_LE(BytesSent(), 3 * kForwardCost) << "the lines of one view";
  // PC on the screen: nothing moves and nothing is read.
  stop_at(0x011C);
  EXPECT_EQ(first.state().top, 0x0118u);
  EXPECT_EQ(BytesSent(), 0u);
  EXPECT_TRUE(first.Lines()[2].is_pc);
  EXPECT_FALSE(first.Lines()[0].is_pc);
  // The program loaded anew has shorter instructions, which move PC out of sight.
  memory.WriteBytes(0x0118, ByteList(8, 0x9D));
  stop_at(0x011C);
  EXPECT_EQ(first.state().top, 0x011Cu);

  views.Activate(second);
  opened.pop_back();
  EXPECT_EQ(views.main(), &first);
  opened.clear();
  EXPECT_EQ(views.main(), nullptr);
}

TEST_F(ProgramViewTest, ClicksMeanWhatTheyHit) {
  using Kind = ClickMeaning::Kind;
  const ProgramView& view = Open(0x0100, 3);
  struct Case {
    int x, y;
    ClickMeaning meaning;
  };
  for (const Case& c : {
           Case{0, 0, {Kind::ToggleBreakpoint, 0, 0x0100}},
           Case{47, 29, {Kind::ToggleBreakpoint, 2, 0x0104}},
           Case{48, 0, {}},
           Case{56, 0, {}},
           Case{57, 19, {Kind::MoveCursor, 1, 0x0103}},
           Case{0, 30, {}},
           Case{300, -1, {}},
       }) {
    EXPECT_EQ(view.HitTest(c.x, c.y, kCell), c.meaning) << c.x << ',' << c.y;
  }
}

TEST_F(ProgramViewTest, SourceLinesStandAboveTheirInstructionsAndDisturbNothing) {
  std::ofstream(folder.path() / "t.c") << "a;\n\t b;\nc;\n";
  debug_info.LineTable.Assign(
      {{kStarts[0], 1, 0}, {kStarts[2], 2, 0}, {kStarts[2], 3, 0}, {kStarts[4], 9, 0}}, {"t.c"});
  debug_info.DebugInfoLoaded = true;
  ProgramView& view = Open(kStarts[0], 6);
  EXPECT_EQ(Of(view), Starts(0, 6));
  views.ShowSource(true);
  Follow();
  // Six rows: a source line, two instructions, two source lines, an instruction.
  EXPECT_EQ(Of(view), Starts(0, 3));
  EXPECT_EQ(view.Lines()[0].source, std::vector<std::string>{"t.c:1  a;"});
  EXPECT_EQ(view.Lines()[2].source, (std::vector<std::string>{"t.c:2  b;", "t.c:3  c;"}));
  EXPECT_EQ(view.RowOfLine(2), 5);
  EXPECT_EQ(view.LineAtRow(4), std::nullopt);

  // A click on a source line is none, and others mean the instruction that they hit.
  view.Click(10 * kCell.width, 2 * kCodeLineHeight, kCell);
  EXPECT_EQ(view.CursorLine()->address, kStarts[1]);
  view.Click(10 * kCell.width, 3 * kCodeLineHeight, kCell);
  EXPECT_EQ(view.CursorLine()->address, kStarts[1]);
  view.Click(0, 4 * kCodeLineHeight, kCell);
  EXPECT_EQ(breakpoints.count(), 0);
  view.Click(0, 5 * kCodeLineHeight, kCell);
  EXPECT_TRUE(breakpoints.Has(kStarts[2]));

  // A page down goes on behind what was shown, and a page up ends before it.
  const auto scroll = [&](ScrollCode code) {
    view.Scroll(code);
    Follow();
    return Of(view);
  };
  EXPECT_EQ(scroll(ScrollCode::PageDown), Starts(3, 5)) << "a file that ends before line 9";
  EXPECT_EQ(view.Lines()[1].source, std::vector<std::string>{"t.c:9"});
  EXPECT_EQ(scroll(ScrollCode::PageUp).back(), kStarts[2]);
  EXPECT_EQ(scroll(ScrollCode::LineDown).front(), kStarts[1]);
  EXPECT_EQ(scroll(ScrollCode::LineUp).front(), kStarts[0]);
  views.ShowSource(false);
  Follow();
  EXPECT_EQ(Of(view), Starts(0, 6));
}

TEST_F(ProgramViewTest, TogglesBreakpointsUpToTheLimit) {
  ProgramView& view = Open(0x0100, 3);
  view.Click(0, 0, kCell);
  EXPECT_TRUE(view.Lines()[0].has_breakpoint);
  view.Click(0, kCodeLineHeight, kCell);
  EXPECT_THAT(user.texts,
              ElementsAre("You can setup only 1 breakpoints\nwhen debugging code in flash"));
  EXPECT_EQ(user.offers, 2u);
  user.takes_offer = 0;
  view.Click(0, kCodeLineHeight, kCell);
  EXPECT_FALSE(breakpoints.Has(0x0100)) << "moved";
  EXPECT_EQ(view.ToggleBreakpoint(0x8000), Toggled::Added);
  EXPECT_EQ(user.offers, 1u) << "software cannot help in flash";
  EXPECT_EQ(view.ToggleBreakpoint(0x0103), Toggled::Added);
  user.takes_offer = 1;
  EXPECT_EQ(view.ToggleBreakpoint(0x0100), Toggled::Added);
  EXPECT_FALSE(breakpoints.HardwareBreakMode());
  EXPECT_EQ(settings.Integer(base::keys::kHardwareBreak), 0);
  EXPECT_EQ(breakpoints.count(), 2);
  EXPECT_EQ(view.ToggleBreakpoint(0x8000), Toggled::Refused);
  EXPECT_EQ(user.texts.back().find("The memory at 8000 does not take the SWI"), 0u);
  EXPECT_EQ(view.state().cursorLine, 0);

  for (base::Address a = 0; a < 98; ++a) {
    EXPECT_EQ(view.ToggleBreakpoint(0x0180 + a), Toggled::Added);
  }
  EXPECT_EQ(view.ToggleBreakpoint(0x0170), Toggled::Refused);
  EXPECT_EQ(user.texts.back(), "You can setup only 100 breakpoints\n");
  // The table tells which bytes of the running program are to be restored.
  activity.AwaitBreak();
  EXPECT_EQ(view.ToggleBreakpoint(0x0180), Toggled::Refused);
  EXPECT_EQ(user.beeps, 1);
  activity.BreakSeen();
  EXPECT_EQ(view.ToggleBreakpoint(0x0180), Toggled::Removed);
}

TEST_F(ProgramViewTest, LeavesTheTargetAloneWhileAProgramRuns) {
  ProgramView& view = Open(0x0100, 3);
  SetPC(0x0100);
  run.Go();
  Tick();
  ASSERT_TRUE(view.Running());
  BytesSent();
  view.Scroll(ScrollCode::PageDown);
  view.Refresh();
  Follow();
  EXPECT_EQ(Of(view), Starts(0, 3));
  EXPECT_EQ(BytesSent(), 0u);
  EXPECT_FALSE(link.LinkError);
}

TEST_F(ProgramViewTest, ShowsNoCodeDuringFileIo) {
  ProgramView& view = Open(0x0100, 2);
  activity.SetFileIo(true);
  Follow();
  EXPECT_EQ(view.Lines()[1].text, "00101: ****");
  EXPECT_EQ(CostOf(view, ScrollCode::LineDown), 0u);
  EXPECT_EQ(view.state().top, 0x0100u);
  view.Click(0, 0, kCell);
  EXPECT_EQ(breakpoints.count(), 0);
  activity.SetFileIo(false);
  Follow();
  EXPECT_EQ(Of(view), Starts(0, 2));
}

TEST_F(ProgramViewTest, KeepsItsCursorOnALine) {
  ProgramView& view = Open(0x0100, 4);
  view.Click(100, 2 * kCodeLineHeight, kCell);
  EXPECT_TRUE(view.Lines()[2].is_cursor);
  EXPECT_EQ(view.CursorLine()->address, 0x0104u);
  view.MoveCursor(3);
  view.Resize(2 * kCodeLineHeight, kCodeLineHeight);
  Follow();
  EXPECT_EQ(view.state().cursorLine, 1);
  view.Resize(0, kCodeLineHeight);
  Follow();
  EXPECT_FALSE(view.CursorLine());
}

}  // namespace
}  // namespace brevant::views
