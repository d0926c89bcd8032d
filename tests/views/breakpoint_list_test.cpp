// SPDX-License-Identifier: MIT
#include "views/breakpoint_list.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

using Result = BreakpointList::Result;
using ::testing::ElementsAre;

class BreakpointListTest : public ViewBench {
 protected:
  BreakpointList Open() {
    return {
        memory, breakpoints, debug_info, debug_info.SymbolTable, {folder.path().string(), {}, {}},
        user};
  }
};

TEST_F(BreakpointListTest, ShowsTheSourceLineOrElseTheInstruction) {
  const auto source = (folder.path() / "main.c").string();
  std::ofstream(source) << "int main(void) {\r\n\t  count++;\n   \nreturn 0;";
  debug_info.LineTable.Assign(
      {{0x0100, 2, 0}, {0x0102, 4, 0}, {0x0104, 9, 0}, {0x0106, 1, 1}, {0x0108, 3, 0}},
      {"main.c", "absent.c"});
  Load(0x0100, ByteList{0xA6, 0x12, 0xA6, 0x34, 0xA6, 0x56, 0xA6, 0x78, 0x9D, 0x81});
  for (const base::Address a : {0x0109, 0x0108, 0x0106, 0x0104, 0x0102, 0x0100}) {
    breakpoints.AddBreakpoint(a);
  }
  EXPECT_EQ(Open().lines().back(), "000100 a6 12 \tLDA\t#12");
  debug_info.DebugInfoLoaded = true;
  EXPECT_THAT(Open().lines(),
              ElementsAre("000109 81 \tRTS", "000108: ", "000106 a6 78 \tLDA\t#78",
                          "000104 a6 56 \tLDA\t#56", "000102: return 0;", "000100: count++;"));
}

TEST_F(BreakpointListTest, DeletesByLineAndGoesToWhatIsLeft) {
  for (const base::Address a : {0x0100, 0x0110, 0x0120}) breakpoints.AddBreakpoint(a);
  BreakpointList list = Open();
  EXPECT_FALSE(list.Delete(std::nullopt));
  EXPECT_FALSE(list.GoTo(3));
  EXPECT_EQ(user.beeps, 2);
  EXPECT_EQ(list.result(), Result::Nothing);

  EXPECT_TRUE(list.Delete(1));
  EXPECT_EQ(list.result(), Result::Deleted);
  EXPECT_FALSE(breakpoints.Has(0x0110));
  EXPECT_EQ(list.lines().size(), 2u);
  EXPECT_EQ(list.GoTo(1), 0x0120u);
  EXPECT_EQ(list.result(), Result::GoTo);

  BreakpointList again = Open();
  EXPECT_TRUE(again.Delete(0));
  EXPECT_TRUE(again.Delete(0));
  EXPECT_FALSE(again.Delete(0));
  EXPECT_TRUE(again.lines().empty());
  EXPECT_EQ(breakpoints.count(), 0);
  EXPECT_EQ(again.result(), Result::Deleted);
}

}  // namespace
}  // namespace brevant::views
