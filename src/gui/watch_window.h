// SPDX-License-Identifier: MIT
// The window onto the watched variables. It paints the list that its view has read.
#pragma once

#include "gui/scrolling_view.h"
#include "views/watch_view.h"

namespace brevant::gui {

class WatchWindow final : public ScrollingView {
 public:
  WatchWindow(Session& session, FrameLinks links, const QFont& font,
              const workspace::WindowAttributes& starting);

  views::WatchView& view() { return view_; }
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QStringList TextLines() const override;
  int LongestLine() const override;
  int TextCursorLine() const override { return table_.top() + table_.cursor(); }
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
  void PaintLine(QPainter& painter, int row, const views::WatchTable::Place& place) const;
  bool IsEnabled(int command) const;

  const views::WatchTable& table_;
  views::WatchView view_;
  QString hint_;  // what to do with an empty list
};

}  // namespace brevant::gui
