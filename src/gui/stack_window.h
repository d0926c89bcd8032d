// SPDX-License-Identifier: MIT
// A window onto the stack of the stopped program. It paints what its stack view holds.
#pragma once

#include "gui/scrolling_view.h"
#include "views/stack_view.h"

namespace brevant::gui {

class StackWindow final : public ScrollingView {
 public:
  StackWindow(Session& session, FrameLinks links, const QFont& font,
              const workspace::WindowAttributes& starting);

  views::StackView& view() { return view_; }
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QStringList TextLines() const override;
  int LongestLine() const override;
  int TextCursorLine() const override { return view_.state().cursorLine; }
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
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void PaintLine(QPainter& painter, int row, const views::StackLine& line) const;

  views::StackView view_;
};

}  // namespace brevant::gui
