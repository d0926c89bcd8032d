// SPDX-License-Identifier: MIT
#include "gui/code_window.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

const QString kPcMarker = QStringLiteral("\u25BA");
constexpr int kGutterColumns = 3;  // a dot, an arrow and a gap
constexpr int kArrowColumn = 2;

}  // namespace

bool CodeWindow::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return ScrollingView::viewportEvent(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const std::string word = WordAt(help->pos());
  QToolTip::showText(help->globalPos(), word.empty() ? QString() : Text(links_.describe(word)),
                     this);
  return true;
}

int CodeWindow::GutterColumns() const {
  return theme().gutter ? kGutterColumns : 0;
}

TextColours CodeWindow::LineColours(const LineMarks& marks) const {
  if (marks.is_cursor) {
    return Colours(marks.is_pc ? ColourRole::PcTextOnCursorLine : ColourRole::CursorText,
                   ColourRole::CursorLine);
  }
  return marks.is_pc ? Colours(ColourRole::PcText, ColourRole::PcLine) : Colours(ColourRole::Text);
}

void CodeWindow::PaintMarks(QPainter& painter, int row, const LineMarks& marks, int pc_column,
                            int breakpoint_columns) const {
  if (marks.is_pc) {
    DrawText(painter, theme().gutter ? kArrowColumn : pc_column, row, kPcMarker,
             Colours(ColourRole::PcMark));
  }
  if (!marks.has_breakpoint) return;
  if (!theme().gutter) {
    InvertCells(painter, cell(), 0, row, breakpoint_columns);
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

QString SpokenMarks(const LineMarks& marks) {
  return QString(marks.is_pc ? ", PC" : "") + (marks.has_breakpoint ? ", breakpoint" : "");
}

}  // namespace brevant::gui
