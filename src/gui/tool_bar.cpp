// SPDX-License-Identifier: MIT
#include "gui/tool_bar.h"

#include <QAction>

#include "gui/command_actions.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {

ToolBar::ToolBar(const std::function<void(int id)>& send) {
  setObjectName("toolbar");
  setWindowTitle("Toolbar");
  setToolButtonStyle(Qt::ToolButtonTextOnly);
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  for (const workspace::ToolbarButton& button : workspace::Toolbar()) {
    QAction* const action = addAction(Text(button.text));
    action->setObjectName(QString("button%1").arg(button.id));
    action->setVisible(IsBuilt(button.id));
    connect(action, &QAction::triggered, this, [send, id = button.id] { send(id); });
    actions_[button.id] = action;
  }
  Update({});
}

void ToolBar::Update(const workspace::CommandConditions& conditions) {
  for (const workspace::ToolbarButton& button : workspace::Toolbar()) {
    const workspace::CommandRow& row = *workspace::FindCommand(button.id);
    QAction* const action = actions_.at(button.id);
    action->setEnabled(workspace::IsEnabled(row, conditions, workspace::Place::Toolbar));
    action->setText(Text(workspace::ToolbarText(button, conditions.running, conditions.repeating)));
    const QString tip = Text(workspace::Tooltip(button, conditions.running));
    action->setToolTip(tip);
    // Without this one that has none would show its own text again.
    widgetForAction(action)->setToolTip(tip);
  }
}

}  // namespace brevant::gui
