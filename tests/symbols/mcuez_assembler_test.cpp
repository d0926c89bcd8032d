// SPDX-License-Identifier: MIT
#include "symbols/mcuez_assembler.h"

#include <gtest/gtest.h>

#include "symbols/columns.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

TEST(McuezAssembler, OffsetsBecomeAddressesInTheirSections) {
  const ParsedProgram listing = ParseMcuezListing(McuezListing(), McuezParameters());
  ASSERT_TRUE(listing.info_files);
  EXPECT_EQ(listing.info_files->source.substr(0, 26), "; comment\nmy_ram: SECTION\n");
  EXPECT_EQ(listing.info_files->addresses, "8000\t7\n8002\t8\n8003\t9\n");
  const ParsedProgram program = ReadBack(listing);
  EXPECT_EQ(SymbolsText(program), "table 0080\nLIMIT 10203\nstart 8000\nloop 8002\n");
  EXPECT_EQ(LinesText(program), "8000 info.src:7\n8002 info.src:8\n8003 info.src:9\n");
}

TEST(McuezAssembler, ContinuedSectionStartsPastItsLastOffset) {
  const std::string code = Line({{4, "2"}, {13, "000004"}, {20, "9D9D"}, {32, "first: NOP"}});
  const std::string listing = Line({{4, "1"}, {32, "my_rom: SECTION"}}) + code +
                              Line({{4, "3"}, {32, "my_ram: SECTION"}}) +
                              Line({{4, "4"}, {32, "my_rom: SECTION"}}) +
                              Line({{4, "5"}, {13, "000001"}, {20, "9D9D"}, {32, "next: NOP"}});
  const auto program = ReadBack(ParseMcuezListing(listing, McuezParameters()));
  EXPECT_EQ(SymbolsText(program), "first 8004\nnext 8005\n");
}

TEST(McuezAssembler, CodeBeforeAnySectionIsAbsoluteAndUnknownSectionsHaveNoAddresses) {
  const std::string listing = Line({{4, "1"}, {13, "00F000"}, {20, "9D9D"}, {32, "early: NOP"}}) +
                              Line({{4, "2"}, {32, "elsewhere: SECTION"}}) +
                              Line({{4, "3"}, {13, "000000"}, {20, "9D9D"}, {32, "lost: NOP"}});
  const auto program = ReadBack(ParseMcuezListing(listing, McuezParameters()));
  EXPECT_EQ(SymbolsText(program), "early F000\n");
  EXPECT_EQ(program.lines.size(), 1U);
}

TEST(McuezAssembler, ManySectionsAreKeptAndNoneIsAFailure) {
  std::string parameters;
  for (int i = 0; i < 60; ++i) {
    parameters += base::Format("S%d = READ_ONLY 0x%X TO 0xFFFF;\n", i, 0x1000 + i);
  }
  const std::string listing = Line({{4, "1"}, {32, "s59: SECTION"}}) +
                              Line({{4, "2"}, {13, "000000"}, {20, "9D9D"}, {32, "here: NOP"}});
  EXPECT_EQ(SymbolsText(ReadBack(ParseMcuezListing(listing, parameters))), "here 103B\n");
  for (const char* none : {"", "NAMES a.o END\n", "A = READ_ONLY\n", "A = B zz TO 1\n"}) {
    EXPECT_FALSE(ParseMcuezListing(McuezListing(), none).problem.empty()) << none;
  }
}

TEST(McuezAssembler, OnlyNumberedLinesCount) {
  const std::string parameters = McuezParameters();
  for (const char* number : {"     ", "1 2  ", " 12a ", "\t\t\t\t1"}) {
    const std::string line = Line({{0, number}, {13, "000000"}, {20, "9D9D"}, {32, "x: NOP"}});
    EXPECT_EQ(ParseMcuezListing(line, parameters).info_files->source, "") << number;
  }
}

}  // namespace
}  // namespace brevant::symbols
