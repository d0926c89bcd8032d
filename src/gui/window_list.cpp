// SPDX-License-Identifier: MIT
#include "gui/window_list.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

namespace brevant::gui {
namespace {

constexpr int kDigits = 9;

// "&3 Program"; from the tenth on without a key.
QString ItemText(int number, QString title) {
  title.replace("&", "&&");
  return QString(number <= kDigits ? "&%1 %2" : "%1 %2").arg(number).arg(title);
}

void AddItems(QMenu& menu, QMdiArea& area, QObject& owner) {
  auto* const separator = new QAction(&owner);
  separator->setSeparator(true);
  menu.addAction(separator);
  int number = 0;
  for (QMdiSubWindow* const child : area.subWindowList()) {
    auto* const item = new QAction(ItemText(++number, child->windowTitle()), &owner);
    item->setObjectName(QString("window%1").arg(number));
    item->setCheckable(true);
    item->setChecked(child == area.activeSubWindow());
    QObject::connect(item, &QAction::triggered, child, [&area, child] {
      if (child->isMinimized()) child->showNormal();
      area.setActiveSubWindow(child);
    });
    menu.addAction(item);
  }
}

}  // namespace

void ListWindows(QMenu& menu, QMdiArea& area) {
  // Owns the items shown last.
  auto* const holder = new QObject(&menu);
  QObject::connect(&menu, &QMenu::aboutToShow, &area, [&menu, &area, holder] {
    qDeleteAll(holder->children());
    AddItems(menu, area, *holder);
  });
}

}  // namespace brevant::gui
