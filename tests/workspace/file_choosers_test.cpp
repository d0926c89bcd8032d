// SPDX-License-Identifier: MIT
#include "workspace/file_choosers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brevant::workspace {
namespace {

using symbols::ToolChain;
using ::testing::ElementsAre;

std::string Patterns(Chooser chooser, ToolChain tool_chain = ToolChain::FreeAssembler) {
  std::string patterns;
  for (const FileFilter& filter : PrepareChooser(chooser, "", tool_chain, "").filters) {
    patterns.append(filter.pattern).append(" ");
  }
  return patterns;
}

TEST(FileChoosers, OfferTheFilesOfTheirKind) {
  EXPECT_EQ(Patterns(Chooser::Image), "*.S19;*.hex;*.sx *.S19 *.HEX *.SX ");
  EXPECT_EQ(Patterns(Chooser::Image, ToolChain::Imagecraft), "*.s19 ");
  EXPECT_EQ(Patterns(Chooser::Image, ToolChain::Introl), "*.E12 ");
  EXPECT_EQ(Patterns(Chooser::FlashFile), "*.SX *.S19 ");
  EXPECT_EQ(Patterns(Chooser::SymbolFile), "*.LST *.SYM *.TXT *.* ");
  EXPECT_EQ(Patterns(Chooser::MacroFile), "*.MAC *.TXT *.* ");
  EXPECT_EQ(Patterns(Chooser::WatchOpen), "*.CFG ");
  EXPECT_EQ(Patterns(Chooser::WatchSave), "*.CFG ");
  EXPECT_EQ(Patterns(Chooser::InputText), "*.TXT *.* ");
  EXPECT_EQ(Patterns(Chooser::OutputText), "*.TXT *.* ");
}

TEST(FileChoosers, StartWhereTheirFileIs) {
  struct Case {
    Chooser chooser;
    const char* start;
    const char* directory;
    const char* extension;
    bool must_exist;
  };
  for (const Case& c : {Case{Chooser::Image, "", "/cwd", "txt", true},
                        Case{Chooser::Image, "/home/led.v2/a.s19", "/home/led.v2", "s19", true},
                        Case{Chooser::MacroFile, "C:\\x\\a.mac", "C:\\x", "mac", true},
                        Case{Chooser::WatchSave, "", "/cwd", "CFG", false},
                        Case{Chooser::WatchSave, "/w/a.cfg", "/w", "cfg", false},
                        Case{Chooser::OutputText, "", "/cwd", "txt", true}}) {
    const FileChooser chooser =
        PrepareChooser(c.chooser, c.start, ToolChain::FreeAssembler, "/cwd");
    EXPECT_EQ(chooser.start_directory, c.directory) << c.start;
    EXPECT_EQ(chooser.default_extension, c.extension) << c.start;
    EXPECT_EQ(chooser.must_exist(), c.must_exist);
  }
}

TEST(FileChoosers, RefuseWhatTheirBuffersCannotHold) {
  EXPECT_TRUE(FileChooser::Accepts(std::string(99, 'a')));
  EXPECT_FALSE(FileChooser::Accepts(std::string(100, 'a')));
  EXPECT_FALSE(FileChooser::Accepts(""));
}

TEST(FileChoosers, SpellPatternsInBothCases) {
  EXPECT_THAT(BothCases("*.S19;*.hex"), ElementsAre("*.S19", "*.s19", "*.HEX", "*.hex"));
  EXPECT_THAT(BothCases("*.*"), ElementsAre("*.*"));
}

}  // namespace
}  // namespace brevant::workspace
