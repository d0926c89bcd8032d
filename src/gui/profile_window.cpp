// SPDX-License-Identifier: MIT
#include "gui/profile_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kBarColumn = 56;  // behind the texts
constexpr int kBarColumns = 24;
constexpr int kProfileLines = 16;

}  // namespace

ProfileWindow::ProfileWindow(Session& session, FrameLinks links, const QFont& font,
                             const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, session.debugger.trace, session.debugger.debug_info) {
  setObjectName("MDI_Profile");
  setAccessibleName("Profile");
}

QSize ProfileWindow::sizeHint() const {
  return {(kBarColumn + kBarColumns + 2) * cell().width, kProfileLines * cell().height};
}

std::optional<PopupItem> ProfileWindow::ItemOf(int command) const {
  if (command != commands::kProfileGoTo) return std::nullopt;
  const views::ProfileLine* const line = view_.UnderCursor();
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = line != nullptr && line->address.has_value()};
}

QStringList ProfileWindow::TextLines() const {
  QStringList lines;
  for (auto n = static_cast<std::size_t>(view_.top()); n < view_.lines().size(); ++n) {
    lines << Text(view_.lines()[n].text);
  }
  return lines;
}

QPoint ProfileWindow::PopupPlace() const {
  return {cell().width, cell().height * (TextCursorLine() + 1)};
}

void ProfileWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

ProfileWindow::ScrollBarState ProfileWindow::BarState() const {
  const int last = std::max(static_cast<int>(view_.lines().size()) - view_.rows(), 0);
  return {last, view_.rows(), view_.top()};
}

void ProfileWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const QStringList lines = TextLines();
  for (int row = 0; row < lines.size(); ++row) {
    const int index = view_.top() + row;
    const views::ProfileLine& line = view_.lines()[static_cast<std::size_t>(index)];
    const bool at_cursor = row == TextCursorLine();
    const TextColours colours = at_cursor ? Colours(ColourRole::CursorText, ColourRole::CursorLine)
                                          : Colours(ColourRole::Text);
    DrawText(painter, 0, row, lines[row].leftJustified(kBarColumn - 1), colours);
    const int width = static_cast<int>(line.share * kBarColumns * cell().width);
    painter.fillRect(kBarColumn * cell().width, row * cell().height + 2, width, cell().height - 4,
                     Colours(ColourRole::CodeMark).text);
  }
}

void ProfileWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  view_.MoveCursor(view_.top() + event->position().toPoint().y() / cell().height);
  links_.send_command(commands::kProfileGoTo);
}

void ProfileWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    links_.send_command(commands::kProfileGoTo);
  } else if (!ScrollByKey(event->key())) {
    event->ignore();
  }
}

}  // namespace brevant::gui
