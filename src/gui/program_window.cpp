// SPDX-License-Identifier: MIT
#include "gui/program_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

const QString kPcMarker = QStringLiteral("\u25BA");
constexpr int kUsualColumns = 56;
constexpr int kUsualLines = 20;

}  // namespace

ProgramWindow::ProgramWindow(Session& session, FrameLinks links, const QFont& font,
                             const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      views_(session.program_views),
      view_(views_.Open()) {
  setObjectName("MDI_Prog");
  setAccessibleName("Program");
}

QSize ProgramWindow::sizeHint() const {
  return {kUsualColumns * cell().width, kUsualLines * cell().height};
}

void ProgramWindow::CellsChanged() {
  view_->Resize(viewport()->height(), cell().height);
}

ProgramWindow::ScrollBarState ProgramWindow::BarState() const {
  return {views_.range().maximum, view_->state().lineCount, view_->ScrollPosition()};
}

void ProgramWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const views::ProgramLine& line : view_->Lines()) PaintLine(painter, row++, line);
}

void ProgramWindow::PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const {
  const QString text =
      Text(views::ExpandTabs(line.text)).leftJustified(views::kDrawnCharacters, ' ', true);
  TextColours highlighted = line.is_pc ? Red() : Normal();
  if (line.is_cursor) highlighted = line.is_pc ? CursorRed() : Cursor();
  DrawText(painter, 0, row, text.left(views::kHighlightColumn), Normal());
  DrawText(painter, views::kHighlightColumn, row, text.mid(views::kHighlightColumn), highlighted);
  if (line.is_pc) DrawText(painter, views::kPcMarkerColumn, row, kPcMarker, Red());
  if (line.has_breakpoint) InvertCells(painter, cell(), 0, row, views::kAddressColumns);
}

void ProgramWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint at = event->position().toPoint();
  gate_.Run([&] {
    view_->Click(at.x(), at.y(), cell());
    links_.follow_engine();
  });
}

void ProgramWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(workspace::commands::kPopupEdit);
}

QPoint ProgramWindow::PopupPlace() const {
  return {cell().width * views::kHighlightColumn, cell().height * (view_->state().cursorLine + 1)};
}

void ProgramWindow::keyPressEvent(QKeyEvent* event) {
  const bool moves_cursor = event->modifiers().testFlag(Qt::ControlModifier);
  if (moves_cursor && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
    MoveCursor(event->key() == Qt::Key_Up ? -1 : 1);
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    links_.send_command(workspace::commands::kPopupEdit);
    return;
  }
  if (!ScrollByKey(event->key())) event->ignore();
}

void ProgramWindow::MoveCursor(int by) {
  view_->MoveCursor(view_->state().cursorLine + by);
  viewport()->update();
}

}  // namespace brevant::gui
