// SPDX-License-Identifier: MIT
#include "symbols/source_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "base/temporary_folder.h"

namespace brevant::symbols {
namespace {

using ::testing::ElementsAre;

class SourcePathTest : public ::testing::Test {
 protected:
  std::string Folder(const std::string& name) const { return folder_.path() / name; }
  std::string Write(const std::string& name) const {
    std::filesystem::create_directories((folder_.path() / name).parent_path());
    std::ofstream(folder_.path() / name) << name;
    return folder_.path() / name;
  }
  std::string Find(const std::string& name) {
    info_.LineTable.Assign({}, {name});
    const SourcePlace place = FindSource(info_, 0, folders_);
    return place.found ? place.path : std::string();
  }

  base::TemporaryFolder folder_;
  DebugInfo info_;
  SourceFolders folders_{Folder("image"), {}, {}};
};

TEST_F(SourcePathTest, TheLongestTrailingPartsDecide) {
  const std::string beside = Write("image/io.c");
  EXPECT_EQ(Find("/home/bob/drv/io.c"), beside);
  EXPECT_EQ(Find("C:\\work\\drv\\io.c"), beside);
  EXPECT_EQ(Find("other/main.c"), "");
  const std::string below = Write("image/drv/io.c");
  EXPECT_EQ(Find("/home/bob/drv/io.c"), below);
  EXPECT_EQ(Find("..\\drv\\io.c"), below);
  // A folder of the user's comes first for what is equally long, and not for what is shorter.
  const std::string named = Write("named/io.c");
  folders_.named = {Folder("named")};
  EXPECT_EQ(Find("/home/bob/drv/io.c"), below);
  EXPECT_EQ(Find("io.c"), named);
  EXPECT_EQ(Find(named), named);
  info_.directory = Folder("image");
  EXPECT_THAT(FoldersLookedIn(info_, folders_), ElementsAre(Folder("named"), Folder("image")));
}

TEST_F(SourcePathTest, IntrolsLibrariesHaveTheirSourcesInTwoFolders) {
  info_.tool_chain = ToolChain::Introl;
  folders_.introl_libraries = Folder("lib");
  Write("image/gen/io.c");
  const std::string assembly = Write("lib/assembly/gen/io.c");
  EXPECT_EQ(Find("gen/io.c"), assembly);
  const std::string c = Write("lib/c/gen/io.c");
  EXPECT_EQ(Find("gen/io.c"), c);
  const std::string own = Write("image/main.c");
  EXPECT_EQ(Find("main.c"), own) << "no library";
}

TEST_F(SourcePathTest, AFolderOfTheUsersIsRememberedForItsImageOnly) {
  base::SettingsFile settings(folder_.path() / "brevant.ini");
  EXPECT_EQ(FolderOfSource("/src/app/drv/io.c", "/home/bob/drv/io.c"), "/src/app");
  EXPECT_EQ(FolderOfSource("/src/io.c", "..\\io.c"), "/src");
  EXPECT_EQ(FolderOfSource("/io.c", "io.c"), "/");
  EXPECT_EQ(FolderOfSource("/src/main.c", "io.c"), std::nullopt);
  for (const char* named : {"/a", "/b c", "/a"}) {
    EXPECT_TRUE(RememberSourceFolder(settings, "/image", named));
  }
  EXPECT_THAT(ReadSourceFolders(settings, "/image").named, ElementsAre("/a", "/b c"));
  EXPECT_THAT(ReadSourceFolders(settings, "/other").named, ElementsAre());
}

}  // namespace
}  // namespace brevant::symbols
