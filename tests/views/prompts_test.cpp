// SPDX-License-Identifier: MIT
#include "views/prompts.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

TEST(AddressPrompt, TakesAnAddressAsPeopleWriteIt) {
  AddressHistory history;
  base::TestUser user;
  AddressPrompt prompt(prompt_titles::kGoToAddress, history, user);
  EXPECT_EQ(prompt.InitialText(), "");
  for (const char* refused : {"", "12G4", "0x", "12345"}) {
    EXPECT_EQ(prompt.Accept(refused), std::nullopt) << refused;
  }
  EXPECT_EQ(prompt.refusal(), "12345 is beyond FFFF, the last address of the target.");
  EXPECT_EQ(user.beeps, 4);
  EXPECT_TRUE(history.entries().empty());
  for (const char* same : {"0xF000", "$f000", " F000 ", "00F000"}) {
    EXPECT_EQ(prompt.Accept(same), 0xF000u) << same;
  }
  EXPECT_EQ(prompt.Accept("f000"), 0xF000u);
  EXPECT_EQ(prompt.Accept("F000"), 0xF000u);
  EXPECT_EQ(prompt.Choices(), std::vector<std::string>{"00f000"});
}

TEST(AddressPrompt, RemembersTheTenNewestAddresses) {
  AddressHistory history;
  for (base::Address a = 1; a <= 11; ++a) history.Add(a);
  EXPECT_EQ(history.entries(), (std::vector<base::Address>{11, 10, 9, 8, 7, 6, 5, 4, 3, 2}));
  history.Add(4);
  EXPECT_EQ(history.entries(), (std::vector<base::Address>{4, 11, 10, 9, 8, 7, 6, 5, 3, 2}));
  base::TestUser user;
  EXPECT_EQ(AddressPrompt("", history, user).InitialText(), "000004");
}

TEST(SymbolPrompt, PrefersKnownSymbolsToNumbersAndTakesOtherPlaces) {
  symbols::DebugInfo info;
  info.SymbolTable.Assign({{"MAIN", 0x8000, 0, ""}, {"BEEF", 0x1234, 0, ""}});
  base::TestUser user;
  SymbolPrompt prompt(prompt_titles::kGoToSymbol, info, user);
  EXPECT_EQ(prompt.Choices(), (std::vector<std::string>{"MAIN", "BEEF"}));
  EXPECT_EQ(prompt.Accept("main"), 0x8000u);
  EXPECT_EQ(prompt.Accept("beef"), 0x1234u);
  EXPECT_EQ(prompt.Accept("$c0de "), 0xC0DEu);
  EXPECT_EQ(prompt.Accept("main+4"), 0x8004u);
  EXPECT_EQ(prompt.Accept(""), std::nullopt);
  EXPECT_EQ(prompt.Accept("nowhere"), std::nullopt);
  EXPECT_EQ(user.beeps, 2);
}

}  // namespace
}  // namespace brevant::views
