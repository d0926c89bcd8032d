// SPDX-License-Identifier: MIT
#include "gui/call_stack_window.h"

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

constexpr int kCallStackColumns = 48;
constexpr int kCallStackLines = 8;

}  // namespace

CallStackWindow::CallStackWindow(Session& session, FrameLinks links, const QFont& font,
                                 const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, {session.debugger.memory, session.debugger.debug_info,
                            session.debugger.frame, session.debugger.activity}) {
  setObjectName("MDI_Calls");
  setAccessibleName("Call stack");
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QSize CallStackWindow::sizeHint() const {
  return {kCallStackColumns * cell().width, kCallStackLines * cell().height};
}

std::optional<PopupItem> CallStackWindow::ItemOf(int command) const {
  if (command != commands::kCallGoTo) return std::nullopt;
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = view_.UnderCursor() != nullptr};
}

QStringList CallStackWindow::TextLines() const {
  QStringList lines;
  for (auto n = static_cast<std::size_t>(view_.state().top); n < view_.lines().size(); ++n) {
    lines << Text(view_.lines()[n]);
  }
  return lines;
}

int CallStackWindow::LongestLine() const {
  qsizetype longest = 0;
  for (const std::string& line : view_.lines()) longest = std::max(longest, Text(line).size());
  return static_cast<int>(longest);
}

QPoint CallStackWindow::PopupPlace() const {
  return {cell().width, cell().height * (TextCursorLine() + 1)};
}

void CallStackWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

CallStackWindow::ScrollBarState CallStackWindow::BarState() const {
  const int last = std::max(static_cast<int>(view_.lines().size()) - view_.state().lineCount, 0);
  return {last, view_.state().lineCount, view_.state().top};
}

void CallStackWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const QStringList lines = TextLines();
  for (int row = 0; row < lines.size(); ++row) {
    const bool at_cursor = row == TextCursorLine() && !view_.frames().empty();
    DrawText(painter, 0, row, lines[row].leftJustified(kCallStackColumns),
             at_cursor ? Colours(ColourRole::CursorText, ColourRole::CursorLine)
                       : Colours(ColourRole::Text));
  }
}

void CallStackWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  const int line = view_.state().top + event->position().toPoint().y() / cell().height;
  if (line >= static_cast<int>(view_.frames().size())) return;
  view_.MoveCursor(line);
  links_.send_command(commands::kCallGoTo);
}

void CallStackWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    links_.send_command(commands::kCallGoTo);
  } else if (!ScrollSideways(*event) && !ScrollByKey(event->key())) {
    event->ignore();
  }
}

}  // namespace brevant::gui
