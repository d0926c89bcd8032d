// SPDX-License-Identifier: MIT
#include "flash/flash_plan.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace brevant::flash {
namespace {

TEST(ErasePlan, CountsPagesAsTheRoutineDoes) {
  struct Case {
    int device;
    base::Address start, end, first_page;
    int pages;
    std::array<std::uint8_t, 3> parameters;
  };
  const std::vector<Case> cases = {
      {0, 0x8000, 0xFFFF, 0x8000, 256, {0x80, 0x7F, 0x00}},
      {0, 0x8000, 0x8080, 0x8000, 1, {0x80, 0x7F, 0x01}},
      {0, 0x8000, 0x8081, 0x8000, 2, {0x80, 0x7F, 0x02}},
      {0, 0x8011, 0x8012, 0x8000, 1, {0x80, 0x7F, 0x01}},
      {0, 0xFF81, 0xFFFF, 0xFF80, 1, {0xFF, 0xFF, 0x01}},
      {7, 0x8000, 0x8080, 0x8000, 1, {0x80, 0x7F, 0x01}},
      {1, 0xEE00, 0xFDFF, 0xEE00, 64, {0xEE, 0x3F, 0x40}},
      {1, 0xEE3F, 0xEE41, 0xEE00, 2, {0xEE, 0x3F, 0x02}},
      {1, 0xC000, 0xFFFF, 0xC000, 256, {0xC0, 0x3F, 0x00}},
      {1, 0xBF00, 0xFFFF, 0xBF00, 4, {0xBF, 0x3F, 0x04}},
  };
  for (const Case& c : cases) {
    const ErasePlan plan = PlanErase(devices::BySettingsNumber(c.device).flash, c.start, c.end);
    EXPECT_EQ(plan.first_page, c.first_page) << c.start;
    EXPECT_EQ(plan.pages, c.pages) << c.start;
    EXPECT_EQ(plan.parameters, c.parameters) << c.start;
  }
}

TEST(ErasePlan, KnowsWhichAddressesItReaches) {
  const devices::FlashGeometry& device = devices::BySettingsNumber(0).flash;
  const ErasePlan plan = PlanErase(device, 0x8080, 0x8180);
  EXPECT_FALSE(Erases(plan, device, 0x807F));
  EXPECT_TRUE(Erases(plan, device, 0x8080));
  EXPECT_TRUE(Erases(plan, device, 0x817F));
  EXPECT_FALSE(Erases(plan, device, 0x8180));
  EXPECT_TRUE(Erases(PlanErase(device, 0x8000, 0xFFFF), device, 0xFFF6));
}

TEST(FlashPlan, SplitsARecordOf40BytesIntoBlocks) {
  std::vector<std::uint8_t> bytes(40);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  const auto blocks = SplitIntoBlocks(bytes);
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0].size(), 16u);
  EXPECT_EQ(blocks[1].front(), 16);
  EXPECT_EQ(blocks[2].size(), 8u);
  EXPECT_TRUE(SplitIntoBlocks({}).empty());
  EXPECT_EQ(BlockParameters(0x8123, 16),
            (std::array<std::uint8_t, 8>{0x81, 0x23, 0x81, 0x23, 16, 16, 0x00, 0xE0}));
}

}  // namespace
}  // namespace brevant::flash
