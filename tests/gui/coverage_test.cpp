// SPDX-License-Identifier: MIT
// Every command is carried out, described and explained; every window is explained.
#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "gui/command_actions.h"
#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

using CoverageTest = Desktop;

TEST_F(CoverageTest, EveryCommandHasAnActionAHelpTextAndATopic) {
  // Their menu texts say all that there is to say, or they have none.
  constexpr std::array kWithoutHelpText{commands::kDataRange,        commands::kSourceGoToPc,
                                        commands::kDataUnit,         commands::kDataAscii,
                                        commands::kMassErase,        commands::kProgramIrqVector,
                                        commands::kProgramLocations, commands::kHelpOnHelp};
  Start();
  const guide::Guide& guide = window().help().guide();
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    EXPECT_TRUE(IsBuilt(row.id)) << row.id << " is not carried out";
    const bool may_lack = std::ranges::find(kWithoutHelpText, row.id) != kWithoutHelpText.end();
    EXPECT_TRUE(!row.help.empty() || may_lack) << row.id << " has no help text";
    const int own = row.same_as != 0 ? row.same_as : row.id;
    EXPECT_NE(guide.OfCommand(own), nullptr) << row.id << ' ' << row.text << " has no topic";
  }
  for (const guide::Topic& topic : guide.topics()) {
    for (const int id : topic.commands)
      EXPECT_NE(workspace::FindCommand(id), nullptr) << topic.file << " explains " << id;
  }
  for (const WindowKind& kind : WindowKinds()) {
    const QString name = window().Open(kind).widget()->objectName();
    EXPECT_NE(guide.OfWindow(Bytes(name)), nullptr) << qPrintable(name) << " has no topic";
  }
}

TEST_F(CoverageTest, TheGuideNamesEveryKeyOfTheSettingsFile) {
  const guide::Guide guide(guide::Pages());
  const guide::Topic* const page = guide.Find("settings-file.md");
  ASSERT_NE(page, nullptr);
  for (const base::SettingsKey& row : base::AllSettingsKeys()) {
    const std::string name(row.key.substr(0, row.key.find('%')));
    EXPECT_NE(page->markdown.find('`' + name), std::string::npos) << row.key;
  }
}

TEST_F(CoverageTest, NoTwoItemsOfAMenuHaveTheSameKey) {
  // Given so: "&Load S19 or Hex", "&Load symbol".
  constexpr std::string_view kTwice = "Alt+L";
  std::map<workspace::Menu, std::set<QString>> keys;
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    const QString key = QKeySequence::mnemonic(Text(row.text)).toString();
    if (row.menu == workspace::Menu::None || key.isEmpty()) continue;
    EXPECT_TRUE(keys[row.menu].insert(key).second ||
                (row.menu == workspace::Menu::File && key == Text(kTwice)))
        << row.text << ": " << qPrintable(key);
  }
}

}  // namespace
}  // namespace brevant::gui
