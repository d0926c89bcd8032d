// SPDX-License-Identifier: MIT
#include "symbols/symbol_file.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/temporary_folder.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

std::string Parse(std::string_view text, std::string_view start = "Symbol table") {
  ParsedProgram program;
  program.symbols = ParseSymbolFile(text, start);
  return SymbolsText(program);
}

TEST(SymbolFile, ReadsNameAndAddressLinesAfterTheStartingString) {
  EXPECT_EQ(Parse("early 1111\n-- Symbol table 1 --\nmain 8000\nLOOP\t  0F00\nfar 1F000\n"),
            "main 8000\nLOOP 0F00\nfar 1F000\n");
  EXPECT_EQ(Parse("early 1111\nmain 8000\n", "symbol table"), "") << "the string's case counts";
  EXPECT_EQ(Parse("head 1\nmain 8000\n", ""), "main 8000\n") << "line 1 holds the empty string";
}

TEST(SymbolFile, PassesOverEveryOtherLine) {
  const char* const other[] = {"LOOP 0F00 ; comment", "six 123456", "hex 80G0", "main", "a ",
                               "LOOP 0F00 "};
  for (const char* line : other) EXPECT_EQ(Parse(std::string("\n") + line + "\n", ""), "") << line;
  EXPECT_EQ(Parse("\nzero  \n", ""), "zero 0000\n") << "an empty address is 0";
  EXPECT_EQ(Parse("\n   8000\n", ""), " 8000\n") << "the name may be empty";
}

TEST(SymbolFile, LastLineNeedsNoLineEndAndCarriageReturnsBelongToIt) {
  EXPECT_EQ(Parse("\r\nmain 8000\r\nlast 8010", ""), "main 8000\nlast 8010\n");
}

TEST(SymbolFile, LongLinesAreJudgedInPieces) {
  const std::string filler(254, '.');
  EXPECT_EQ(Parse("\n" + filler + "main 8000\n", ""), "main 8000\n");
}

TEST(SymbolFile, LoadReplacesSymbolsAndDiscardsLinesEvenWhenItFails) {
  const base::TemporaryFolder folder;
  const std::string path = folder.path() / "symbols.lst";
  ASSERT_EQ(base::ReplaceFile(path, "START\nmain 8000\n"), "");
  DebugInfo info;
  const auto fill = [&] {
    info.SymbolTable.Assign({{"old", 1, 0, ""}});
    info.LineTable.Assign({{1, 1, 0}}, {"old.c"});
    info.DebugInfoLoaded = true;
  };
  fill();
  EXPECT_TRUE(LoadSymbolFile(path, "START", info));
  EXPECT_FALSE(info.DebugInfoLoaded);
  EXPECT_TRUE(info.LineTable.empty());
  EXPECT_EQ(info.SymbolTable.FindSymbolAddress("main"), 0x8000U);
  EXPECT_FALSE(info.SymbolTable.FindSymbolAddress("old"));
  for (const std::string& bad : {path + ".missing", folder.path().string()}) {
    fill();
    EXPECT_FALSE(LoadSymbolFile(bad, "START", info));
    EXPECT_FALSE(info.DebugInfoLoaded);
    EXPECT_TRUE(info.SymbolTable.empty());
  }
}

}  // namespace
}  // namespace brevant::symbols
