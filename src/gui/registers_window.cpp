// SPDX-License-Identifier: MIT
#include "gui/registers_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "base/text_number.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {

RegistersWindow::RegistersWindow(views::RegisterCells& cells, std::function<void(char)> open_editor,
                                 const QFont& font)
    : TextView(font), cells_(cells), open_editor_(std::move(open_editor)) {
  setObjectName("MDI_Regs");
  setAccessibleName("Regs");
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QSize RegistersWindow::sizeHint() const {
  return {views::RegisterCells::kCells * views::RegisterCells::kCellWidth * cell().width,
          2 * cell().height};
}

void RegistersWindow::CellsChanged() {
  cells_.Resize(viewport()->width(), cell().width);
}

void RegistersWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const auto cells = cells_.Cells();
  for (int i = 0; i < views::RegisterCells::kCells; ++i) {
    const auto [column, row] = cells_.PositionOf(i);
    const views::RegisterCell& shown = cells[static_cast<std::size_t>(i)];
    DrawText(painter, column * views::RegisterCells::kCellWidth, row, Text(shown.text),
             shown.changed ? Red() : Normal());
  }
  if (!mark_.shown()) return;
  const auto [column, row] = cells_.PositionOf(cells_.selected());
  InvertCells(painter, cell(),
              column * views::RegisterCells::kCellWidth + views::RegisterCells::kCaretColumn, row,
              views::RegisterCells::kCaretWidth);
}

void RegistersWindow::Select(int cell) {
  cells_.Select(cell);
  mark_.Blink(hasFocus());
}

void RegistersWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) {
    open_editor_(0);
    return;
  }
  const QPoint at = event->position().toPoint();
  if (const auto hit = cells_.HitTest(at.x(), at.y(), cell().width, cell().height)) Select(*hit);
}

void RegistersWindow::mouseDoubleClickEvent(QMouseEvent*) {
  open_editor_(0);
}

void RegistersWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      return Select(cells_.selected() - 1);
    case Qt::Key_Right:
      return Select(cells_.selected() + 1);
    case Qt::Key_Up:
      return Select(cells_.selected() - cells_.cells_per_row());
    case Qt::Key_Down:
      return Select(cells_.selected() + cells_.cells_per_row());
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return open_editor_(0);
    default:
      break;
  }
  const std::string typed = Bytes(event->text());
  if (typed.size() == 1 && base::IsHexField(typed)) {
    open_editor_(typed.front());
  } else {
    event->ignore();
  }
}

}  // namespace brevant::gui
