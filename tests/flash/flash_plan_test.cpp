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
  EXPECT_TRUE(PlanEraseRange(devices::All()[0], 0x8000, 0xFFFF).erases_security);
  EXPECT_FALSE(PlanEraseRange(devices::All()[0], 0x8000, 0xFF80).erases_security);
}

TEST(FlashPlan, BlocksOfAFileContinueWhereTheOneBeforeEnded) {
  std::vector<std::uint8_t> bytes(40);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  const auto part = [&](int first, int end) {
    return std::vector(bytes.begin() + first, bytes.begin() + end);
  };
  images::ImageFile file;
  for (const base::Address address : {0x1FFE0u, 0x0008u, 0x0008u}) {
    file.records.push_back({.address = address, .bytes = bytes});
  }
  file.records.push_back({.address = 0x9000, .bytes = {}});
  const FlashPlan plan = PlanFile(devices::All()[0].flash, file, "image.s19");
  ASSERT_EQ(plan.blocks.size(), 9u);
  EXPECT_EQ(plan.bytes(), 120);
  EXPECT_EQ(plan.blocks[0], (FlashBlock{0xFFE0, part(0, 16), false, false}));
  EXPECT_EQ(plan.blocks[1], (FlashBlock{0xFFF0, part(16, 32), true, false}));
  EXPECT_EQ(plan.blocks[2], (FlashBlock{0x0000, part(32, 40), true, true}));
  EXPECT_EQ(plan.blocks[3], (FlashBlock{0x0008, part(0, 16), true, false}));
  EXPECT_EQ(plan.blocks[6], (FlashBlock{0x0008, part(0, 16), false, false}));
  EXPECT_TRUE(PlanFile(devices::All()[0].flash, {}, "").blocks.empty());
}

}  // namespace
}  // namespace brevant::flash
