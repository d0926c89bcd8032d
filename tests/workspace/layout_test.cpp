// SPDX-License-Identifier: MIT
#include "workspace/layout.h"

#include <gtest/gtest.h>

#include "base/temporary_folder.h"

namespace brevant::workspace {
namespace {

class LayoutTest : public ::testing::Test {
 protected:
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
};

TEST_F(LayoutTest, ComesBackAsItWasSaved) {
  const Layout layout{
      .frame = FramePlace{{-8, 0, 1024, 768}, 2},
      .registers = WindowPlace{0, 0, 300, 60},
      .programs = {WindowPlace{10, 70, 500, 400}, WindowPlace{600, 70, 500, 400}},
      .watch = SingleWindow{true, WindowPlace{1, 2, 3, 4}},
      .source = SingleWindow{},
      .data = std::vector{DataWindow{WindowPlace{5, 6, 7, 8}, 12, 129}, DataWindow{}},
  };
  SaveLayout(settings, layout);
  EXPECT_EQ(ReadLayout(settings), layout);
  EXPECT_EQ(settings.String(base::keys::kFrameGeometry), "-8,0,1024,768,2");
  EXPECT_EQ(settings.ReadString("window", "data0p", "", 20), "129");
}

TEST_F(LayoutTest, WindowsThatAreNotRestoredKeepTheirOlderPlace) {
  SaveLayout(settings,
             {.registers = WindowPlace{1, 1, 1, 1}, .programs = {WindowPlace{2, 2, 2, 2}}});
  SaveLayout(settings, {.programs = {std::nullopt, WindowPlace{3, 3, 3, 3}}});
  const Layout layout = ReadLayout(settings);
  EXPECT_EQ(layout.registers, (WindowPlace{1, 1, 1, 1}));
  ASSERT_EQ(layout.programs.size(), 2u);
  EXPECT_EQ(layout.programs[0], (WindowPlace{2, 2, 2, 2}));
}

TEST_F(LayoutTest, KindsOfWindowsThatAreNotThereKeepTheirKeys) {
  const Layout full{.watch = SingleWindow{true, WindowPlace{1, 2, 3, 4}},
                    .source = SingleWindow{true, {}},
                    .data = std::vector{DataWindow{{}, 7, 9}}};
  SaveLayout(settings, full);
  SaveLayout(settings, {.programs = {std::nullopt}});
  const Layout read = ReadLayout(settings);
  EXPECT_EQ(read.watch, full.watch);
  EXPECT_EQ(read.source, full.source);
  EXPECT_EQ(read.data, full.data);
  SaveDataAttributes(settings, {DataWindow{WindowPlace{}, 8, 10}});
  EXPECT_EQ(ReadLayout(settings).data, std::vector({DataWindow{{}, 8, 10}}));
}

TEST_F(LayoutTest, IsEmptyWithoutSettingsAndBoundedWithBrokenOnes) {
  EXPECT_EQ(ReadLayout(settings), (Layout{.watch = SingleWindow{},
                                          .source = SingleWindow{},
                                          .data = std::vector<DataWindow>{}}));
  settings.WriteString("window", "nprog", "2000000000");
  EXPECT_EQ(ReadLayout(settings).programs.size(), 100u);
}

TEST(WindowPlaces, AreReadFromTheirText) {
  struct Case {
    const char* text;
    std::optional<WindowPlace> place;
  };
  for (const Case& c :
       {Case{"1,2,3,4", WindowPlace{1, 2, 3, 4}}, Case{" -1, 2,+3, 4,5", WindowPlace{-1, 2, 3, 4}},
        Case{"1,2,3,4x", WindowPlace{1, 2, 3, 4}}, Case{"", {}}, Case{"1,2,3", {}},
        Case{"1,2,x,4", {}}, Case{"1 2 3 4", {}}, Case{"1,2,3,99999999999", {}}}) {
    EXPECT_EQ(ParseWindowPlace(c.text), c.place) << c.text;
  }
  EXPECT_EQ(ParseFramePlace("1,2,3,4"), std::nullopt);
}

TEST(WindowPlaces, AreBroughtIntoTheFrame) {
  const FramePlace frame{{50, 60, 800, 600}, 0};
  struct Case {
    WindowPlace saved, placed;
  };
  for (const Case& c : {
           Case{{10, 20, 300, 200}, {10, 20, 300, 200}},
           Case{{-5, -1, 300, 200}, {0, 0, 300, 200}},
           Case{{800, 600, 300, 200}, {0, 0, 300, 200}},
           Case{{799, 599, 300, 200}, {799, 599, 300, 200}},
           Case{{0, 0, 0, -7}, {0, 0, 100, 100}},
           Case{{0, 0, 801, 5000}, {0, 0, 800, 600}},
       }) {
    EXPECT_EQ(PlaceChild(frame, c.saved), c.placed) << FormatWindowPlace(c.saved);
  }
  EXPECT_EQ(PlaceChild(std::nullopt, WindowPlace{1, 1, 1, 1}), std::nullopt);
  EXPECT_EQ(PlaceChild(frame, std::nullopt), std::nullopt);
  EXPECT_EQ(SavedPlace(-30, -10, 170, 90), (WindowPlace{0, -10, 170, 100}));
  EXPECT_EQ(SavedPlace(-30, 5, -10, 90), (WindowPlace{0, 5, 0, 85}));
}

}  // namespace
}  // namespace brevant::workspace
