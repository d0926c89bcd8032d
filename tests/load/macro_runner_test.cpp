// SPDX-License-Identifier: MIT
#include "load/macro_runner.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "load/macro_page.h"
#include "load/target_bench.h"

namespace brevant::load {
namespace {

struct MacroBench : TargetBench {
  MacroBench() { target.board().ClearHostLog(); }
  bool Run(const std::string& text) {
    std::string name = Write("test.mac", text);
    return macros.RunMacroFile(name);
  }
  std::string InFolder(const std::string& name) { return (folder.path() / name).string(); }
  MacroRunner macros{memory, frame, start, settings, user, folder.path().string()};
};

TEST(MacroRunner, CarriesOutItsLinesInOrder) {
  MacroBench bench;
  EXPECT_TRUE(
      bench.Run("; prepare\r\ndmm.b 1F 01 ; COP off\r\nnonsense\nDMM.W 120,1234\n"
                "PC 8000\nPC 8010"));
  EXPECT_EQ(bench.macros.TakeProblem(), bench.InFolder("test.mac") +
                                            ", line 3 was passed over: \"nonsense\" is no macro "
                                            "command.");
  EXPECT_EQ(bench.macros.TakeProblem(), "");
  EXPECT_EQ(bench.Commands(), "W001F=01 R011F w12 w34 W00FE=80 W00FF=00 W00FE=80 W00FF=10");
  EXPECT_EQ(bench.Peek(0x0120), 0x12);
  EXPECT_EQ(bench.frame.PC, 0x8010u);
  EXPECT_EQ(bench.start.AfterReset(), 0x8010u);
  bench.start.EntryFromImage = true;
  bench.start.LoadEntryAddress = 0x9000;
  EXPECT_EQ(bench.start.AfterReset(), 0x9000u) << "the image goes first";
  bench.start.EntryFromImage = false;
  EXPECT_TRUE(bench.Run("DMM.B 120 00"));
  EXPECT_EQ(bench.start.AfterReset(), std::nullopt);
}

TEST(MacroRunner, SaysWhenThereIsNoFile) {
  MacroBench bench;
  std::string name = bench.InFolder("missing.mac");
  EXPECT_FALSE(bench.macros.RunMacroFile(name));
  const Texts message{
      "Macro file not found. Please check the configure\n"
      "menu to make sure the file selected is correct"};
  EXPECT_EQ(bench.user.TakeTexts(), message);
  std::string empty;
  EXPECT_FALSE(bench.macros.RunMacroFile(empty));
  EXPECT_EQ(std::filesystem::path(empty), std::filesystem::current_path() / "brevant.mac");
  EXPECT_EQ(bench.Commands(), "");
}

TEST(MacroRunner, RemembersTheLastFileRunOnDemand) {
  MacroBench bench;
  EXPECT_EQ(bench.macros.LastMacroFile(), bench.InFolder("ferrodex.mac"));
  EXPECT_FALSE(bench.macros.RunOnDemand(bench.InFolder("missing.mac")));
  EXPECT_EQ(bench.macros.LastMacroFile(), bench.InFolder("ferrodex.mac"));
  EXPECT_TRUE(bench.macros.RunOnDemand(bench.Write("good.mac", "")));
  EXPECT_EQ(bench.macros.LastMacroFile(), bench.InFolder("good.mac"));
}

TEST(MacroRunner, RunsTheResetMacroWhenItIsEnabled) {
  MacroBench bench;
  bench.Write("RESET.MAC", "DMM.B 120 55");
  bench.macros.RunResetMacro();
  EXPECT_EQ(bench.Commands(), "");
  bench.settings.Store(base::keys::kMacroFlags, long{kMacroAfterReset});
  bench.macros.RunResetMacro();
  EXPECT_EQ(bench.Commands(), "W0120=55");
  EXPECT_EQ(bench.settings.String(base::keys::kResetMacroFile), bench.InFolder("RESET.MAC"));
}

TEST(MacroRunner, QualifiesPlainNamesOnly) {
  EXPECT_EQ(QualifyMacroName("a.mac", "/start"), "/start/a.mac");
  EXPECT_EQ(QualifyMacroName("sub/a.mac", "/start"), "sub/a.mac");
  EXPECT_EQ(QualifyMacroName("C:\\mac\\a.mac", "/start"), "C:\\mac\\a.mac");
  EXPECT_EQ(QualifyMacroName("/a.mac", "/start"), "/a.mac");
}

TEST(MacroPage, StoresWhatCanBeReadAndNamesWhatCannot) {
  MacroBench bench;
  const std::string start_up = bench.folder.path().string();
  MacroPage page = MacroPage::Open(bench.settings);
  EXPECT_FALSE(page.before_load || page.after_reset);
  bench.Write("good.mac", "");
  page = {true, "good.mac", true, "bad.mac"};
  EXPECT_FALSE(page.Commit(bench.settings, bench.user, start_up));
  EXPECT_EQ(bench.user.TakeTexts(),
            Texts{"   Can not open " + bench.InFolder("bad.mac") + " file"});
  page = MacroPage::Open(bench.settings);
  EXPECT_TRUE(page.before_load && page.after_reset);
  EXPECT_EQ(page.before_load_file, bench.InFolder("good.mac"));
  EXPECT_EQ(page.after_reset_file, "");

  page = {true, "", true, "good.mac"};
  EXPECT_FALSE(page.Commit(bench.settings, bench.user, start_up));
  EXPECT_EQ(bench.user.TakeTexts(), Texts{"   Can not open  file"});
  EXPECT_EQ(MacroPage::Open(bench.settings).after_reset_file, "") << "it stops at the first";

  page = {false, "bad.mac", false, ""};
  EXPECT_TRUE(page.Commit(bench.settings, bench.user, start_up));
  EXPECT_EQ(bench.settings.Integer(base::keys::kMacroFlags), 0);
}

}  // namespace
}  // namespace brevant::load
