// SPDX-License-Identifier: MIT
#include "gui/child_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QProxyStyle>
#include <QStyleOptionTitleBar>

namespace brevant::gui {
namespace {

constexpr Qt::WindowFlags kPermanentFlags = Qt::SubWindow | Qt::CustomizeWindowHint |
                                            Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                            Qt::WindowMinimizeButtonHint;

// The button to close a window comes with its system menu whether it is wanted or not.
class WithoutCloseButton final : public QProxyStyle {
 public:
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override {
    const auto* const title_bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
    if (control != CC_TitleBar || title_bar == nullptr) {
      QProxyStyle::drawComplexControl(control, option, painter, widget);
      return;
    }
    QStyleOptionTitleBar shown(*title_bar);
    shown.subControls &= ~SC_TitleBarCloseButton;
    QProxyStyle::drawComplexControl(control, &shown, painter, widget);
  }
};

}  // namespace

ChildWindow::ChildWindow(QWidget* content, const QString& title, bool permanent)
    : permanent_(permanent) {
  setWidget(content);
  setWindowTitle(title);
  setObjectName("child" + content->objectName());
  setAttribute(Qt::WA_DeleteOnClose, !permanent);
  if (!permanent) return;
  setWindowFlags(kPermanentFlags);
  auto* const style = new WithoutCloseButton;
  style->setParent(this);
  setStyle(style);
  for (QAction* const action : systemMenu()->actions()) {
    if (action->shortcuts().contains(QKeySequence(QKeySequence::Close))) action->setEnabled(false);
  }
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  if (permanent_) {
    event->ignore();
  } else {
    QMdiSubWindow::closeEvent(event);
  }
}

}  // namespace brevant::gui
