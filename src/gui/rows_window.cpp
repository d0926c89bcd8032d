// SPDX-License-Identifier: MIT
#include "gui/rows_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kRowsColumns = 60;
constexpr int kRowsLines = 16;

}  // namespace

RowsWindow::RowsWindow(Gate& gate, FrameLinks links, const QFont& font)
    : ScrollingView(gate, std::move(links), font) {
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QSize RowsWindow::sizeHint() const {
  return {kRowsColumns * cell().width, kRowsLines * cell().height};
}

QStringList RowsWindow::TextLines() const {
  QStringList lines;
  for (int n = 0; n < rows().count(); ++n) {
    const views::FoldedRow row = rows().At(n);
    lines << Text(row.left + row.text) + (row.changed ? ", changed" : "");
  }
  return lines;
}

int RowsWindow::LongestLine() const {
  qsizetype longest = 0;
  for (int n = 0; n < rows().count(); ++n) {
    const views::FoldedRow row = rows().At(n);
    longest = std::max(longest, Text(row.left + row.text).size());
  }
  return static_cast<int>(longest);
}

QPoint RowsWindow::PopupPlace() const {
  return {cell().width, cell().height * (rows().cursor() - rows().top() + 1)};
}

void RowsWindow::CellsChanged() {
  rows().Resize(viewport()->height(), cell().height);
}

RowsWindow::ScrollBarState RowsWindow::BarState() const {
  return {rows().last_position(), rows().lines(), rows().top()};
}

void RowsWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const int first = rows().top();
  const int most = viewport()->height() / cell().height + 1;
  const int end = std::min(first + most, rows().count());
  for (int n = first; n < end; ++n) {
    const views::FoldedRow shown = rows().At(n);
    const int row = n - first;
    const bool at_cursor = n == rows().cursor();
    ValueColours colours = ColoursOf(shown.changed, at_cursor);
    if (shown.on_request && !at_cursor) colours.value = Colours(ColourRole::OnRequest);
    if (at_cursor) FillRow(painter, row, colours.text);
    const QString left = Text(shown.left);
    DrawText(painter, 0, row, left, colours.text);
    DrawText(painter, static_cast<int>(left.size()), row, Text(shown.text), colours.value);
  }
}

void RowsWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  const QPoint at = event->position().toPoint();
  const int row = at.y() / cell().height;
  if (!rows().ToggleAt(row, ColumnAt(at.x()))) rows().MoveCursor(rows().top() + row);
}

void RowsWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(EditCommand());
}

void RowsWindow::keyPressEvent(QKeyEvent* event) {
  if (ScrollSideways(*event)) return;
  switch (event->key()) {
    case Qt::Key_Up:
      return rows().MoveCursor(rows().cursor() - 1);
    case Qt::Key_Down:
      return rows().MoveCursor(rows().cursor() + 1);
    case Qt::Key_Home:
      return rows().MoveCursor(0);
    case Qt::Key_End:
      return rows().MoveCursor(rows().count());
    case Qt::Key_Left:
    case Qt::Key_Right:
      return rows().Unfold(event->key() == Qt::Key_Right);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return links_.send_command(EditCommand());
    default:
      break;
  }
  if (!ScrollByKey(event->key())) event->ignore();
}

}  // namespace brevant::gui
