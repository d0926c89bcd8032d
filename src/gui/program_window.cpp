// SPDX-License-Identifier: MIT
#include "gui/program_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "views/aligned_line.h"
#include "views/source_characters.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

constexpr int kProgramColumns = 64;
constexpr int kProgramLines = 20;

}  // namespace

ProgramWindow::ProgramWindow(Session& session, FrameLinks links, const QFont& font,
                             const workspace::WindowAttributes&)
    : CodeWindow(session.gate, std::move(links), font),
      views_(session.program_views),
      view_(views_.Open()) {
  setObjectName("MDI_Prog");
  setAccessibleName("Program");
}

QSize ProgramWindow::sizeHint() const {
  return {kProgramColumns * cell().width, kProgramLines * cell().height};
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
  for (const views::ProgramLine& line : view_->Lines()) {
    for (const std::string& source : line.source) {
      DrawText(painter, GutterColumns() + views::kHighlightColumn, row++, Text(source),
               Colours(ColourRole::SourceLine));
    }
    PaintLine(painter, row++, line);
  }
}

QString ProgramWindow::LineText(const views::ProgramLine& line) const {
  return Text(theme().aligned_labels ? views::AlignedText(line.text, line.length)
                                     : views::ExpandTabs(line.text));
}

QStringList ProgramWindow::TextLines() const {
  QStringList lines;
  for (const views::ProgramLine& line : view_->Lines()) {
    for (const std::string& source : line.source) {
      lines << QString(views::kHighlightColumn, ' ') + Text(source);
    }
    lines << LineText(line) + SpokenMarks(MarksOf(line));
  }
  return lines;
}

void ProgramWindow::PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const {
  const QString text = LineText(line).leftJustified(views::kDrawnCharacters, ' ', true);
  const int first = GutterColumns();
  DrawText(painter, first, row, text.left(views::kHighlightColumn), Colours(ColourRole::Text));
  DrawText(painter, first + views::kHighlightColumn, row, text.mid(views::kHighlightColumn),
           LineColours(MarksOf(line)));
  PaintMarks(painter, row, MarksOf(line), views::kPcMarkerColumn, views::kAddressColumns);
}

std::string ProgramWindow::WordAt(QPoint at) const {
  if (at.y() < 0) return {};
  return views::WordAround(Bytes(TextLines().value(at.y() / cell().height)),
                           at.x() / cell().width - GutterColumns());
}

std::optional<PopupItem> ProgramWindow::ItemOf(int command) const {
  if (command != workspace::commands::kShowSource) return std::nullopt;
  return PopupItem{.text = Text(workspace::FindCommand(command)->text),
                   .checked = views_.shows_source()};
}

void ProgramWindow::mousePressEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  // The popup menu acts on the line under the pointer.
  if (event->button() == Qt::RightButton) view_->PlaceCursor(at.y() / cell().height);
  if (event->button() != Qt::LeftButton) return;
  gate_.Run([&] {
    view_->Click(at.x() - GutterColumns() * cell().width, at.y(), cell());
    links_.follow_engine();
  });
}

void ProgramWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  // A source line cannot be edited.
  const int row = event->position().toPoint().y() / cell().height;
  const bool between = row < TextLines().size() && !view_->LineAtRow(row);
  if (event->button() != Qt::LeftButton || between) return;
  links_.send_command(workspace::commands::kPopupEdit);
}

QPoint ProgramWindow::PopupPlace() const {
  return {cell().width * (GutterColumns() + views::kHighlightColumn),
          cell().height * (TextCursorLine() + 1)};
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
