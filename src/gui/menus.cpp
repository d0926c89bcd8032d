// SPDX-License-Identifier: MIT
#include "gui/menus.h"

#include <QAction>
#include <QKeySequence>
#include <QMenuBar>

#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

namespace commands = shell::commands;

// What stands before the tab; the shortcut is the action's own.
QString ItemText(const shell::CommandRow& row, bool running) {
  return Text(shell::MenuText(row, running)).section('\t', 0, 0);
}

QList<QKeySequence> Shortcuts(const shell::CommandRow& row) {
  QList<QKeySequence> keys;
  for (const std::string_view key : {row.shortcut, row.second_shortcut}) {
    if (!key.empty()) keys << QKeySequence(Text(key));
  }
  return keys;
}

}  // namespace

Menus::Menus(QMenuBar& bar, std::function<void(int id)> send)
    : send_(std::move(send)), popup_(bar.window()) {
  popup_.setObjectName("ProgMenu");
  QWidget& window = *bar.window();
  for (const shell::MenuTitle& title : shell::MenuBar()) {
    auto* const menu = new QMenu(Text(title.text), &bar);
    for (const shell::CommandRow& row : shell::CommandRows()) {
      if (row.menu == title.menu) AddRow(*menu, window, row);
    }
    if (menu->isEmpty()) {
      delete menu;
    } else {
      bar.addMenu(menu);
      menus_[title.menu] = menu;
    }
  }
  for (const shell::CommandRow& row : shell::CommandRows()) {
    if (row.menu == shell::Menu::ProgramPopup) AddRow(popup_, window, row);
  }
}

void Menus::AddRow(QMenu& menu, QWidget& window, const shell::CommandRow& row) {
  if (!row.Has(shell::kBuilt)) return;
  if (row.Has(shell::kSeparatorBefore)) {
    QAction* const separator = menu.addSeparator();
    if (row.id == commands::kFirstRecentFile) recent_separator_ = separator;
  }
  auto* const action = new QAction(ItemText(row, false), &window);
  action->setObjectName(QString("command%1").arg(row.id));
  action->setStatusTip(Text(row.help));
  // F1 on the highlighted item shows this instead of carrying it out.
  action->setWhatsThis(Text(row.help));
  action->setShortcuts(Shortcuts(row));
  action->setCheckable(row.Has(shell::kCheckable));
  QObject::connect(action, &QAction::triggered, &window, [this, id = row.id] { send_(id); });
  menu.addAction(action);
  // The shortcuts of popup items work without the popup.
  if (row.menu == shell::Menu::ProgramPopup) window.addAction(action);
  actions_[row.id] = action;
}

void Menus::Update(const shell::CommandConditions& conditions) {
  for (const auto& [id, action] : actions_) {
    const shell::CommandRow& row = *shell::FindCommand(id);
    const auto place =
        row.menu == shell::Menu::ProgramPopup ? shell::Place::Popup : shell::Place::MenuBar;
    action->setEnabled(shell::IsEnabled(row, conditions, place));
    if (id == commands::kGo) action->setText(ItemText(row, conditions.running));
  }
}

void Menus::SetChecked(int id, bool checked) {
  actions_.at(id)->setChecked(checked);
}

void Menus::ShowRecentFiles(const shell::RecentFiles& files) {
  recent_separator_->setVisible(files.count() > 0);
  for (int i = 0; i < shell::RecentFiles::kEntries; ++i) {
    QAction* const action = actions_.at(commands::kFirstRecentFile + i);
    QString path = Text(files.entries()[static_cast<std::size_t>(i)]);
    action->setVisible(!path.isEmpty());
    action->setText(path.replace("&", "&&"));
  }
}

}  // namespace brevant::gui
