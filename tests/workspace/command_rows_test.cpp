// SPDX-License-Identifier: MIT
#include "workspace/command_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <set>
#include <sstream>

namespace brevant::workspace {
namespace {

using ::testing::ElementsAre;

using Ids = std::set<int>;

// "140-148 324": both ends included.
Ids Ranges(const std::string& text) {
  Ids ids;
  std::istringstream ranges(text);
  for (std::string range; ranges >> range;) {
    const int first = std::stoi(range);
    const int last = std::stoi(range.substr(range.find('-') + 1));
    for (int id = first; id <= last; ++id) ids.insert(id);
  }
  return ids;
}

Ids Judged(Verdict verdict, const CommandConditions& conditions) {
  Ids ids;
  for (const CommandRow& row : CommandRows()) {
    if (Judge(row, conditions) == verdict) ids.insert(row.id);
  }
  return ids;
}

TEST(CommandRows, HoldEveryIdOnce) {
  Ids ids;
  for (const CommandRow& row : CommandRows()) EXPECT_TRUE(ids.insert(row.id).second) << row.id;
  EXPECT_EQ(ids, Ranges("140-148 160-161 170-175 180-183 190-194 196-197 220-226 240-243 260-268 "
                        "280-287 300-306 308 320-325 340-348 40011-40016 41000-41003 "
                        "41010-41013 41020-41021 41030 41040-41042 41050-41052 41061-41064 "
                        "41070-41073 41080-41082 41090 41100-41102 41110-41113 41120-41126 "
                        "41140"));
}

TEST(CommandRows, AreRefusedWhereFileIoOrAMissingMonitorForbidsThem) {
  EXPECT_EQ(
      Judged(Verdict::Ignore, {.fileIoActive = true}),
      Ranges("140-142 144-148 160-161 171 173 175 180 190-192 196-197 220-226 260-268 280-287 "
             "301-306 308 320-325 341 343 345-346 40011-40016 41000-41003 41020-41021 41030 "
             "41040-41042 41050-41052 41061-41064 41070-41073 41080-41082 41090 "
             "41100-41102 41110-41113 41120-41122 41124-41126"));
  EXPECT_EQ(
      Judged(Verdict::StopFirst, {.monitor_away = true}),
      Ranges("140-142 144-148 160-161 180 182-183 190-191 194 196-197 260-268 280-285 300 320-321 "
             "341 343 "
             "346-347 40014-40016 41001-41003 41020-41021 41030 41041-41042 41050-41052 41073 "
             "41081-41082 41102 41111-41113"));
  const CommandConditions written{.monitor_away = true, .operation = true};
  Ids wait = Judged(Verdict::StopFirst, {.monitor_away = true});
  wait.merge(Ranges("193 344"));
  EXPECT_EQ(Judged(Verdict::WaitFirst, written), wait);
}

TEST(CommandRows, OfTheWindowMenuHaveLettersOfTheirOwn) {
  std::set<char> letters;
  for (const CommandRow& row : CommandRows()) {
    const std::size_t mark = row.text.find('&');
    if (row.menu != Menu::Window || mark == std::string_view::npos) continue;
    EXPECT_TRUE(letters.insert(static_cast<char>(std::toupper(row.text[mark + 1]))).second)
        << row.text;
  }
}

TEST(CommandRows, OfTheToolbarLeaveResetAndStopWhileRunning) {
  std::string usable;
  for (const ToolbarButton& button : Toolbar()) {
    const CommandRow* const row = FindCommand(button.id);
    ASSERT_NE(row, nullptr) << button.id;
    if (!row->Has(kNotWhileRunning))
      usable.append(ToolbarText(button, true, Repeating::Nothing)).append("; ");
    const CommandConditions running{.running = true};
    EXPECT_EQ(IsEnabled(*row, running, Place::Toolbar), !row->Has(kNotWhileRunning));
    EXPECT_TRUE(IsEnabled(*row, running, Place::MenuBar));
  }
  EXPECT_EQ(usable, "ReStart; Reset; Break  F7; ProgFlash; ");
}

TEST(CommandRows, ShortcutsAreUniqueAndTheGivenOnesComeFirst) {
  const auto shortcuts_in = [](Menu active) {
    std::map<std::string, int> shortcuts;
    for (const CommandRow& row : CommandRows()) {
      if (!OwnsKeys(row, active)) continue;
      for (const auto shortcut : {row.shortcut, row.second_shortcut}) {
        if (!shortcut.empty()) {
          EXPECT_TRUE(shortcuts.emplace(shortcut, row.id).second) << shortcut;
        }
      }
    }
    return shortcuts;
  };
  EXPECT_EQ(shortcuts_in(Menu::ProgramPopup)["Ctrl+G"], commands::kPopupGoToAddress);
  EXPECT_EQ(shortcuts_in(Menu::DataPopup)["Ctrl+G"], commands::kDataGoToAddress);
  EXPECT_EQ(shortcuts_in(Menu::WatchPopup)["Return"], commands::kWatchEdit);
  auto shortcuts = shortcuts_in(Menu::None);
  EXPECT_FALSE(shortcuts.contains("Return")) << "other windows have it as a key";
  const std::map<std::string, int> given{{"F3", 324},    {"Shift+F4", 224}, {"Shift+F5", 225},
                                         {"Alt+P", 220}, {"Alt+D", 221},    {"F5", 190},
                                         {"F6", 191},    {"F7", 193},       {"F8", 194}};
  for (const auto& [shortcut, id] : given) {
    EXPECT_EQ(shortcuts[shortcut], id) << shortcut;
    EXPECT_EQ(FindCommand(id)->shortcut, shortcut);
  }
  // Alt and a menu's letter opens it, so no command can have that.
  for (const MenuTitle& title : MenuBar()) {
    const char key = title.text[title.text.find('&') + 1];
    EXPECT_FALSE(shortcuts.contains(std::string("Alt+") + static_cast<char>(std::toupper(key))))
        << title.text;
  }
}

TEST(CommandRows, ReadAsTheyAreShown) {
  const CommandRow& go = *FindCommand(commands::kGo);
  EXPECT_EQ(MenuText(go, false), "&Go\tF7");
  EXPECT_EQ(MenuText(go, true), "&Break\tF7");
  EXPECT_EQ(MenuText(*FindCommand(commands::kExit), false), "E&xit");
  EXPECT_EQ(MenuText(*FindCommand(commands::kStep), false), "&Step\tF5");
  EXPECT_EQ(FindCommand(175)->help, "Save setting when the progrm exits");
  EXPECT_EQ(FindCommand(40015)->help, "");
  EXPECT_EQ(FindCommand(149), nullptr);
  // Every menu item says what it does, save the five that never had a text.
  for (const CommandRow& row : CommandRows()) {
    EXPECT_TRUE(row.menu == Menu::None || row.id > 40000 || row.id == commands::kDataAscii ||
                !row.help.empty())
        << row.id;
  }

  std::vector<std::string> bar;
  for (const MenuTitle& title : MenuBar()) bar.emplace_back(title.text);
  EXPECT_THAT(
      bar, ElementsAre("&File", "&Edit", "&Configure", "File&I/O", "De&bug", "&Window", "&Help"));

  const ToolbarButton& button = Toolbar()[5];
  EXPECT_EQ(Tooltip(button, false), "Ready to run MCU (F7)");
  EXPECT_EQ(Tooltip(button, true), "MCU is running, click this button to stop (F7)");
  EXPECT_EQ(Tooltip(Toolbar()[9], true), "");
}

// A toolbar command and the menu command that it repeats must not differ in when they work, but for
// the button that is disabled where the menu item says why.
TEST(CommandRows, RepeatedCommandsAgree) {
  for (const CommandRow& row : CommandRows()) {
    if (row.same_as == 0) continue;
    const CommandRow* const original = FindCommand(row.same_as);
    ASSERT_NE(original, nullptr) << row.id;
    const auto works = [](const CommandRow& r) { return r.flags & ~unsigned{kNotWhileRunning}; };
    EXPECT_EQ(works(row), works(*original)) << row.id;
  }
}

}  // namespace
}  // namespace brevant::workspace
