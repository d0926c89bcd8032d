// SPDX-License-Identifier: MIT
// A window onto the bytes in the target. It paints what its data view holds, and the blinking mark
// of the cell under the cursor.
#pragma once

#include <QTimer>

#include "gui/scrolling_view.h"
#include "views/data_view.h"

namespace brevant::gui {

class DataWindow final : public ScrollingView {
 public:
  DataWindow(Session& session, FrameLinks links, const QFont& font);

  const views::DataView& view() const { return view_; }
  void RefreshFromTarget() override { view_.Refresh(); }
  QSize sizeHint() const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Blink(bool on);

  views::DataView view_;
  QTimer blink_;
  bool mark_shown_ = false;
};

}  // namespace brevant::gui
