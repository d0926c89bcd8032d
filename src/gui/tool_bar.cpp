// SPDX-License-Identifier: MIT
#include "gui/tool_bar.h"

#include <QAction>

#include "gui/qt_user_interface.h"

namespace brevant::gui {

ToolBar::ToolBar(const std::function<void(int id)>& send) {
  setObjectName("toolbar");
  setWindowTitle("Toolbar");
  setToolButtonStyle(Qt::ToolButtonTextOnly);
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  for (const shell::ToolbarButton& button : shell::Toolbar()) {
    QAction* const action = addAction(Text(button.text));
    action->setObjectName(QString("button%1").arg(button.id));
    // The others' menu commands have theirs.
    action->setShortcut(QKeySequence(Text(shell::FindCommand(button.id)->second_shortcut)));
    connect(action, &QAction::triggered, this, [send, id = button.id] { send(id); });
    actions_[button.id] = action;
  }
  Update({});
}

void ToolBar::Update(const shell::CommandConditions& conditions) {
  for (const shell::ToolbarButton& button : shell::Toolbar()) {
    const shell::CommandRow& row = *shell::FindCommand(button.id);
    QAction* const action = actions_.at(button.id);
    action->setEnabled(shell::IsEnabled(row, conditions, shell::Place::Toolbar));
    action->setText(Text(shell::ToolbarText(button, conditions.running)));
    QString tip = Text(shell::Tooltip(button, conditions.running));
    if (!row.Has(shell::kBuilt)) tip += (tip.isEmpty() ? "" : "\n") + tr("(not in this version)");
    action->setToolTip(tip);
    // Without this one that has none would show its own text again.
    widgetForAction(action)->setToolTip(tip);
  }
}

}  // namespace brevant::gui
