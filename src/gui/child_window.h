// SPDX-License-Identifier: MIT
// A window inside the frame.
#pragma once

#include <QMdiSubWindow>

namespace brevant::gui {

class ChildWindow final : public QMdiSubWindow {
 public:
  enum class Kind {
    Permanent,  // cannot be closed or maximised
    Closable,   // and is deleted with its content when it is closed
  };

  ChildWindow(QWidget* content, const QString& title, Kind kind);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  Kind kind_;
};

}  // namespace brevant::gui
