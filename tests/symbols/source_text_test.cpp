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
  const std::string directory = folder.path() / "build";
  std::ofstream(folder.path() / "main.c") << "one\r\ntwo";
  DebugInfo info;
  info.LineTable.Assign({}, {"../main.c", (folder.path() / "main.c").string(), "gone.c"});
  EXPECT_EQ(SourcePath(info, 0, directory), directory + "/../main.c");
  EXPECT_EQ(SourceText(info, {1, 0}, directory), "one");
  EXPECT_EQ(SourceText(info, {2, 0}, directory), "two");
  EXPECT_EQ(SourceText(info, {2, 1}, directory), "two") << "a path of its own";
  EXPECT_FALSE(SourceText(info, {3, 0}, directory)) << "past the end";
  EXPECT_FALSE(SourceText(info, {0, 0}, directory));
  EXPECT_FALSE(SourceText(info, {1, 2}, directory)) << "no such file";
  EXPECT_FALSE(SourceText(info, {1, 9}, directory)) << "no such index";
}

}  // namespace
}  // namespace brevant::symbols
