// SPDX-License-Identifier: MIT
#include "symbols/line_table.h"

#include <gtest/gtest.h>

namespace brevant::symbols {
namespace {

LineTable Table(std::vector<LineEntry> entries) {
  LineTable table;
  table.Assign(std::move(entries), {"a.c", "b.c"});
  return table;
}

std::uint32_t LineFor(const LineTable& table, base::Address address) {
  const auto line = table.LineForAddress(address);
  return line ? line->line : 0;
}

TEST(LineTable, ProgramCounterBetweenEntriesBelongsToTheLowerOne) {
  const LineTable table = Table({{0x100, 1, 0}, {0x104, 2, 0}, {0x104, 3, 1}, {0x108, 4, 0}});
  EXPECT_EQ(LineFor(table, 0x0FF), 1U) << "below the first entry: the first";
  EXPECT_EQ(LineFor(table, 0x103), 1U);
  EXPECT_EQ(LineFor(table, 0x104), 3U) << "two at one address: the second";
  EXPECT_EQ(LineFor(table, 0x106), 3U);
  EXPECT_EQ(LineFor(table, 0x108), 4U);
  EXPECT_EQ(LineFor(table, 0x109), 0U) << "above the last entry: none";
  EXPECT_EQ(table.LineForAddress(0x104)->file, 1U);
  EXPECT_FALSE(Table({}).LineForAddress(0));
}

TEST(LineTable, ExactLookupsTakeTheFirstEntry) {
  const LineTable table = Table({{0x100, 7, 0}, {0x100, 8, 1}, {0x110, 7, 1}, {0x120, 7, 0}});
  EXPECT_EQ(table.LineForExactAddress(0x100)->line, 7U);
  EXPECT_FALSE(table.LineForExactAddress(0x101));
  EXPECT_TRUE(table.HasLineAt(0x120));
  EXPECT_FALSE(table.HasLineAt(0x121));
  EXPECT_EQ(table.AddressForLine(7, 0), 0x100U);
  EXPECT_EQ(table.AddressForLine(7, 1), 0x110U);
  EXPECT_FALSE(table.AddressForLine(9, 0));
}

TEST(LineTable, StatementIsALineOfCUnlessAllIsAssembler) {
  LineTable table;
  table.Assign({{0x100, 7, 0}, {0x100, 3, 1}, {0x104, 8, 0}}, {"crt0.asm", "main.c"});
  EXPECT_TRUE(table.HasStatementAt(0x100));
  EXPECT_FALSE(table.HasStatementAt(0x104)) << "start-up code";
  table.Assign({{0x100, 7, 0}}, {"info.src"});
  EXPECT_TRUE(table.HasStatementAt(0x100));
  EXPECT_FALSE(table.HasStatementAt(0x101));
}

TEST(LineTable, UnsortedEntriesAreLookedUpByAddress) {
  const LineTable table = Table({{0x200, 20, 0}, {0x100, 10, 0}, {0x180, 10, 0}});
  EXPECT_EQ(LineFor(table, 0x1FF), 10U);
  EXPECT_EQ(LineFor(table, 0x200), 20U);
  EXPECT_EQ(table.AddressForLine(10, 0), 0x100U);
  EXPECT_EQ(table.entries()[0].address, 0x200U) << "the file's order stays";
}

}  // namespace
}  // namespace brevant::symbols
