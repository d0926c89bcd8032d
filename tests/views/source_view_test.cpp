// SPDX-License-Identifier: MIT
#include "views/source_view.h"

#include <chrono>

#include "views/view_bench.h"

namespace brevant::views {
namespace {

using ::testing::ElementsAre;

constexpr CellSize kCell{8, 10};

// Twenty lines in main.c, two in drv/io.c. PC is at line 12 of main.c.
class SourceViewTest : public ViewBench {
 protected:
  SourceViewTest() {
    std::string text;
    for (int n = 1; n <= 20; ++n) text += base::Format("line %d\n", n);
    Write("main.c", text);
    Write("io.c", "int io;\nvoid IO(void) {}\n");
    debug_info.LineTable.Assign(
        {{0x0100, 2, 0}, {0x0104, 12, 0}, {0x0108, 14, 0}, {0x010A, 2, 0}, {0x0120, 2, 1}},
        {"main.c", "src/io.c"});
    debug_info.DebugInfoLoaded = true;
    Load(0x0100, ByteList(64, 0x9D));
    SetPC(0x0104);
    Show(5);
  }
  void Write(const std::string& name, const std::string& text) const {
    const auto path = folder.path() / name;
    const bool replaced = std::filesystem::exists(path);
    std::ofstream(path) << text;
    if (!replaced) return;
    // However coarse the file system's clock is.
    std::filesystem::last_write_time(
        path, std::filesystem::last_write_time(path) + std::chrono::seconds(2));
  }
  void Show(int rows) {
    view.Resize(40 * kCell.width, rows * kCell.height, kCell);
    Follow();
    Follow();
  }
  std::vector<std::string> Texts() {
    Follow();
    std::vector<std::string> texts;
    for (const SourceRow& row : view.Rows()) texts.push_back(row.text);
    return texts;
  }
  // Number of the line that bears the mark; 0 when none does.
  int Marked(bool SourceRow::*mark) const {
    for (const SourceRow& row : view.Rows()) {
      if (row.*mark) return row.number;
    }
    return 0;
  }

  SourceFiles files{debug_info,
                    [this] { return symbols::ReadSourceFolders(settings, folder.path()); }};
  std::string image_ = folder.path() / "main.s19";
  SourceView view{open,
                  {files, frame, run, {memory, breakpoints, activity, settings, user}, [this] {
                     return image_;
                   }}};
};

TEST_F(SourceViewTest, FollowsPcFromStopToStopAndFromFileToFile) {
  EXPECT_EQ(view.state().top, 11);
  EXPECT_EQ(view.state().path, folder.path() / "main.c");
  EXPECT_EQ(Marked(&SourceRow::is_pc), 12);
  // A line that is in sight keeps its place; another comes to the top.
  SetPC(0x0108);
  Follow();
  EXPECT_EQ(view.state().top, 11);
  EXPECT_EQ(Marked(&SourceRow::is_pc), 14);
  SetPC(0x010A);
  Follow();
  EXPECT_EQ(view.state().top, 1);
  SetPC(0x0120);
  EXPECT_THAT(Texts(), ElementsAre("void IO(void) {}"));
  EXPECT_EQ(view.state().currentFile, 1u);
  // Where no line is known nothing moves and nothing is marked.
  SetPC(0x0200);
  Follow();
  EXPECT_EQ(view.state().currentFile, 1u);
  EXPECT_EQ(Marked(&SourceRow::is_pc), 0);
  EXPECT_FALSE(view.ShowPcLine());
  // A program that is loaded anew is shown from its PC, else from its beginning.
  debug_info.LineTable.Assign({{0x0100, 3, 0}, {0x0180, 4, 0}}, {"main.c"});
  debug_info.SymbolTable.Assign({});
  Follow();
  EXPECT_EQ(view.state().currentFile, 0u);
  EXPECT_EQ(view.state().top, 0);
  // In none of the functions that are known there is no line either, though one lies before it.
  debug_info.functions.push_back({.name = "_f", .module = "", .first = 0x0100, .last = 0x0103});
  SetPC(0x0102);
  Follow();
  EXPECT_EQ(Marked(&SourceRow::is_pc), 3);
  SetPC(0x0110);
  Follow();
  EXPECT_EQ(Marked(&SourceRow::is_pc), 0);
  // Start-up code, whose source the compiler has not left, hides nothing that is there.
  debug_info.LineTable.Assign({{0x0100, 3, 0}, {0x0110, 7, 1}}, {"crt.asm", "main.c"});
  debug_info.SymbolTable.Assign({});
  SetPC(0x0100);
  EXPECT_EQ(Texts().front(), "line 1");
  EXPECT_EQ(view.state().currentFile, 1u);
  EXPECT_FALSE(view.ShowPcLine());
  debug_info.DebugInfoLoaded = false;
  SetPC(0x0104);
  EXPECT_THAT(Texts(), ElementsAre());
  EXPECT_EQ(view.Explain(),
            "No source lines are known: load a program with its debug information.");
}

TEST_F(SourceViewTest, ScrollsAndMovesTheCursorWithinTheFile) {
  view.OpenFile(0);
  view.Scroll(ScrollCode::LineUp);
  EXPECT_EQ(view.state().top, 0);
  view.Scroll(ScrollCode::PageDown);
  view.Scroll(ScrollCode::LineDown);
  EXPECT_EQ(view.state().top, 6);
  EXPECT_EQ(Texts().front(), "line 7");
  view.Scroll(ScrollCode::ThumbTrack, 99);
  EXPECT_EQ(view.state().top, 19);
  view.Scroll(ScrollCode::LineDown);
  EXPECT_EQ(view.state().top, 19);
  view.GoToLine(3);
  EXPECT_EQ(view.state().top + view.state().cursor, 2);
  view.Scroll(ScrollCode::PageUp);
  Follow();
  view.MoveCursor(4);
  view.MoveCursor(5);
  EXPECT_EQ(view.state().top, 1);
  EXPECT_EQ(view.state().cursor, 4);
  view.ScrollSideways(5);
  Follow();
  EXPECT_EQ(view.WordAt(6 * kCell.width, 0, kCell), "2");
  view.ScrollSideways(-99);
  Follow();
  EXPECT_EQ(view.WordAt(7 * kCell.width, 0, kCell), "line");
  EXPECT_EQ(view.WordAt(10 * kCell.width, 0, kCell), "");
}

TEST_F(SourceViewTest, AClickTogglesABreakpointWhereThereIsCode) {
  view.OpenFile(0);
  Follow();
  view.Click(4 * kCell.width, 0, kCell);
  EXPECT_EQ(breakpoints.count(), 0) << "line 1 made no code";
  view.Click(4 * kCell.width, 15, kCell);
  EXPECT_TRUE(breakpoints.Has(0x0100));
  EXPECT_EQ(Marked(&SourceRow::has_breakpoint), 2);
  EXPECT_EQ(view.state().cursor, 0);
  view.Click(5 * kCell.width + 1, 15, kCell);
  EXPECT_EQ(view.state().cursor, 0) << "the gap before the text";
  view.Click(7 * kCell.width, 15, kCell);
  EXPECT_EQ(view.state().cursor, 1);
  EXPECT_EQ(view.CursorAddress(), 0x0100u);
  EXPECT_EQ(view.Explain(), "main.c:2 is at 0100");
  EXPECT_EQ(view.ToggleBreakpoint(), Toggled::Removed);
  // Line 2 made code in a second place, too.
  breakpoints.AddBreakpoint(0x010A);
  EXPECT_EQ(Marked(&SourceRow::has_breakpoint), 2);
  EXPECT_TRUE(view.GoToCode(0x0108));
  EXPECT_EQ(view.state().top, 13);
  EXPECT_FALSE(view.GoToCode(0x0109));
  // The one that hardware can have stands elsewhere.
  user.takes_offer = 0;
  view.MoveCursor(0);
  EXPECT_EQ(view.ToggleBreakpoint(), Toggled::Added);
  EXPECT_TRUE(breakpoints.Has(0x0108));
  view.MoveCursor(1);
  EXPECT_EQ(view.ToggleBreakpoint(), std::nullopt);
  EXPECT_EQ(view.Explain(), "main.c:15 made no code");
  activity.SetFileIo(true);
  view.Click(0, 0, kCell);
  EXPECT_TRUE(breakpoints.Has(0x0108));
}

TEST_F(SourceViewTest, FindsFromTheCursorOnAndStartsAgainAtTheTop) {
  view.OpenFile(0);
  Follow();
  EXPECT_FALSE(view.Search());
  view.SetSearch("LINE 1", true);
  view.Search();
  EXPECT_EQ(user.TakeTexts(), std::vector<std::string>{"String \"LINE 1\" not found"});
  view.SetSearch("LINE 1", false);
  EXPECT_EQ(settings.Integer(base::keys::kMatchCase), 0);
  view.Search();
  EXPECT_EQ(view.state().top + view.state().cursor, 0);
  view.Search();
  EXPECT_EQ(view.state().top, 9) << "out of sight, so at the top";
  Follow();
  view.Search();
  EXPECT_EQ(view.state().top, 9);
  EXPECT_EQ(view.state().cursor, 1);
  for (int n = 12; n <= 19; ++n) view.Search();
  EXPECT_TRUE(user.TakeTexts().empty());
  view.Search();
  EXPECT_EQ(user.TakeTexts().size(), 1u);
  view.Search();
  EXPECT_EQ(view.state().top + view.state().cursor, 0);
}

TEST_F(SourceViewTest, SaysWhereItLooksForAFileAndRemembersWhereItIs) {
  std::filesystem::create_directories(folder.path() / "far/src");
  std::filesystem::rename(folder.path() / "io.c", folder.path() / "far/src/io.c");
  view.OpenFile(1);
  EXPECT_TRUE(Texts().empty());
  EXPECT_THAT(view.problem(), ElementsAre("src/io.c was not found. It was looked for in",
                                          "  " + folder.path().string(),
                                          "Press Enter or double-click here to show where it is."));
  EXPECT_FALSE(view.state().loaded);
  EXPECT_EQ(view.UseFile(folder.path() / "main.c"), FileUse::OtherName);
  EXPECT_EQ(view.UseFile(folder.path() / "far/src/io.c"), FileUse::Used);
  EXPECT_EQ(Texts().front(), "int io;");
  EXPECT_TRUE(view.problem().empty());
  EXPECT_EQ(symbols::ReadSourceFolders(settings, folder.path()).named.front(),
            folder.path() / "far");
}

TEST_F(SourceViewTest, ShowsOnlyWhatTheFileHoldsNow) {
  view.OpenFile(0);
  EXPECT_EQ(Texts().size(), 5u);
  Write("main.c", "one\ntwo");
  view.CheckFile();
  Follow();
  EXPECT_THAT(Texts(), ElementsAre("one", "two"));
  std::filesystem::remove(folder.path() / "main.c");
  view.SetSearch("two", false);
  EXPECT_FALSE(view.Search()) << "no claim about a file that is gone";
  EXPECT_TRUE(user.TakeTexts().empty());
  Follow();
  EXPECT_TRUE(Texts().empty());
  EXPECT_EQ(view.problem().size(), 3u);
  Write("main.c", "again\tx\n");
  Write("main.s19", "");
  std::filesystem::last_write_time(
      image_, std::filesystem::last_write_time(image_) - std::chrono::seconds(10));
  view.CheckFile();
  Follow();
  EXPECT_THAT(Texts(), ElementsAre("again   x"));
  EXPECT_EQ(view.Explain(),
            "main.c:1 made no code; main.c is newer than main.s19: its lines may not be those that "
            "were compiled");
  EXPECT_TRUE(view.SetTabSize("4"));
  EXPECT_EQ(settings.Integer(base::keys::kTabSize), 4);
  EXPECT_FALSE(view.SetTabSize("x"));
  EXPECT_TRUE(view.SetTabSize("0"));
  EXPECT_EQ(view.state().tabSize, 8);
  EXPECT_TRUE(view.SetTabSize("9"));
  EXPECT_EQ(view.state().tabSize, 8);
}

}  // namespace
}  // namespace brevant::views
