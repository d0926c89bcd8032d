// SPDX-License-Identifier: MIT
#include "symbols/symbol_table.h"

#include <gtest/gtest.h>

namespace brevant::symbols {
namespace {

TEST(SymbolTable, FirstMatchWinsForNamesInAnyCaseAndForAddresses) {
  SymbolTable table;
  table.Assign({{"Loop", 0x8000, 0, ""}, {"LOOP", 0x9000, 0, ""}, {"alias", 0x8000, 0, ""}});
  EXPECT_EQ(table.FindSymbolAddress("loop"), 0x8000U);
  EXPECT_EQ(table.FindSymbolAddress("LOOP"), 0x8000U);
  EXPECT_EQ(table.FindSymbolName(0x8000), "Loop");
  EXPECT_EQ(table.symbols()[2].name, "alias") << "the file's order stays";
}

TEST(SymbolTable, AddressWithoutNameIsShownAsItsLow16Bits) {
  SymbolTable table;
  EXPECT_EQ(table.SymbolName(0x0F00), "f00");
  table.Assign({{"far", 0x1F000, 0, ""}});
  EXPECT_EQ(table.SymbolName(0xF000), "f000") << "addresses are compared in full width";
  EXPECT_EQ(table.SymbolName(0x1F000), "far");
  table.Clear();
  EXPECT_FALSE(table.FindSymbolName(0x1F000));
}

}  // namespace
}  // namespace brevant::symbols
