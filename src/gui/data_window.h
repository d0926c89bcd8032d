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
  // Starts with its first line and a number that is kept for the layout.
  DataWindow(Session& session, FrameLinks links, const QFont& font,
             const workspace::WindowAttributes& starting);

  views::DataView& view() { return view_; }
  // Opens the editor of the cell under the cursor; key is what was typed, 0 for none. From within a
  // command.
  void EditCell(char key);
  void RefreshFromTarget() override { view_.Refresh(); }
  workspace::WindowAttributes Attributes() const override;
  QStringList TextLines() const override;
  int TextCursorLine() const override { return view_.state().cursorRow; }
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;
  QSize sizeHint() const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  QPoint PopupPlace() const override;
  void CellsChanged() override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QString Explain(const views::DataCell& cell) const;
  void PaintLine(QPainter& painter, int row, const views::DataLine& line) const;

  Session& session_;
  const int attribute_;
  views::DataView view_;
  BlinkingMark mark_{*this};
};

}  // namespace brevant::gui
