// SPDX-License-Identifier: MIT
// A window onto the bytes in the target. It paints what its data view holds, and the blinking mark
// of the cell under the cursor.
#pragma once

#include "gui/blinking_mark.h"
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

 private:
  views::DataView view_;
  BlinkingMark mark_{*this};
};

}  // namespace brevant::gui
