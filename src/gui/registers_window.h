// SPDX-License-Identifier: MIT
// The window of the six register cells. It paints the cells and the blinking mark of the selected
// one, and asks for the editor when the user clicks or types.
#pragma once

#include <functional>

#include "gui/blinking_mark.h"
#include "gui/text_view.h"
#include "views/register_cells.h"

namespace brevant::gui {

class RegistersWindow final : public TextView {
 public:
  // open_editor gets the key that was typed, 0 for none.
  RegistersWindow(views::RegisterCells& cells, std::function<void(char key)> open_editor,
                  const QFont& font);

  // All cells in one row.
  QSize sizeHint() const override;
  bool OfTheMoment() const override { return true; }

 protected:
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Select(int cell);

  views::RegisterCells& cells_;
  std::function<void(char)> open_editor_;
  BlinkingMark mark_{*this};
};

}  // namespace brevant::gui
