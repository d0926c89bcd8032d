// SPDX-License-Identifier: MIT
// The window onto the log of the last trace. It paints what its trace view holds.
#pragma once

#include "gui/scrolling_view.h"
#include "views/trace_view.h"

namespace brevant::gui {

class TraceWindow final : public ScrollingView {
 public:
  TraceWindow(Session& session, FrameLinks links, const QFont& font,
              const workspace::WindowAttributes& starting);

  views::TraceView& view() { return view_; }
  QStringList TextLines() const override;
  QString CursorText() const override;
  QSize sizeHint() const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  QPoint PopupPlace() const override { return {}; }
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  views::TraceView view_;
};

}  // namespace brevant::gui
