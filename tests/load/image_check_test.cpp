// SPDX-License-Identifier: MIT
#include "load/image_check.h"

#include <gtest/gtest.h>

#include "load/ram_start.h"

namespace brevant::load {
namespace {

using Blocks = std::vector<images::Block>;

images::Image ImageOf(const Blocks& blocks) {
  images::Image image;
  for (const images::Block& block : blocks) image.Put(block.address, block.bytes);
  return image;
}

const images::Block kVector{0xFFFE, {0x80, 0x00}};

TEST(ImageCheck, NamesWhatWillNotWorkAndNothingElse) {
  const struct {
    Blocks blocks;
    std::string found;
  } rows[] = {
      {{{0x8000, {0x45, 0x02, 0x40, 0x94, 0x6E, 0x01, 0x1F}}, kVector}, ""},
      {{{0x8000, {0xA6, 0x01, 0xB7, 0x1F}}, kVector}, ""},
      {{{0x8000, {0xC7, 0xFF, 0xFF, 0x20, 0xFB}}, kVector}, ""},
      {{{0x8000, {0xA6, 0x00, 0xB7, 0x1F, 0x6E, 0x30, 0x1F}}, kVector}, "watchdog "},
      {{{0x8000, {0xCC, 0x80, 0x10}}, {0x8010, {0x45, 0x80, 0x00, 0x94, 0x10, 0x1F}}, kVector},
       "stack "},
      {{{0x8000, {0x10, 0x1F}}}, "no-reset-vector "},
      {{{0x8000, {0x10, 0x1F}}, {0xFFFE, {0xFF, 0xFF}}}, "no-reset-vector "},
      {{{0x8001, {0x10, 0x1F}}, kVector}, "reset-vector "},
      {{{0x7FFE, {0x9D, 0x9D, 0x10, 0x1F}}, kVector}, "outside-memory "},
      {{{0x8000, {0x10, 0x1F}}, {0xFFF6, {1, 2}}, kVector}, "security-code "},
      {{{0x0100, {0x9D, 0x45, 0x80, 0x00, 0x94}}}, "stack "},
  };
  const devices::Device& gp32 = devices::BySettingsNumber(0);
  for (const auto& row : rows) {
    std::string found;
    for (const Finding& finding : CheckImage(ImageOf(row.blocks), gp32, std::nullopt)) {
      found += std::string(finding.word()) + ' ';
    }
    EXPECT_EQ(found, row.found) << "row " << &row - rows;
  }
  EXPECT_TRUE(CheckImage(ImageOf(rows[9].blocks), gp32,
                         SecurityBytes{1, 2, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})
                  .empty())
      << "it stays what it is";
}

TEST(RamStart, IsTheVectorOfTheImageElseItsLowestStart) {
  const devices::Device& gp32 = devices::BySettingsNumber(0);
  symbols::SymbolTable symbols;
  symbols.Assign({{"_count", 0x100, 0, ""},
                  {"start", 0x300, 0, ""},
                  {"_main", 0x108, 0, ""},
                  {"__start", 0x104, 0, ""}});
  const images::Block code{0x100, std::vector<std::uint8_t>(16, 0x9D)};
  EXPECT_EQ(FindRamStart(ImageOf({code}), gp32, symbols)->by, "__start");
  EXPECT_EQ(FindRamStart(ImageOf({code, {0xFFFE, {0x01, 0x0A}}}), gp32, symbols)->address, 0x10A);
  EXPECT_EQ(FindRamStart(ImageOf({code, kVector}), gp32, {}), std::nullopt);
  EXPECT_EQ(FindRamStart(ImageOf({code, {0x8000, {0x9D}}}), gp32, symbols), std::nullopt);
}

}  // namespace
}  // namespace brevant::load
