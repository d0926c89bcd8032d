// SPDX-License-Identifier: MIT
#include "workspace/view_font.h"

#include <gtest/gtest.h>

namespace brevant::workspace {
namespace {

TEST(ViewFont, IsDecodedFromItsSetting) {
  struct Case {
    int setting;
    ViewFont font;
  };
  for (const Case& c :
       {Case{0, {"fixedsys", 12}}, Case{8, {"fixedsys", 8}}, Case{26, {"courier", 10}},
        Case{44, {"courier new", 12}}, Case{35, {"courier new", 12}}, Case{58, {"fixedsys", 10}},
        Case{255, {"fixedsys", 12}}}) {
    EXPECT_EQ(DecodeViewFont(c.setting), c.font) << c.setting;
    EXPECT_EQ(DecodeViewFont(EncodeViewFont(c.font)), c.font);
  }
  EXPECT_EQ(EncodeViewFont({"courier new", 10}), 42);
}

}  // namespace
}  // namespace brevant::workspace
