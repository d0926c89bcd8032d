// SPDX-License-Identifier: MIT
// How the windows stand at a first start: the registers in one row over a program window that fills
// the rest. They follow the frame's size until the user arranges one of them.
#pragma once

#include <QObject>
#include <QRect>
#include <array>

class QMdiArea;
class QMdiSubWindow;

namespace brevant::gui {

class FirstArrangement final : public QObject {
 public:
  // Belongs to the area, as the windows do.
  FirstArrangement(QMdiArea& area, QMdiSubWindow& registers, QMdiSubWindow& program);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Placed {
    QMdiSubWindow* window;
    QRect place;  // that it was given
  };
  void Arrange();
  // The user, or a command, has put a window elsewhere.
  bool Rearranged(const QObject* window) const;

  QMdiArea& area_;
  std::array<Placed, 2> windows_;
  bool arranging_ = false;
};

}  // namespace brevant::gui
