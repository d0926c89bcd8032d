// SPDX-License-Identifier: MIT
// The window of the six register cells. It paints the cells and the blinking mark of the selected
// one, and opens the editor when the user clicks or types.
#pragma once

#include "gui/blinking_mark.h"
#include "gui/text_view.h"
#include "gui/window_kinds.h"
#include "views/register_cells.h"

namespace brevant::gui {

class RegistersWindow final : public TextView {
 public:
  RegistersWindow(Session& session, FrameLinks links, const QFont& font,
                  const workspace::WindowAttributes& starting);

  // All cells in one row.
  QSize sizeHint() const override;
  // As many rows as six cells need there.
  int heightForWidth(int width) const override;
  bool OfTheMoment() const override { return true; }
  QStringList TextLines() const override;

 protected:
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void Select(int cell);
  // Where not all rows fit.
  void ShowSelected();
  int RowInSight(int row) const;
  // The pixel as if the window began with the first row.
  QPoint InCells(QPoint at) const;

  // For the selected cell; key is what was typed, 0 for none.
  void OpenEditor(char key = 0);

  Session& session_;
  FrameLinks links_;
  views::RegisterCells& cells_;
  BlinkingMark mark_{*this};
};

}  // namespace brevant::gui
