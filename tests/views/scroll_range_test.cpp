// SPDX-License-Identifier: MIT
#include "views/scroll_range.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

TEST(ScrollRange, FillsTheScrollBarWhateverTheRange) {
  struct Case {
    const char* text;
    ScrollRange range;
  };
  for (const Case& c : {
           Case{"", {0x7FFF, 0, 0x7FFF}},
           Case{"12G4", {0x7FFF, 0, 0x7FFF}},
           Case{"1000", {0x1000, 0, 0x1000}},
           Case{"7fff", {0x7FFF, 0, 0x7FFF}},
           Case{"8000", {0xFFFF, 1, 0x7FFF}},
           Case{"FFFF", {0xFFFF, 1, 0x7FFF}},
           Case{"12345", {0x1FFFF, 2, 0x7FFF}},
           Case{"20000", {0x3FFFF, 3, 0x7FFF}},
           Case{"7FFFF", {0x7FFFF, 4, 0x7FFF}},
           Case{"80000", {0xFFFFF, 5, 0x7FFF}},
           Case{"1FFFFF", {0x1FFFFF, 6, 0x7FFF}},
           Case{"200000", {0x3FFFFF, 7, 0x7FFF}},
           Case{"FFFFFFFF", {0x400000, 8, 0x7FFF}},
       }) {
    EXPECT_EQ(ProgramScrollRange(c.text), c.range) << c.text;
  }
  EXPECT_EQ(ProgramScrollRange("FFFF").AddressAt(0x7FFF), 0xFFFEu);
  EXPECT_EQ(ProgramScrollRange("FFFFFF").AddressAt(0x7FFF), 0x400000u);
}

TEST(ScrollRange, IsChangedByItsForm) {
  base::TemporaryFolder folder;
  base::SettingsFile settings(folder.path() / "brevant.ini");
  base::TestUser user;
  ProgramRangeForm form(settings, user);
  EXPECT_EQ(form.InitialText(), "007fff");
  EXPECT_EQ(form.Accept("xyz"), std::nullopt);
  EXPECT_EQ(user.beeps, 1);
  EXPECT_FALSE(settings.Has("config", "progrange"));
  EXPECT_EQ(form.Accept("c000")->end, 0xFFFFu);
  EXPECT_EQ(form.InitialText(), "00ffff");
  EXPECT_EQ(settings.String(base::keys::kProgramRange), "c000");
  settings.Override(base::keys::kProgramRange, "8000");
  EXPECT_TRUE(form.Accept(form.InitialText()));
  EXPECT_EQ(settings.StringInFile(base::keys::kProgramRange), "c000") << "it was only shown";
}

TEST(ScrollRange, OfTheDataWindowsIsChangedByItsForm) {
  base::TemporaryFolder folder;
  base::SettingsFile settings(folder.path() / "brevant.ini");
  base::TestUser user;
  DataRangeForm form(base::kAddressSpace, settings, user);
  EXPECT_EQ(form.InitialText(), "010000");
  EXPECT_EQ(form.Accept("12 "), std::nullopt);
  EXPECT_EQ(user.beeps, 1);
  EXPECT_FALSE(settings.Has("config", "DataAddrRange"));
  EXPECT_EQ(form.Accept("240"), 0x240u);
  EXPECT_EQ(settings.String(base::keys::kDataRange), "240");
  EXPECT_EQ(form.Accept(""), 0u);
}

}  // namespace
}  // namespace brevant::views
