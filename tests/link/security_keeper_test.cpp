// SPDX-License-Identifier: MIT
#include "link/security_keeper.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/settings_in_folder.h"

namespace brevant::link {
namespace {

std::string Repeat(char digit) {
  return std::string(16, digit);
}

SecurityCode CodeOf(char digit) {
  return ParseSecurityCode(Repeat(digit)).value();
}

TEST(SecurityKeeper, TheListKeepsTheFiveUsedLast) {
  struct Case {
    const char* what;
    std::string_view before;  // a letter a code; "-" is one of 15 letters "a"
    char used;
    std::string_view after;
  };
  const auto text = [](char letter) {
    return letter == '-' ? std::string(15, 'a') : Repeat(letter);
  };
  const Case cases[] = {{"new: the oldest goes", "abcde", 'f', "fabcd"},
                        {"third: two move down", "abcde", 'c', "cabde"},
                        {"first: nothing moves", "abcde", 'a', "abcde"},
                        {"last: all move down", "abcde", 'e', "eabcd"},
                        {"upper case is another text", "bAcde", 'a', "abAcd"},
                        {"a short entry never matches", "b-cde", 'a', "ab-cd"}};
  for (const Case& row : cases) {
    SettingsInFolder file;
    for (int n = 0; n < kRecentCodes; ++n)
      file.Set("Security" + std::to_string(n), text(row.before[n]));
    EXPECT_TRUE(SecurityKeeper(file.settings).Remember(CodeOf(row.used)));
    for (int n = 0; n < kRecentCodes; ++n) {
      EXPECT_EQ(file.settings.String(base::keys::kRecentSecurity, n), text(row.after[n]))
          << row.what;
    }
  }
}

TEST(SecurityKeeper, AnEntryThatDoesNotParseReadsAsTheDefault) {
  SettingsInFolder file;
  const SecurityKeeper keeper(file.settings);
  EXPECT_EQ(keeper.Recent(0), kDefaultSecurityCode);
  file.Set("Security1", "ffffffffffffffff");
  file.Set("Security2", "ff");
  EXPECT_EQ(keeper.Recent(1), kBlankSecurityCode);
  EXPECT_EQ(keeper.Recent(2), kDefaultSecurityCode);
}

TEST(SecurityKeeper, WhatWasGivenForTheSessionIsNeverStored) {
  SettingsInFolder file;
  SecurityKeeper keeper(file.settings);
  file.Set("Security0", Repeat('a'));
  keeper.GiveForSession(CodeOf('b'));
  EXPECT_EQ(keeper.ToConnect(), CodeOf('b'));
  ASSERT_TRUE(keeper.Remember(CodeOf('b'))) << "as a dialog does that shows it";
  EXPECT_EQ(keeper.Recent(0), CodeOf('b'));
  EXPECT_EQ(keeper.ToReset(), CodeOf('b'));
  ASSERT_TRUE(keeper.Remember(CodeOf('c')));
  EXPECT_EQ(keeper.Recent(0), CodeOf('c'));
  EXPECT_EQ(keeper.Recent(1), CodeOf('a'));
}

// Each line of flash that changes the code, and what a reset sends then.
TEST(SecurityKeeper, FollowsTheCodeInFlash) {
  SettingsInFolder file;
  SecurityKeeper keeper(file.settings);
  EXPECT_EQ(keeper.ToReset(), kDefaultSecurityCode);
  keeper.NoteConnected(CodeOf('a'), true);
  EXPECT_EQ(keeper.InFlash(), CodeOf('a'));
  keeper.Programmed(0xFFF0, std::vector<std::uint8_t>(7, 0x11));
  SecurityCode mixed = CodeOf('a');
  mixed[0] = 0x11;
  EXPECT_EQ(keeper.ToReset(), mixed);
  keeper.Doubt(0xFFFD, 3);
  EXPECT_EQ(keeper.InFlash(), std::nullopt);
  EXPECT_EQ(keeper.ToReset(), CodeOf('a')) << "the best guess";
  keeper.Erased();
  EXPECT_EQ(keeper.ToReset(), kBlankSecurityCode);
  keeper.NoteReset(kBlankSecurityCode, true);
  keeper.Forget();
  EXPECT_EQ(keeper.ToReset(), kBlankSecurityCode);
  // Another board.
  keeper.NoteConnected(CodeOf('c'), false);
  EXPECT_EQ(keeper.InFlash(), std::nullopt);
  EXPECT_EQ(keeper.ToReset(), kDefaultSecurityCode);
}

}  // namespace
}  // namespace brevant::link
