// SPDX-License-Identifier: MIT
#include "workspace/recent_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/temporary_folder.h"

namespace brevant::workspace {
namespace {

using ::testing::ElementsAre;

class RecentFilesTest : public ::testing::Test {
 protected:
  RecentFilesTest() {
    for (int i = 0; i < 5; ++i)
      settings.Store(base::keys::kRecentFile, std::string(1, "abcde"[i]), i);
    files.Read(settings);
  }
  std::string Stored() {
    std::string all;
    for (int i = 0; i < 5; ++i) all += settings.String(base::keys::kRecentFile, i) + ' ';
    return all;
  }
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  RecentFiles files;
};

TEST_F(RecentFilesTest, ComeNewestFirst) {
  struct Case {
    const char* chosen;
    std::array<std::string, 5> after;
  };
  for (const Case& c :
       {Case{"x", {"x", "a", "b", "c", "d"}}, Case{"a", {"a", "b", "c", "d", "e"}},
        Case{"D", {"D", "a", "b", "c", "e"}}, Case{"e", {"e", "a", "b", "c", "d"}}}) {
    RecentFiles list = files;
    list.AddChosen(c.chosen);
    EXPECT_EQ(list.entries(), c.after) << c.chosen;
  }
  files.MoveToFront(2);
  EXPECT_THAT(files.entries(), ElementsAre("c", "a", "b", "d", "e"));
  EXPECT_EQ(files.current(), "c");
}

TEST_F(RecentFilesTest, CloseGapsAtStartUp) {
  settings.Store(base::keys::kRecentFile, "", 0);
  settings.Store(base::keys::kRecentFile, "", 3);
  files.Read(settings);
  EXPECT_THAT(files.entries(), ElementsAre("b", "c", "e", "", ""));
  EXPECT_EQ(files.count(), 3);
}

TEST_F(RecentFilesTest, StoreWhatHasMoved) {
  // Only what a choice from the menu moves is written, so another program's entries stay.
  files.MoveToFront(1);
  settings.Store(base::keys::kRecentFile, "other", 4);
  files.StoreUpTo(settings, 1);
  EXPECT_EQ(Stored(), "b a c d other ");
  files.AddChosen("x");
  files.StoreAll(settings);
  EXPECT_EQ(Stored(), "x b a c d ");
}

TEST(RecentFiles, AreFewAtFirst) {
  base::TemporaryFolder folder;
  base::SettingsFile settings(folder.path() / "brevant.ini");
  RecentFiles files;
  files.Read(settings);
  EXPECT_EQ(files.count(), 0);
  files.AddChosen("first");
  files.StoreAll(settings);
  EXPECT_TRUE(settings.Has("path", "loadfile0"));
  EXPECT_FALSE(settings.Has("path", "loadfile1"));
}

}  // namespace
}  // namespace brevant::workspace
