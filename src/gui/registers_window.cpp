// SPDX-License-Identifier: MIT
#include "gui/registers_window.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>

#include "base/text_number.h"
#include "gui/edit_dialogs.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"

namespace brevant::gui {

RegistersWindow::RegistersWindow(Session& session, FrameLinks links, const QFont& font,
                                 const workspace::WindowAttributes&)
    : TextView(font), session_(session), links_(std::move(links)), cells_(session.registers) {
  setObjectName("MDI_Regs");
  setAccessibleName("Regs");
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QSize RegistersWindow::sizeHint() const {
  return {views::RegisterCells::kCells * views::RegisterCells::kCellWidth * cell().width,
          2 * cell().height};
}

int RegistersWindow::heightForWidth(int width) const {
  return views::RegisterCells::RowsIn(width, cell().width) * cell().height;
}

QStringList RegistersWindow::TextLines() const {
  QStringList lines;
  for (const views::RegisterCell& shown : cells_.Cells()) {
    lines << Text(shown.text).trimmed() + (shown.changed ? ", changed" : "");
  }
  return lines;
}

void RegistersWindow::CellsChanged() {
  cells_.Resize(viewport()->width(), cell().width);
  QScrollBar* const bar = verticalScrollBar();
  const int rows = views::RegisterCells::RowsIn(viewport()->width(), cell().width);
  const int fitting = std::max(viewport()->height() / cell().height, 1);
  bar->setRange(0, std::max(rows - fitting, 0));
  bar->setPageStep(fitting);
  ShowSelected();
}

int RegistersWindow::RowInSight(int row) const {
  return row - verticalScrollBar()->value();
}

void RegistersWindow::ShowSelected() {
  QScrollBar* const bar = verticalScrollBar();
  const int row = cells_.PositionOf(cells_.selected()).row;
  bar->setValue(std::clamp(bar->value(), row - bar->pageStep() + 1, row));
}

void RegistersWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const auto cells = cells_.Cells();
  for (int i = 0; i < views::RegisterCells::kCells; ++i) {
    const auto [column, row] = cells_.PositionOf(i);
    const views::RegisterCell& shown = cells[static_cast<std::size_t>(i)];
    DrawText(painter, column * views::RegisterCells::kCellWidth, RowInSight(row), Text(shown.text),
             Colours(shown.changed ? ColourRole::Changed : ColourRole::Text));
  }
  if (!mark_.shown()) return;
  const auto [column, row] = cells_.PositionOf(cells_.selected());
  InvertCells(painter, cell(),
              column * views::RegisterCells::kCellWidth + views::RegisterCells::kCaretColumn,
              RowInSight(row), views::RegisterCells::kCaretWidth);
}

QPoint RegistersWindow::InCells(QPoint at) const {
  return {at.x(), at.y() + verticalScrollBar()->value() * cell().height};
}

void RegistersWindow::Select(int cell) {
  cells_.Select(cell);
  ShowSelected();
  mark_.Blink(hasFocus());
}

void RegistersWindow::OpenEditor(char key) {
  links_.carry_out([this, key] {
    const control::Activity& activity = session_.debugger.activity;
    if (activity.FileIoActive() || activity.Busy()) return;
    views::RegisterEditor editor = cells_.OpenEditor(key);
    EditRequest request{.title = editor.caption(),
                        .text = editor.initial_text(),
                        .max_length = editor.max_length(),
                        .typing_continues = editor.typing_continues()};
    AskForText(window(), view_font(), request, [&editor](std::string_view text) {
      return editor.Accept(text) ? std::string() : editor.expected();
    });
    cells_.UpdateChangeFlags();
  });
}

void RegistersWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) {
    OpenEditor();
    return;
  }
  const QPoint at = InCells(event->position().toPoint());
  if (const auto hit = cells_.HitTest(at.x(), at.y(), cell().width, cell().height)) Select(*hit);
}

void RegistersWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  const QPoint at = InCells(event->position().toPoint());
  if (const auto under = cells_.CellAt(at.x(), at.y(), cell().width, cell().height)) {
    Select(*under);
  }
  OpenEditor();
}

bool RegistersWindow::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return TextView::viewportEvent(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const QPoint at = InCells(help->pos());
  const auto under = cells_.CellAt(at.x(), at.y(), cell().width, cell().height);
  QToolTip::showText(help->globalPos(), under ? Text(cells_.Explain(*under)) : QString(), this);
  return true;
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
      return OpenEditor();
    default:
      break;
  }
  const std::string typed = Bytes(event->text());
  if (typed.size() == 1 && base::IsHexField(typed)) {
    OpenEditor(typed.front());
  } else {
    event->ignore();
  }
}

}  // namespace brevant::gui
