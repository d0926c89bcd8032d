// SPDX-License-Identifier: MIT
#include "symbols/sdcc_sources.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/temporary_folder.h"

namespace brevant::symbols {
namespace {

class SdccSourcesTest : public ::testing::Test {
 protected:
  void Write(const std::string& name, const std::string& text = "x\n") {
    const std::filesystem::path path = folder_.path() / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }
  base::TemporaryFolder folder_;
};

TEST_F(SdccSourcesTest, FileBesideTheImageMayHaveCharactersThatSdccReplaces) {
  Write("my-drv.h");
  Write("sp ace.c");
  Write("both_ways.c");
  Write("both-ways.c");
  SdccSources sources(folder_.path());
  EXPECT_EQ(sources.CSource("my_drv.h", "", false), "my-drv.h");
  EXPECT_EQ(sources.CSource("sp_ace.c", "", false), "sp ace.c");
  EXPECT_EQ(sources.CSource("both_ways.c", "", false), "both_ways.c") << "the exact name first";
  EXPECT_EQ(sources.CSource("gone.c", "main", false), "gone.c");
}

TEST_F(SdccSourcesTest, ListingTellsFilesOfTheSameNameApart) {
  Write("src/drv/io.c");
  Write("src/app/io.c");
  const std::string indent(32, ' ');
  Write("build/drv_io.rst", indent + ";src/drv/io.c:19: void f(void) {\n");
  Write("build/app_io.rst",
        indent + ";note: no path\n" + indent + ";src/app/io.c:3: x = 1; // 4:5:\n");
  Write("build/io.c");
  SdccSources sources((folder_.path() / "build").string());
  EXPECT_EQ(sources.CSource("io.c", "drv_io", true), "../src/drv/io.c");
  EXPECT_EQ(sources.CSource("io.c", "app_io", true), "../src/app/io.c");
  EXPECT_EQ(sources.CSource("io.c", "other", true), "io.c") << "no listing: the one beside it";
  EXPECT_EQ(sources.CSource("io.c", "drv_io", false), "io.c");
}

TEST_F(SdccSourcesTest, AssemblerSourceHasTheModulesName) {
  Write("build/low.s");
  Write("upper.asm");
  const SdccSources sources((folder_.path() / "build").string());
  EXPECT_EQ(sources.AssemblerSource("low"), "low.s");
  EXPECT_EQ(sources.AssemblerSource("upper"), "../upper.asm");
  EXPECT_EQ(sources.AssemblerSource("gone"), "gone.asm");
  EXPECT_EQ(SdccSources().AssemblerSource("gone"), "gone.asm");
}

}  // namespace
}  // namespace brevant::symbols
