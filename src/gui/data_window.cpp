// SPDX-License-Identifier: MIT
#include "gui/data_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

constexpr int kUsualColumns = 66;
constexpr int kUsualLines = 16;
// A cell is hit from half a character before it on.
constexpr int kFirstHitColumn = views::kFirstCellColumn - 1;

}  // namespace

DataWindow::DataWindow(Session& session, FrameLinks links, const QFont& font)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, session.debugger.memory, session.debugger.activity,
            session.data_settings()) {
  setObjectName("MDI_Data");
  setAccessibleName("Data");
}

QSize DataWindow::sizeHint() const {
  return {kUsualColumns * cell().width, kUsualLines * cell().height};
}

void DataWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

DataWindow::ScrollBarState DataWindow::BarState() const {
  const int shift = view_.settings().scroll_shift();
  const int total = view_.settings().total_lines();
  return {shift == 0 ? total : total >> shift, view_.state().lineCount, view_.ScrollPosition()};
}

void DataWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const views::DataLine& line : view_.lines()) {
    DrawText(painter, 0, row++, Text(line.text), Normal());
  }
  if (!mark_.shown() || view_.lines().empty()) return;
  const int width = view_.settings().cell_width();
  InvertCells(painter, cell(), views::kFirstCellColumn + view_.state().cursorColumn * width,
              view_.state().cursorRow, width - 1);
}

void DataWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint at = event->position().toPoint();
  const int width = view_.settings().cell_width() * cell().width;
  const int first = kFirstHitColumn * cell().width;
  const int column = (at.x() - first) / width;
  const int row = at.y() / cell().height;
  const bool on_a_cell = at.x() >= first && column < view_.settings().cells() && at.y() >= 0 &&
                         row < static_cast<int>(view_.lines().size());
  if (on_a_cell) view_.MoveCursor(column, row);
  mark_.Blink(true);
}

void DataWindow::keyPressEvent(QKeyEvent* event) {
  const views::DataViewState& state = view_.state();
  switch (event->key()) {
    case Qt::Key_Home:
      return view_.MoveCursor(0, state.cursorRow);
    case Qt::Key_End:
      return view_.MoveCursor(view_.settings().cells() - 1, state.cursorRow);
    case Qt::Key_Left:
      return view_.MoveCursor(state.cursorColumn - 1, state.cursorRow);
    case Qt::Key_Right:
      return view_.MoveCursor(state.cursorColumn + 1, state.cursorRow);
    default:
      if (!ScrollByKey(event->key())) event->ignore();
  }
}

}  // namespace brevant::gui
