// SPDX-License-Identifier: MIT
#include "symbols/motorola_assembler.h"

#include <gtest/gtest.h>

#include "symbols/columns.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

TEST(MotorolaAssembler, ListingBecomesTheThreeIntermediateFiles) {
  const ParsedProgram program = ParseMotorolaListing(MotorolaListing());
  ASSERT_TRUE(program.info_files);
  EXPECT_EQ(program.info_files->source, "PRT 0000 0040\nstart lda #5\nloop deca\n\tbne loop\n");
  EXPECT_EQ(program.info_files->addresses, "008000\t0002\n008002\t0003\n008003\t0004\n");
  EXPECT_EQ(SymbolsText(ReadBack(program)), "PRT 0040\nstart 8000\nloop 8002\n");
}

TEST(MotorolaAssembler, ValueOfAnEquateStandsInTwoGroups) {
  const std::string listing = "\n68HC12\n\n\n\n\n" + Line({{26, "A"}, {30, "1234"}, {35, "5678"}}) +
                              Line({{26, "_B"}, {30, "1234"}, {35, "5678"}}) +
                              Line({{26, "C"}, {30, "00"}});
  EXPECT_EQ(ParseMotorolaListing(listing).info_files->symbols, "A\t12345678\nC\t00\n");
}

TEST(MotorolaAssembler, AddressIsRecordedOnlyForLinesWithTextInColumn27) {
  const std::string listing = "\n68HC12\n\n\n\n\n" + Line({{7, "008000"}, {26, "L"}}) +
                              Line({{7, "008000"}, {26, "  nop"}}) +
                              Line({{7, "008000"}, {26, " nop"}});
  const ParsedProgram program = ParseMotorolaListing(listing);
  EXPECT_EQ(program.info_files->addresses, "008000\t0003\n");
  EXPECT_EQ(program.info_files->symbols, "L\t008000\n");
}

TEST(MotorolaAssembler, SecondLineMustCarryTheMarker) {
  EXPECT_TRUE(ParseMotorolaListing("68HC12\n").wrong_format);
  EXPECT_TRUE(ParseMotorolaListing(FreeListing()).wrong_format);
}

}  // namespace
}  // namespace brevant::symbols
