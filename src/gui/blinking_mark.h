// SPDX-License-Identifier: MIT
// The mark of a window's selected cell: it blinks while the window has the keyboard and is hidden
// otherwise. The window paints it when it is shown.
#pragma once

#include <QAbstractScrollArea>
#include <QTimer>

namespace brevant::gui {

class BlinkingMark : public QObject {
 public:
  // Follows the focus of `window`, which outlives it.
  explicit BlinkingMark(QAbstractScrollArea& window);

  bool shown() const { return shown_; }
  // Shown from now on, blinking; or hidden.
  void Blink(bool on);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractScrollArea& window_;
  QTimer timer_;
  bool shown_ = false;
};

}  // namespace brevant::gui
