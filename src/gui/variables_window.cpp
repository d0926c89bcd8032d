// SPDX-License-Identifier: MIT
#include "gui/variables_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "gui/edit_dialogs.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kUsualColumns = 60;
constexpr int kUsualLines = 16;
constexpr int kMostTyped = 80;

}  // namespace

VariablesWindow::VariablesWindow(Session& session, FrameLinks links, const QFont& font,
                                 const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      session_(session),
      view_(session.views, {session.debugger.memory, session.debugger.debug_info,
                            session.debugger.frame, session.debugger.activity}) {
  setObjectName("MDI_Vars");
  setAccessibleName("Variables");
}

QSize VariablesWindow::sizeHint() const {
  return {kUsualColumns * cell().width, kUsualLines * cell().height};
}

std::optional<PopupItem> VariablesWindow::ItemOf(int command) const {
  if (command != commands::kVariablesEdit) return std::nullopt;
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = view_.Editable() != nullptr};
}

QStringList VariablesWindow::TextLines() const {
  QStringList lines;
  for (const views::ValueRow& row : view_.rows()) {
    lines << Text(row.Left() + row.text) + (row.changed ? ", changed" : "");
  }
  return lines;
}

QString VariablesWindow::CursorText() const {
  return Text(view_.Explain());
}

void VariablesWindow::EditValue() {
  const views::ValueRow* const row = view_.Editable();
  if (row == nullptr) return;
  const EditRequest request{
      .title = "EDIT: " + row->name, .text = row->text, .max_length = kMostTyped};
  AskForText(window(), view_font(), request,
             [this](std::string_view text) { return view_.Assign(text); });
}

QPoint VariablesWindow::PopupPlace() const {
  return {cell().width, cell().height * (view_.cursor() - view_.top() + 1)};
}

void VariablesWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

VariablesWindow::ScrollBarState VariablesWindow::BarState() const {
  return {view_.last_position(), view_.lines(), view_.top()};
}

void VariablesWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const auto& rows = view_.rows();
  const int first = view_.top();
  const int most = viewport()->height() / cell().height + 1;
  const int end = std::min(first + most, static_cast<int>(rows.size()));
  for (int n = first; n < end; ++n) {
    const views::ValueRow& shown = rows[static_cast<std::size_t>(n)];
    const int row = n - first;
    const bool at_cursor = n == view_.cursor();
    const ValueColours colours = ColoursOf(shown.changed, at_cursor);
    if (at_cursor) FillRow(painter, row, colours.text);
    const QString left = Text(shown.Left());
    DrawText(painter, 0, row, left, colours.text);
    DrawText(painter, static_cast<int>(left.size()), row, Text(shown.text), colours.value);
  }
}

void VariablesWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  const QPoint at = event->position().toPoint();
  const int row = at.y() / cell().height;
  if (!view_.ToggleAt(row, at.x() / cell().width)) view_.MoveCursor(view_.top() + row);
}

void VariablesWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(commands::kVariablesEdit);
}

void VariablesWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      return view_.MoveCursor(view_.cursor() - 1);
    case Qt::Key_Down:
      return view_.MoveCursor(view_.cursor() + 1);
    case Qt::Key_Home:
      return view_.MoveCursor(0);
    case Qt::Key_End:
      return view_.MoveCursor(static_cast<int>(view_.rows().size()));
    case Qt::Key_Left:
    case Qt::Key_Right:
      return view_.Unfold(event->key() == Qt::Key_Right);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return links_.send_command(commands::kVariablesEdit);
    default:
      break;
  }
  if (!ScrollByKey(event->key())) event->ignore();
}

}  // namespace brevant::gui
