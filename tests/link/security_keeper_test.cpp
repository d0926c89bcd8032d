// SPDX-License-Identifier: MIT
#include "link/security_keeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/settings_in_folder.h"

namespace brevant::link {
namespace {

using testing::ElementsAreArray;

std::string Repeat(char digit) {
  return std::string(16, digit);
}

SecurityCode CodeOf(char digit) {
  return ParseSecurityCode(Repeat(digit)).value();
}

TEST(SecurityKeeper, TheListKeepsTheFiveUsedLast) {
  struct Case {
    const char* what;
    std::vector<std::string> before;
    char used;
    std::vector<std::string> after;
  };
  const std::string a = Repeat('a'), b = Repeat('b'), c = Repeat('c'), d = Repeat('d'),
                    e = Repeat('e'), f = Repeat('f'), short_a = std::string(15, 'a');
  const Case cases[] = {
      {"new: the oldest goes", {a, b, c, d, e}, 'f', {f, a, b, c, d}},
      {"third: two move down", {a, b, c, d, e}, 'c', {c, a, b, d, e}},
      {"first: nothing moves", {a, b, c, d, e}, 'a', {a, b, c, d, e}},
      {"last: all move down", {a, b, c, d, e}, 'e', {e, a, b, c, d}},
      {"upper case is another text",
       {b, std::string(16, 'A'), c, d, e},
       'a',
       {a, b, std::string(16, 'A'), c, d}},
      {"a short entry never matches", {b, short_a, c, d, e}, 'a', {a, b, short_a, c, d}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    SettingsInFolder file;
    for (int n = 0; n < kRecentCodes; ++n) file.Set("Security" + std::to_string(n), row.before[n]);
    EXPECT_TRUE(SecurityKeeper(file.settings).Remember(CodeOf(row.used)));
    std::vector<std::string> after;
    for (int n = 0; n < kRecentCodes; ++n) {
      after.push_back(file.settings.String(base::keys::kRecentSecurity, n));
    }
    EXPECT_THAT(after, ElementsAreArray(row.after));
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
