// SPDX-License-Identifier: MIT
#include "symbols/imagecraft_map.h"

#include <gtest/gtest.h>

#include "symbols/columns.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

TEST(ImagecraftMap, AreasHoldSymbolsAndLines) {
  const ParsedProgram program = ParseImagecraftMap(ImagecraftMap(), "util.c\nmain.c\n");
  EXPECT_EQ(SymbolsText(program), "_main 8000\n_counter 0080\n");
  EXPECT_EQ(LinesText(program), "8000 main.c:12\n8003 main.c:13\n8010 ?:5\n");
  EXPECT_EQ(program.lines.back().file, 2U) << "a file of no list: the number of files";
}

TEST(ImagecraftMap, FirstListedFileThatBeginsWithTheNameIsTaken) {
  const auto program = ParseImagecraftMap(ImagecraftMap(), "mainloop.c\r\nmain.c");
  EXPECT_EQ(FileName(program.files, program.lines[0].file), "mainloop.c");
}

TEST(ImagecraftMap, SecondLineMustOpenAnArea) {
  EXPECT_FALSE(ParseImagecraftMap("Area\n\n", "").problem.empty());
  EXPECT_FALSE(ParseImagecraftMap("\nArea\n", "main.c\n").problem.empty()) << "nothing inside";
}

}  // namespace
}  // namespace brevant::symbols
