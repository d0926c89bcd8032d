// SPDX-License-Identifier: MIT
#include "symbols/places.h"

#include <gtest/gtest.h>

#include "base/text_format.h"

namespace brevant::symbols {
namespace {

Symbol Of(const char* name, base::Address address, Scope scope, const char* module) {
  return {.name = name, .address = address, .type = {}, .scope = scope, .module = module};
}

DebugInfo Program() {
  DebugInfo info;
  info.SymbolTable.Assign({
      Of("_main", 0x8000, Scope::Global, "main"),
      Of("_count", 0x80, Scope::Module, "main"),
      Of("_count", 0x90, Scope::Module, "my_io"),
      Of("_mode", 0x81, Scope::Module, "main"),
      Of("_mode", 0x91, Scope::Global, "my_io"),
      Of("_main.sum", 0x84, Scope::Function, "main"),
      Of("_adc", 0xB8, Scope::Global, "main"),
      Of("_bed", 0xB9, Scope::Global, "main"),
      Of("_shift", 0xBED, Scope::Global, "main"),
      Of("_facade", 0xBA, Scope::Global, "main"),
      Of("Twice", 0x10, Scope::Global, ""),
      Of("twice", 0x11, Scope::Global, ""),
      Of("twice", 0x12, Scope::Global, ""),
  });
  info.LineTable.Assign(
      {{0x8000, 3, 0}, {0x8004, 5, 0}, {0x8010, 5, 1}, {0x8020, 5, 2}, {0x8024, 7, 2}},
      {"main.c", "src/my-io.c", "../lib/My-io.c"});
  info.functions = {{"_main", "main", 0x8000, 0x800F}};
  return info;
}

// The address, else the problem with "!" in front when the word is as it should be.
std::string Found(std::string_view word) {
  const Place place = FindPlace(word, Program());
  if (place.address) return base::Format("%04x", *place.address);
  return (place.well_formed ? "!" : "") + place.problem;
}

TEST(Places, WordsAsUsersWriteThem) {
  struct Row {
    const char* word;
    const char* found;
  };
  const Row rows[] = {
      {"8036", "8036"},
      {"000000012", "0012"},
      {"12345", ""},
      {"", ""},
      {"nowhere", ""},
      {"main", "8000"},
      {"_MAIN", "8000"},
      {"sum", "0084"},
      {"main.sum", "0084"},
      {"mode", "0091"},
      {"main.c:mode", "0081"},
      {"src/my-io.c:count", "0090"},
      {"count",
       "!count can be _count 0080 in main, _count 0090 in my_io: put FILE: or FUNCTION. "
       "before the name"},
      {"main.c:nix", "!there is no symbol nix of main.c"},
      {"twice", "0011"},
      {"TWICE", "0010"},
      {"adc", "00b8"},
      {"0adc", "0adc"},
      {"bed", "0bed"},
      {"facade", "00ba"},
      {"main+10", "8010"},
      {"main-8001", "main-8001 is below 0"},
      {"main+8000", "main+8000 is beyond FFFF"},
      {"nowhere+1", ""},
      {"main+", ""},
      {"main.c:5+2", "8006"},
      {"main.c:5", "8004"},
      {"./src\\my-io.c:5-8", "8008"},
      {"my-io.c:7", "8024"},
      {"my-io.c:5",
       "!my-io.c:5 can be src/my-io.c:5 8010, ../lib/My-io.c:5 8020: name more of the path"},
      {"io.c:5", "!no code is known for io.c:5: there is no such source file"},
      {"main.c:4", "!no code is known for main.c:4; the next line with code is 5"},
      {"main.c:6", "!no code is known for main.c:6"},
      {"main.c:30x", "\"30x\" is no line number: decimal digits, from 1 on"},
      {"main.c:0", "\"0\" is no line number: decimal digits, from 1 on"},
      {"main.c:", "\"\" is no line number: decimal digits, from 1 on"},
  };
  for (const Row& row : rows) EXPECT_EQ(Found(row.word), row.found) << row.word;
}

TEST(Places, WhatWasTakenIsSaidWhereItCouldBeAnotherPlace) {
  const DebugInfo info = Program();
  EXPECT_EQ(FindPlace("adc", info).note, "adc is the symbol at 00b8; the address is written 0adc.");
  EXPECT_EQ(FindPlace("bed", info).note, "bed is the address 0bed; the symbol is written _bed.");
  EXPECT_EQ(FindPlace("my-io.c:7", info).note, "my-io.c:7 is ../lib/My-io.c:7 8024.");
  EXPECT_EQ(FindPlace("main", info).note + FindPlace("0adc", info).note, "");
}

TEST(Places, AllOfANameAreFoundAndWhatAnAddressLiesIn) {
  const DebugInfo info = Program();
  EXPECT_EQ(FindNamed("count", info).size(), 2U);
  EXPECT_EQ(FindNamed("my-io.c:count", info).size(), 1U);
  EXPECT_EQ(FindContaining(0x800F, info)->name, "_main");
  EXPECT_EQ(FindContaining(0x8010, info), nullptr);
}

}  // namespace
}  // namespace brevant::symbols
