// SPDX-License-Identifier: MIT
#include "symbols/imagecraft_cmd.h"

#include <gtest/gtest.h>

#include "symbols/columns.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

TEST(ImagecraftCmd, RecordsBecomeFilesSymbolsAndLines) {
  const ParsedProgram program = ParseImagecraftCmd(ImagecraftCmd());
  EXPECT_EQ(SymbolsText(program), "_main 8000\n");
  EXPECT_EQ(LinesText(program), "7000 ?:1\n8000 main.c:12\n8003 main.c:13\n8010 util.c:5\n");
  EXPECT_EQ(program.reset_vectors, std::vector<std::uint16_t>{0x8000});
}

TEST(ImagecraftCmd, KeywordsCountByTheirFirstLetters) {
  const auto program = ParseImagecraftCmd("FILENAME a.c\nDEFINE _x 0x10\nLINES 2 20\nfile b.c\n");
  EXPECT_EQ(SymbolsText(program), "_x 0010\n");
  EXPECT_EQ(LinesText(program), "0020 a.c:2\n");
  EXPECT_FALSE(ParseImagecraftCmd("FILE a.c\nREG PC 1\n").problem.empty()) << "nothing to use";
}

}  // namespace
}  // namespace brevant::symbols
