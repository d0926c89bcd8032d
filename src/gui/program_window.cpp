// SPDX-License-Identifier: MIT
#include "gui/program_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "views/aligned_line.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

const QString kPcMarker = QStringLiteral("\u25BA");
constexpr int kGutterColumns = 3;  // a dot, an arrow and a gap
constexpr int kArrowColumn = 2;
constexpr int kUsualColumns = 64;
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

QString ProgramWindow::LineText(const views::ProgramLine& line) const {
  return Text(theme().aligned_labels ? views::AlignedText(line.text, line.length)
                                     : views::ExpandTabs(line.text));
}

QStringList ProgramWindow::TextLines() const {
  QStringList lines;
  for (const views::ProgramLine& line : view_->Lines()) {
    lines << LineText(line) + (line.is_pc ? ", PC" : "") +
                 (line.has_breakpoint ? ", breakpoint" : "");
  }
  return lines;
}

int ProgramWindow::GutterColumns() const {
  return theme().gutter ? kGutterColumns : 0;
}

void ProgramWindow::PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const {
  const QString text = LineText(line).leftJustified(views::kDrawnCharacters, ' ', true);
  TextColours highlighted = Colours(ColourRole::Text);
  if (line.is_pc) highlighted = Colours(ColourRole::PcText, ColourRole::PcLine);
  if (line.is_cursor) {
    highlighted = Colours(line.is_pc ? ColourRole::PcTextOnCursorLine : ColourRole::CursorText,
                          ColourRole::CursorLine);
  }
  const int first = GutterColumns();
  DrawText(painter, first, row, text.left(views::kHighlightColumn), Colours(ColourRole::Text));
  DrawText(painter, first + views::kHighlightColumn, row, text.mid(views::kHighlightColumn),
           highlighted);
  PaintMarks(painter, row, line);
}

void ProgramWindow::PaintMarks(QPainter& painter, int row, const views::ProgramLine& line) const {
  if (line.is_pc) {
    DrawText(painter, theme().gutter ? kArrowColumn : views::kPcMarkerColumn, row, kPcMarker,
             Colours(ColourRole::PcMark));
  }
  if (!line.has_breakpoint) return;
  if (!theme().gutter) {
    InvertCells(painter, cell(), 0, row, views::kAddressColumns);
    return;
  }
  const int size = cell().width;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Colours(ColourRole::BreakpointMark).text);
  painter.drawEllipse(QRect(1, row * cell().height + (cell().height - size) / 2, size, size));
  painter.restore();
}

void ProgramWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint at = event->position().toPoint();
  gate_.Run([&] {
    view_->Click(at.x() - GutterColumns() * cell().width, at.y(), cell());
    links_.follow_engine();
  });
}

void ProgramWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(workspace::commands::kPopupEdit);
}

QPoint ProgramWindow::PopupPlace() const {
  return {cell().width * (GutterColumns() + views::kHighlightColumn),
          cell().height * (view_->state().cursorLine + 1)};
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
