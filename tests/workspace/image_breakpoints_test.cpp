// SPDX-License-Identifier: MIT
#include "workspace/image_breakpoints.h"

#include <gtest/gtest.h>

#include "base/temporary_folder.h"

namespace brevant::workspace {
namespace {

using Addresses = std::vector<base::Address>;

TEST(ImageBreakpoints, OfTheFiveImagesChangedLastAreKept) {
  const base::TemporaryFolder folder;
  base::SettingsFile settings(folder.path() / "brevant.ini");
  for (int n = 0; n < 6; ++n) {
    EXPECT_TRUE(RememberBreakpoints(settings, "/a b/image" + std::to_string(n), {0x0100, 0xFFFF}));
  }
  EXPECT_EQ(RememberedBreakpoints(settings, "/a b/image0"), Addresses());
  EXPECT_EQ(RememberedBreakpoints(settings, "/a b/image1"), (Addresses{0x0100, 0xFFFF}));
  EXPECT_TRUE(RememberBreakpoints(settings, "/a b/image1", {}));
  EXPECT_EQ(RememberedBreakpoints(settings, "/a b/image1"), Addresses());
  EXPECT_EQ(RememberedBreakpoints(settings, "/a b/image5").size(), 2u);
}

}  // namespace
}  // namespace brevant::workspace
