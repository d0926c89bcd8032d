// SPDX-License-Identifier: MIT
// A window inside the frame.
#pragma once

#include <QMdiSubWindow>

namespace brevant::gui {

class ChildWindow final : public QMdiSubWindow {
 public:
  // A permanent one cannot be closed or maximised; another is deleted with its content when it is
  // closed.
  ChildWindow(QWidget* content, const QString& title, bool permanent);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  bool permanent_;
};

}  // namespace brevant::gui
