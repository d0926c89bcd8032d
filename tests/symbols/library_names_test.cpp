// SPDX-License-Identifier: MIT
#include "symbols/library_names.h"

#include <gtest/gtest.h>

namespace brevant::symbols {
namespace {

TEST(LibraryNames, EachToolChainHasItsOwnRule) {
  struct Row {
    const char* name;
    ToolChain tool_chain;
    bool is_library;
  };
  const Row rows[] = {
      {"_strcpy", ToolChain::Imagecraft, true},      {"strcpy", ToolChain::Imagecraft, false},
      {"_Strcpy", ToolChain::Imagecraft, false},     {"__va_start", ToolChain::Imagecraft, true},
      {"_", ToolChain::Imagecraft, false},           {"", ToolChain::Imagecraft, false},
      {"strcpy", ToolChain::Introl, true},           {"wctomb", ToolChain::Introl, true},
      {"__acos", ToolChain::Introl, true},           {"_strcpy", ToolChain::Introl, false},
      {"anything", ToolChain::FreeAssembler, true},  {"", ToolChain::MotorolaAssembler, false},
      {"anything", ToolChain::McuezAssembler, true}, {"_memcpy", ToolChain::Sdcc, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(IsLibraryName(row.name, row.tool_chain), row.is_library)
        << row.name << " " << static_cast<int>(row.tool_chain);
  }
}

TEST(LibraryNames, CallIsJudgedByTheFirstSymbolAtItsAddress) {
  DebugInfo info;
  info.tool_chain = ToolChain::Introl;
  info.SymbolTable.Assign(
      {{"own", 0x8000, 0, ""}, {"strcpy", 0x8000, 0, ""}, {"strlen", 0x8100, 0, ""}});
  EXPECT_FALSE(IsLibraryCall(0x8000, info));
  EXPECT_TRUE(IsLibraryCall(0x8100, info));
  EXPECT_FALSE(IsLibraryCall(0x9000, info)) << "no symbol";
}

TEST(LibraryNames, SdccFunctionsWithSourceLinesAreTheProgramsOwn) {
  DebugInfo info;
  info.tool_chain = ToolChain::Sdcc;
  info.SymbolTable.Assign({{"_own", 0x8000, 0, ""}, {"_memcpy", 0x8100, 0, ""}});
  info.LineTable.Assign({{0x8000, 3, 0}}, {"main.c"});
  EXPECT_FALSE(IsLibraryCall(0x8000, info));
  EXPECT_TRUE(IsLibraryCall(0x8100, info));
}

}  // namespace
}  // namespace brevant::symbols
