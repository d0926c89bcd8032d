// SPDX-License-Identifier: MIT
#include "workspace/configuration.h"

#include <gtest/gtest.h>

#include "base/temporary_folder.h"
#include "base/test_user.h"

namespace brevant::workspace {
namespace {

using symbols::ToolChain;

struct ConfigurationTest : testing::Test {
  int Stored(const base::SettingsKey& key) const {
    return settings.ReadInteger(key.section, key.key, -1);
  }

  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  base::TestUser user;
};

TEST_F(ConfigurationTest, ThePageThatNobodyTouchedAsksBeforeItChangesTheToolChain) {
  ToolChain in_force = ToolChain::Sdcc;
  CompilerPage page(in_force);
  EXPECT_EQ(page.selected(), ToolChain::McuezAssembler);
  EXPECT_EQ(page.InForceText(), "In force: SDCC C compiler");
  user.agrees = false;
  EXPECT_TRUE(page.Commit(settings, user));
  EXPECT_EQ(in_force, ToolChain::Sdcc);
  EXPECT_EQ(Stored(base::keys::kCompiler), -1);
  user.agrees = true;
  EXPECT_TRUE(page.Commit(settings, user));
  EXPECT_EQ(in_force, ToolChain::McuezAssembler);
  EXPECT_EQ(Stored(base::keys::kCompiler), 4);
  EXPECT_EQ(user.texts.size(), 2u);
  // What is in force already, and what was chosen, needs no question.
  EXPECT_TRUE(CompilerPage(in_force).Commit(settings, user));
  CompilerPage chosen(in_force);
  chosen.Choose(ToolChain::Introl);
  EXPECT_TRUE(chosen.Commit(settings, user));
  EXPECT_EQ(Stored(base::keys::kCompiler), 16);
  EXPECT_EQ(user.texts.size(), 2u);
}

TEST_F(ConfigurationTest, PagesOpenFromTheSettingsAndStoreWhatTheyShow) {
  EXPECT_TRUE(MiscPage::Open(settings).hardware_breakpoints);
  EXPECT_TRUE(MiscPage{false}.Commit(settings));
  EXPECT_EQ(Stored(base::keys::kHardwareBreak), 0);
  ASSERT_TRUE(settings.Store(base::keys::kHardwareBreak, 2L));
  EXPECT_FALSE(MiscPage::Open(settings).hardware_breakpoints) << "only 1 is hardware";

  ASSERT_TRUE(settings.Store(base::keys::kFont, 255L));
  FontPage font = FontPage::Open(settings);
  EXPECT_EQ(font.font, (ViewFont{"fixedsys", 12}));
  font.font = {"courier new", 10};
  EXPECT_TRUE(font.Commit(settings));
  EXPECT_EQ(Stored(base::keys::kFont), 42);

  EXPECT_TRUE(IntrolDialog::Commit(settings, std::string(300, 'x')));
  EXPECT_EQ(IntrolDialog::InitialText(settings).size(), 254u);

  SymbolTableForm form(settings, user);
  EXPECT_FALSE(form.Accept(""));
  EXPECT_EQ(user.beeps, 1);
  EXPECT_TRUE(form.Accept("Symbols:"));
  EXPECT_EQ(form.InitialText(), "Symbols:");
  std::filesystem::remove_all(folder.path());
  EXPECT_TRUE(form.Accept("other"));
  EXPECT_FALSE(form.stored());
  EXPECT_FALSE(MiscPage{true}.Commit(settings));
}

}  // namespace
}  // namespace brevant::workspace
