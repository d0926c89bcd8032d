// SPDX-License-Identifier: MIT
#include "gui/menus.h"

#include <QAction>
#include <QKeySequence>
#include <QMenuBar>

#include "gui/command_actions.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

struct PopupName {
  workspace::Menu menu;
  const char* name;
};
constexpr PopupName kPopups[] = {{workspace::Menu::ProgramPopup, "ProgMenu"},
                                 {workspace::Menu::DataPopup, "DataMenu"},
                                 {workspace::Menu::StackPopup, "StackMenu"},
                                 {workspace::Menu::CallsPopup, "CallsMenu"},
                                 {workspace::Menu::SourcePopup, "CSrcMenu"},
                                 {workspace::Menu::WatchPopup, "WatchMenu"},
                                 {workspace::Menu::VariablesPopup, "VariablesMenu"},
                                 {workspace::Menu::ChipPopup, "ChipMenu"},
                                 {workspace::Menu::TracePopup, "TraceMenu"},
                                 {workspace::Menu::ProfilePopup, "ProfileMenu"}};

// Behind a tab stand all its shortcuts; by itself an action would show only the first.
QString ItemText(const workspace::CommandRow& row, bool running) {
  return Text(workspace::MenuText(row, running));
}

QList<QKeySequence> Shortcuts(const workspace::CommandRow& row) {
  QList<QKeySequence> keys;
  for (const std::string_view key : {row.shortcut, row.second_shortcut}) {
    if (!key.empty()) keys << QKeySequence(Text(key));
  }
  return keys;
}

}  // namespace

Menus::Menus(QMenuBar& bar, std::function<void(int id)> send) : send_(std::move(send)) {
  QWidget& window = *bar.window();
  for (const workspace::MenuTitle& title : workspace::MenuBar()) {
    if (QMenu* const menu = MakeMenu(title.menu, Text(title.text), bar, window)) bar.addMenu(menu);
  }
  for (const PopupName& popup : kPopups) {
    if (QMenu* const menu = MakeMenu(popup.menu, {}, window, window)) {
      menu->setObjectName(popup.name);
    }
  }
  GiveKeysTo(workspace::Menu::None);
}

void Menus::GiveKeysTo(workspace::Menu active) {
  for (const auto& [id, action] : actions_) {
    const workspace::CommandRow& row = *workspace::FindCommand(id);
    action->setShortcuts(workspace::OwnsKeys(row, active) ? Shortcuts(row) : QList<QKeySequence>());
  }
}

QMenu* Menus::MakeMenu(workspace::Menu which, const QString& title, QWidget& parent,
                       QWidget& window) {
  auto* const menu = new QMenu(title, &parent);
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    if (row.menu == which) AddRow(*menu, window, row);
  }
  if (menu->isEmpty()) {
    delete menu;
    return nullptr;
  }
  menus_[which] = menu;
  return menu;
}

void Menus::PopUp(workspace::Menu popup, QPoint global,
                  const std::function<std::optional<PopupItem>(int id)>& item) {
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    if (row.menu != popup || !actions_.contains(row.id)) continue;
    const auto shown = item(row.id);
    if (!shown) continue;
    QAction* const action = actions_.at(row.id);
    action->setText(shown->text);
    action->setChecked(shown->checked);
    if (!shown->enabled) action->setEnabled(false);
  }
  menu(popup).popup(global);
}

void Menus::AddRow(QMenu& menu, QWidget& window, const workspace::CommandRow& row) {
  if (!IsBuilt(row.id)) return;
  if (row.Has(workspace::kSeparatorBefore)) {
    QAction* const separator = menu.addSeparator();
    if (row.id == commands::kFirstRecentFile) recent_separator_ = separator;
  }
  auto* const action = new QAction(ItemText(row, false), &window);
  action->setObjectName(QString("command%1").arg(row.id));
  action->setStatusTip(Text(row.help));
  action->setShortcuts(Shortcuts(row));
  action->setCheckable(row.Has(workspace::kCheckable));
  QObject::connect(action, &QAction::triggered, &window, [this, id = row.id] { send_(id); });
  menu.addAction(action);
  // The shortcuts of popup items work without the popup.
  if (workspace::IsPopup(row.menu)) window.addAction(action);
  actions_[row.id] = action;
}

void Menus::Update(const workspace::CommandConditions& conditions) {
  for (const auto& [id, action] : actions_) {
    const workspace::CommandRow& row = *workspace::FindCommand(id);
    const auto place =
        workspace::IsPopup(row.menu) ? workspace::Place::Popup : workspace::Place::MenuBar;
    action->setEnabled(workspace::IsEnabled(row, conditions, place));
    if (id == commands::kGo) action->setText(ItemText(row, conditions.running));
  }
}

void Menus::SetChecked(int id, bool checked) {
  actions_.at(id)->setChecked(checked);
}

void Menus::SetText(int id, const char* text) {
  actions_.at(id)->setText(text);
}

void Menus::ShowRecentFiles(const workspace::RecentFiles& files) {
  recent_separator_->setVisible(files.count() > 0);
  for (int i = 0; i < workspace::RecentFiles::kEntries; ++i) {
    QAction* const action = actions_.at(commands::kFirstRecentFile + i);
    QString path = Text(files.entries()[static_cast<std::size_t>(i)]);
    action->setVisible(!path.isEmpty());
    action->setText(path.replace("&", "&&"));
  }
}

}  // namespace brevant::gui
