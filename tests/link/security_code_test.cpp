// SPDX-License-Identifier: MIT
#include "link/security_code.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "link/settings_in_folder.h"

namespace brevant::link {
namespace {

using testing::ElementsAreArray;

constexpr SecurityCode kCounting{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0xAB};

TEST(SecurityCode, NeedsEightNumbersInEitherCase) {
  EXPECT_EQ(ParseSecurityCode("01020304050607ab"), kCounting);
  EXPECT_EQ(ParseSecurityCode(" 1 2 3 4 5 6 7 AB and more"), kCounting);
  for (const char* text : {"", "0102030405060", "010203040506x7ab", "01020304050607"}) {
    EXPECT_EQ(ParseSecurityCode(text), std::nullopt) << text;
  }
  EXPECT_EQ(FormatSecurityCode(kCounting), "01020304050607ab");
}

std::string Repeat(char digit) {
  return std::string(16, digit);
}

TEST(SecurityCode, TheListKeepsTheFiveUsedLast) {
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
    SecurityCode code;
    code.fill(*ParseSecurityCode(Repeat(row.used)).value().begin());
    EXPECT_TRUE(RememberSecurityCode(file.settings, code));
    std::vector<std::string> after;
    for (int n = 0; n < kRecentCodes; ++n) {
      after.push_back(file.settings.String(base::keys::kRecentSecurity, n));
    }
    EXPECT_THAT(after, ElementsAreArray(row.after));
  }
}

TEST(SecurityCode, AnEntryThatDoesNotParseReadsAsTheDefault) {
  SettingsInFolder file;
  EXPECT_EQ(RecentSecurityCode(file.settings, 0), kDefaultSecurityCode);
  file.Set("Security1", "ffffffffffffffff");
  file.Set("Security2", "ff");
  EXPECT_EQ(RecentSecurityCode(file.settings, 1), kBlankSecurityCode);
  EXPECT_EQ(RecentSecurityCode(file.settings, 2), kDefaultSecurityCode);
}

}  // namespace
}  // namespace brevant::link
