// SPDX-License-Identifier: MIT
// The base of windows onto rows that unfold: it paints what its view holds, and keys and clicks
// move the cursor and unfold. What is special to a kind of rows is told by who derives from it.
#pragma once

#include "gui/scrolling_view.h"
#include "views/rows_view.h"

namespace brevant::gui {

class RowsWindow : public ScrollingView {
 public:
  RowsWindow(Gate& gate, FrameLinks links, const QFont& font);

  QStringList TextLines() const override;
  int LongestLine() const override;
  int TextCursorLine() const override { return rows().cursor(); }
  QSize sizeHint() const override;

 protected:
  virtual views::RowsView& rows() = 0;
  virtual const views::RowsView& rows() const = 0;
  // Of what the cursor stands on: sent by Enter and by a double click.
  virtual int EditCommand() const = 0;

  const views::View& shown() const override { return rows(); }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { rows().Scroll(code, position); }
  QPoint PopupPlace() const override;
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace brevant::gui
