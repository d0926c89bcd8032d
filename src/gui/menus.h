// SPDX-License-Identifier: MIT
// The menu bar and the popup menus of the windows, made from the command rows. Commands that
// this version does not carry out are absent, and so are menus without any item.
#pragma once

#include <QMenu>
#include <functional>
#include <map>
#include <optional>

#include "gui/text_view.h"
#include "workspace/command_rows.h"
#include "workspace/recent_files.h"

class QAction;
class QMenuBar;

namespace brevant::gui {

class Menus {
 public:
  // The actions belong to bar's window. send gets the id of what the user chooses.
  Menus(QMenuBar& bar, std::function<void(int id)> send);

  // A key that several popup menus share is that of the active window's menu.
  void GiveKeysTo(workspace::Menu active);
  // A popup menu of views, its items as item says, else as their rows do.
  void PopUp(workspace::Menu popup, QPoint global,
             const std::function<std::optional<PopupItem>(int id)>& item);
  // One that has items.
  QMenu& menu(workspace::Menu menu) const { return *menus_.at(menu); }
  void Update(const workspace::CommandConditions& conditions);
  void SetChecked(int id, bool checked);
  void SetText(int id, const char* text);
  void ShowRecentFiles(const workspace::RecentFiles& files);

 private:
  QMenu* MakeMenu(workspace::Menu which, const QString& title, QWidget& parent, QWidget& window);
  void AddRow(QMenu& menu, QWidget& window, const workspace::CommandRow& row);

  std::function<void(int)> send_;
  std::map<workspace::Menu, QMenu*> menus_;
  std::map<int, QAction*> actions_;
  QAction* recent_separator_ = nullptr;
};

}  // namespace brevant::gui
