// SPDX-License-Identifier: MIT
#include "symbols/free_assembler.h"

#include <gtest/gtest.h>

#include "symbols/columns.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

TEST(FreeAssembler, ListingBecomesTheThreeIntermediateFiles) {
  const ParsedProgram program = ParseFreeAssemblerListing(FreeListing());
  ASSERT_TRUE(program.info_files);
  EXPECT_EQ(
      program.info_files->source,
      "table: rmb 2\n; nothing but a comment\nstart\nagain:\n lda #5\nloop: deca\n bne loop\n");
  EXPECT_EQ(program.info_files->symbols, "table\t0080\nstart\t8000\nagain\t8000\nloop\t8002\n");
  EXPECT_EQ(program.info_files->addresses, "8000\t0005\n8002\t0006\n8003\t0007\n");
  EXPECT_EQ(LinesText(ReadBack(program)), "8000 info.src:5\n8002 info.src:6\n8003 info.src:7\n");
}

TEST(FreeAssembler, MoreThanTenLabelsMayWaitForCode) {
  std::string listing = "\nas12\n\n\n\n";
  for (char c = 'a'; c <= 'z'; ++c) listing += Line({{24, std::string(1, c)}});
  listing += Line({{0, "9000"}, {5, "9D"}, {24, " nop"}}) + Line({{24, "never"}});
  const ParsedProgram program = ReadBack(ParseFreeAssemblerListing(listing));
  EXPECT_EQ(program.symbols.size(), 26U) << "the last label meets no code";
  EXPECT_EQ(program.symbols.back().address, 0x9000U);
}

TEST(FreeAssembler, LinesTooShortForSourceTextAreIgnored) {
  const std::string listing = "\nas12\n\n\n\n" + Line({{0, "8000"}, {5, "9D"}, {21, "x"}}) +
                              Line({{0, "8001"}, {5, "9D"}, {22, "x"}});
  const ParsedProgram program = ParseFreeAssemblerListing(listing);
  EXPECT_EQ(program.info_files->source, "\n") << "23 characters and the line end are just enough";
  EXPECT_EQ(program.info_files->addresses, "8001\t0001\n");
}

TEST(FreeAssembler, SecondLineMustCarryTheMarker) {
  for (const char* text : {"", "as12\n", "\n as12\n", "\nAS12\n", "\n\nas12\n"}) {
    const ParsedProgram program = ParseFreeAssemblerListing(text);
    EXPECT_TRUE(program.wrong_format) << text;
    EXPECT_FALSE(program.info_files);
  }
}

}  // namespace
}  // namespace brevant::symbols
