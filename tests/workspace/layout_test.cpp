// SPDX-License-Identifier: MIT
#include "workspace/layout.h"

#include <gtest/gtest.h>

#include "base/temporary_folder.h"

namespace brevant::workspace {
namespace {

namespace keys = base::keys;
using HowMany = WindowKeys::HowMany;

constexpr WindowKeys kKinds[] = {
    {HowMany::AtMostOne, &keys::kWatchOpen, &keys::kWatchGeometry},
    {HowMany::One, nullptr, &keys::kRegistersGeometry},
    {HowMany::Many,
     &keys::kDataWindowCount,
     &keys::kDataGeometry,
     {&keys::kDataFirstLine, &keys::kDataAttribute}},
};

class LayoutTest : public ::testing::Test {
 protected:
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
};

TEST_F(LayoutTest, ComesBackAsItWasSaved) {
  const SavedWindow registers{WindowPlace{0, 0, 300, 60}};
  Layout layout{FramePlace{{-8, 0, 1024, 768}, 2},
                {{{WindowPlace{1, 2, 3, 4}}},
                 {registers},
                 {{WindowPlace{5, 6, 7, 8}, {12, 129}}, {{}, {7, 128}}}}};
  EXPECT_TRUE(SaveLayout(settings, kKinds, layout));
  EXPECT_EQ(ReadLayout(settings, kKinds), layout);
  EXPECT_EQ(settings.String(keys::kFrameGeometry), "-8,0,1024,768,2");
  EXPECT_EQ(settings.ReadString("window", "data0p", "", 20), "129");

  // A window that is not restored keeps its older place, a kind that is not asked for all its keys.
  layout.windows[2][0].place.reset();
  layout.windows[1][0].place.reset();
  EXPECT_TRUE(SaveLayout(settings, std::span(kKinds).subspan(1),
                         {{}, {layout.windows[1], layout.windows[2]}}));
  const Layout read = ReadLayout(settings, kKinds);
  EXPECT_EQ(read.windows[0].size(), 1u);
  EXPECT_EQ(read.windows[1][0], registers);
  EXPECT_EQ(read.windows[2][0].place, (WindowPlace{5, 6, 7, 8}));

  layout.windows[2].resize(1);
  layout.windows[2][0].attributes = {8, 10};
  EXPECT_TRUE(SaveAttributes(settings, kKinds, layout));
  EXPECT_EQ(ReadLayout(settings, kKinds).windows[2][0].attributes, (WindowAttributes{8, 10}));
  EXPECT_EQ(ReadLayout(settings, kKinds).windows[2].size(), 2u) << "only the attributes";
}

TEST_F(LayoutTest, IsEmptyWithoutSettingsAndBoundedWithBrokenOnes) {
  EXPECT_EQ(ReadLayout(settings, kKinds), (Layout{{}, {{}, {{}}, {}}}));
  settings.WriteString("window", "ndata", "2000000000");
  settings.WriteString("window", "nwatch", "9");
  const Layout read = ReadLayout(settings, kKinds);
  EXPECT_EQ(read.windows[0].size(), 1u);
  ASSERT_EQ(read.windows[2].size(), 100u);
  EXPECT_EQ(read.windows[2][99].attributes, (WindowAttributes{0, 128}));
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
