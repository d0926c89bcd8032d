// SPDX-License-Identifier: MIT
#include "base/file_names.h"

#include <gtest/gtest.h>

namespace brevant::base {
namespace {

TEST(FileNames, SplitsAtBothSeparators) {
  EXPECT_EQ(DirectoryOf("/home/me/a.s19"), "/home/me");
  EXPECT_EQ(DirectoryOf("C:\\work\\a.s19"), "C:\\work");
  EXPECT_EQ(DirectoryOf("C:\\work/a.s19"), "C:\\work");
  EXPECT_EQ(DirectoryOf("/a.s19"), "") << "no separator after the first character";
  EXPECT_EQ(DirectoryOf("a.s19"), "");
}

TEST(FileNames, TakesTheExtensionBehindTheLastDotAndReplacesBehindTheFirst) {
  EXPECT_EQ(ExtensionOf("dir.d/a.b.S19"), "S19");
  EXPECT_EQ(ExtensionOf(".hidden"), "");
  EXPECT_EQ(ExtensionOf("plain"), "");
  EXPECT_EQ(ExtensionOf("a."), "");
  EXPECT_EQ(ReplaceExtension("/w/a.b.s19", "map"), "/w/a.map");
  EXPECT_EQ(ReplaceExtension("/w.1/a.s19", "map"), "/w.map");
  EXPECT_EQ(ReplaceExtension("plain", "map"), "plain.map");
}

TEST(FileNames, JoinsWithTheSeparatorThatTheFolderUses) {
  EXPECT_EQ(JoinPath("/w", "a"), "/w/a");
  EXPECT_EQ(JoinPath("/w/", "a"), "/w/a");
  EXPECT_EQ(JoinPath("C:\\w", "a"), "C:\\w\\a");
  EXPECT_EQ(JoinPath("w", "a"), "w/a");
  EXPECT_EQ(JoinPath("", "a"), "a");
}

TEST(FileNames, IgnoresTheCaseOfAsciiLettersOnly) {
  EXPECT_TRUE(EqualIgnoringCase("Main_1", "mAIN_1"));
  EXPECT_FALSE(EqualIgnoringCase("main", "main1"));
  EXPECT_FALSE(EqualIgnoringCase("[", "{"));
  EXPECT_EQ(UpperCase("a_z{é"), "A_Z{é");
}

}  // namespace
}  // namespace brevant::base
