// SPDX-License-Identifier: MIT
#include "gui/trace_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "control/trace_rows.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kTraceColumns = 72;
constexpr int kTraceLines = 18;

}  // namespace

TraceWindow::TraceWindow(Session& session, FrameLinks links, const QFont& font,
                         const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, session.debugger.trace) {
  setObjectName("MDI_Trace");
  setAccessibleName("Trace");
}

QSize TraceWindow::sizeHint() const {
  return {kTraceColumns * cell().width, kTraceLines * cell().height};
}

QStringList TraceWindow::TextLines() const {
  QStringList lines;
  for (const std::string& line : view_.lines()) lines << Text(line);
  return lines;
}

QString TraceWindow::CursorText() const {
  if (view_.line_count() == 0) return {};
  QString text = QString("%1: line %2 of %3")
                     .arg(Text(view_.path()))
                     .arg(view_.cursor() + 1)
                     .arg(view_.line_count());
  const control::TraceRecord* const record = view_.UnderCursor();
  const std::string writes = record != nullptr ? control::WritesText(*record) : std::string();
  if (!writes.empty()) text += ", writes " + Text(writes);
  return text;
}

std::optional<PopupItem> TraceWindow::ItemOf(int command) const {
  const auto item = [command](bool enabled) {
    return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                     .enabled = enabled};
  };
  switch (command) {
    case commands::kTraceGoTo:
      return item(view_.UnderCursor() != nullptr);
    case commands::kTraceFind:
    case commands::kTraceExport:
      return item(view_.line_count() > 0);
    case commands::kTraceFindNext:
      return item(view_.line_count() > 0 && !view_.search_text().empty());
    default:
      return std::nullopt;
  }
}

QPoint TraceWindow::PopupPlace() const {
  return {cell().width, cell().height * (TextCursorLine() + 1)};
}

void TraceWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

TraceWindow::ScrollBarState TraceWindow::BarState() const {
  return {view_.line_count(), view_.rows(), view_.top()};
}

void TraceWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const TextColours cursor = Colours(ColourRole::CursorText, ColourRole::CursorLine);
  int row = 0;
  for (const QString& line : TextLines()) {
    const bool at_cursor = row == TextCursorLine() && view_.line_count() > 0;
    if (at_cursor) FillRow(painter, row, cursor);
    DrawText(painter, 0, row++, line, at_cursor ? cursor : Colours(ColourRole::Text));
  }
}

void TraceWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  view_.MoveCursor(view_.top() + event->position().toPoint().y() / cell().height);
  links_.send_command(commands::kTraceGoTo);
}

void TraceWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    links_.send_command(commands::kTraceGoTo);
  } else if (!ScrollByKey(event->key())) {
    event->ignore();
  }
}

}  // namespace brevant::gui
