// SPDX-License-Identifier: MIT
#include "gui/stack_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kStackColumns = 96;
constexpr int kStackLines = 12;

}  // namespace

StackWindow::StackWindow(Session& session, FrameLinks links, const QFont& font,
                         const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, {session.debugger.memory, session.debugger.debug_info,
                            session.debugger.frame, session.debugger.activity}) {
  setObjectName("MDI_Stack");
  setAccessibleName("Stack");
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QSize StackWindow::sizeHint() const {
  return {kStackColumns * cell().width, kStackLines * cell().height};
}

std::optional<PopupItem> StackWindow::ItemOf(int command) const {
  if (command != commands::kStackGoToCode) return std::nullopt;
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = view_.CodeUnderCursor().has_value()};
}

QStringList StackWindow::TextLines() const {
  QStringList lines;
  for (const views::StackLine& line : view_.lines()) {
    const bool changed = std::ranges::find(line.changed, true) != line.changed.end();
    lines << Text(line.text) + (changed ? ", changed" : "");
  }
  if (!view_.problem().empty()) lines << Text(view_.problem());
  return lines;
}

int StackWindow::LongestLine() const {
  qsizetype longest = Text(view_.problem()).size();
  for (const views::StackLine& line : view_.lines())
    longest = std::max(longest, Text(line.text).size());
  return static_cast<int>(longest);
}

QString StackWindow::CursorText() const {
  return Text(view_.Explain());
}

QPoint StackWindow::PopupPlace() const {
  return {cell().width * views::StackByteColumn(0), cell().height * (view_.state().cursorLine + 1)};
}

void StackWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

StackWindow::ScrollBarState StackWindow::BarState() const {
  return {view_.last_position(), view_.state().lineCount, view_.state().top};
}

void StackWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const views::StackLine& line : view_.lines()) PaintLine(painter, row++, line);
  if (!view_.problem().empty()) {
    DrawText(painter, 0, 0, Text(view_.problem()), Colours(ColourRole::Text));
  }
}

void StackWindow::PaintLine(QPainter& painter, int row, const views::StackLine& line) const {
  QString text = Text(line.text);
  for (int n = 0; n < static_cast<int>(line.changed.size()); ++n) {
    if (!line.changed[static_cast<std::size_t>(n)]) continue;
    const int column = views::StackByteColumn(n);
    DrawText(painter, column, row, text.mid(column, views::kByteDigits),
             Colours(ColourRole::Changed));
    text.replace(column, views::kByteDigits, QString(views::kByteDigits, ' '));
  }
  const int described = views::StackTextColumn();
  const bool at_cursor = row == view_.state().cursorLine;
  DrawText(painter, 0, row, text.left(described), Colours(ColourRole::Text));
  DrawText(painter, described, row, text.mid(described).leftJustified(kStackColumns - described),
           at_cursor ? Colours(ColourRole::CursorText, ColourRole::CursorLine)
                     : Colours(ColourRole::Text));
}

void StackWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  const int row = event->position().toPoint().y() / cell().height;
  if (row < static_cast<int>(view_.lines().size())) view_.MoveCursor(row);
}

void StackWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(commands::kStackGoToCode);
}

void StackWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    links_.send_command(commands::kStackGoToCode);
  } else if (!ScrollSideways(*event) && !ScrollByKey(event->key())) {
    event->ignore();
  }
}

}  // namespace brevant::gui
