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
  int TextCursorLine() const override { return view_.cursor() - view_.top(); }
  // Where the cursor is in the log, and what its instruction has written.
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;
  QSize sizeHint() const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  QPoint PopupPlace() const override;
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  views::TraceView view_;
};

}  // namespace brevant::gui
