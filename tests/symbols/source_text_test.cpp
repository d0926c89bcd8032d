// SPDX-License-Identifier: MIT
#include "symbols/source_text.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/temporary_folder.h"

namespace brevant::symbols {
namespace {

TEST(SourceText, LinesAreReadFromTheImagesFolder) {
  const base::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "build");
  const SourceFolders folders{folder.path() / "build", {}, {}};
  std::ofstream(folder.path() / "main.c") << "one\r\ntwo";
  DebugInfo info;
  info.LineTable.Assign({}, {"../main.c", (folder.path() / "main.c").string(), "gone.c"});
  EXPECT_EQ(SourceText(info, {1, 0}, folders), "one");
  EXPECT_EQ(SourceText(info, {2, 0}, folders), "two");
  EXPECT_EQ(SourceText(info, {2, 1}, folders), "two") << "a path of its own";
  EXPECT_FALSE(SourceText(info, {3, 0}, folders)) << "past the end";
  EXPECT_FALSE(SourceText(info, {0, 0}, folders));
  EXPECT_FALSE(SourceText(info, {1, 2}, folders)) << "no such file";
  EXPECT_FALSE(SourceText(info, {1, 9}, folders)) << "no such index";
}

}  // namespace
}  // namespace brevant::symbols
