// SPDX-License-Identifier: MIT
#include "gui/child_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QStyle>

namespace brevant::gui {
namespace {

constexpr Qt::WindowFlags kPermanentFlags = Qt::SubWindow | Qt::CustomizeWindowHint |
                                            Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                            Qt::WindowMinimizeButtonHint;

}  // namespace

ChildWindow::ChildWindow(QWidget* content, const QString& title, Kind kind) : kind_(kind) {
  setWidget(content);
  setWindowTitle(title);
  setObjectName("child" + content->objectName());
  setAttribute(Qt::WA_DeleteOnClose, kind == Kind::Closable);
  if (kind == Kind::Closable) return;
  setWindowFlags(kPermanentFlags);
  for (QAction* const action : systemMenu()->actions()) {
    if (action->shortcuts().contains(QKeySequence(QKeySequence::Close))) action->setEnabled(false);
  }
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  if (kind_ == Kind::Permanent) {
    event->ignore();
  } else {
    QMdiSubWindow::closeEvent(event);
  }
}

}  // namespace brevant::gui
