// SPDX-License-Identifier: MIT
#include "gui/watch_window.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "views/watch_file.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kWatchColumns = 46;
constexpr int kWatchLines = 8;
constexpr int kPartColumn = views::kWatchLabelWidth - 1;  // below the mark of the entry
constexpr const char* kNothingWatched = "Nothing is watched: Insert adds a variable.";
constexpr const char* kFileHolds = "%1 holds %2: Open config, or loading the program, reads them.";

// What a list that was kept beside the program can be had back by.
QString HintFor(const Session& session) {
  const std::string path = views::WatchFilePath(session.recent_files.current());
  const auto kept = views::LoadWatchFile(path, session.debugger.debug_info).items.size();
  if (kept == 0) return kNothingWatched;
  return QString(kFileHolds).arg(QFileInfo(Text(path)).fileName()).arg(kept);
}

// Every byte of a string is a character of its own; a zero byte is a small dot.
QString CellsOf(const std::string& value) {
  return QString::fromLatin1(value.data(), static_cast<qsizetype>(value.size()))
      .replace(QChar(views::kShownZero), QChar(0xB7));
}

// Where there is none, an expression says why.
QString ValueOf(const views::WatchItem& item) {
  if (!item.as_c.empty()) return Text(item.as_c);
  const QString value = CellsOf(item.ValueText());
  return item.held == views::Held::Current || item.problem.empty()
             ? value
             : value + "  (" + Text(item.problem) + ')';
}

}  // namespace

WatchWindow::WatchWindow(Session& session, FrameLinks links, const QFont& font,
                         const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      table_(session.watch),
      view_(session.views, session.watch,
            {session.debugger.memory, session.debugger.debug_info, session.debugger.frame,
             session.debugger.activity},
            session.settings.Integer(base::keys::kWatchAsC) != 0),
      hint_(HintFor(session)) {
  setObjectName("MDI_Watch");
  setAccessibleName("Watch");
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QSize WatchWindow::sizeHint() const {
  return {kWatchColumns * cell().width, kWatchLines * cell().height};
}

bool WatchWindow::IsEnabled(int command) const {
  switch (command) {
    case commands::kWatchMoveUp:
      return table_.CanMoveUp();
    case commands::kWatchMoveDown:
      return table_.CanMoveDown();
    case commands::kWatchEdit:
    case commands::kWatchModify:
    case commands::kWatchDelete:
      return table_.count() > 0;
    default:
      return true;
  }
}

std::optional<PopupItem> WatchWindow::ItemOf(int command) const {
  if (command == commands::kWatchAsC) {
    return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                     .checked = view_.as_c()};
  }
  if (IsEnabled(command)) return std::nullopt;
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = false};
}

QStringList WatchWindow::TextLines() const {
  QStringList lines;
  for (const views::WatchItem& item : table_.items()) {
    lines << Text(item.Label()) + ValueOf(item) + (item.changed ? ", changed" : "");
    for (int below = 1; below <= item.RowsBelow(); ++below) {
      const views::ValueRow& part = item.values.rows()[static_cast<std::size_t>(below)];
      lines << Text(part.Left() + part.text) + (part.changed ? ", changed" : "");
    }
  }
  if (lines.isEmpty()) lines << hint_;
  return lines;
}

int WatchWindow::LongestLine() const {
  qsizetype longest = 0;
  for (const views::WatchItem& item : table_.items()) {
    longest = std::max(longest, views::kWatchLabelWidth + ValueOf(item).size());
    for (int below = 1; below <= item.RowsBelow(); ++below) {
      const views::ValueRow& part = item.values.rows()[static_cast<std::size_t>(below)];
      longest = std::max(longest, kPartColumn + Text(part.Left() + part.text).size());
    }
  }
  return static_cast<int>(longest);
}

QString WatchWindow::CursorText() const {
  return Text(view_.Explain());
}

QPoint WatchWindow::PopupPlace() const {
  return {cell().width * views::kWatchLabelWidth, cell().height * (table_.cursor() + 1)};
}

void WatchWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

WatchWindow::ScrollBarState WatchWindow::BarState() const {
  return {table_.last_position(), table_.rows(), table_.top()};
}

void WatchWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  if (table_.count() == 0) DrawText(painter, 0, 0, hint_, Colours(ColourRole::Stale));
  const int rows_in_sight = viewport()->height() / cell().height + 1;
  const int last = std::min(table_.LineCount(), table_.top() + rows_in_sight);
  for (int line = table_.top(); line < last; ++line) {
    PaintLine(painter, line - table_.top(), table_.PlaceOf(line));
  }
}

void WatchWindow::PaintLine(QPainter& painter, int row,
                            const views::WatchTable::Place& place) const {
  const views::WatchItem& item = table_.items()[static_cast<std::size_t>(place.entry)];
  const bool at_cursor = row == table_.cursor();
  if (place.below > 0) {
    const views::ValueRow& part = item.values.rows()[static_cast<std::size_t>(place.below)];
    const ValueColours colours = ColoursOf(part.changed, at_cursor);
    if (at_cursor) FillRow(painter, row, colours.text);
    const QString left = Text(part.Left());
    DrawText(painter, kPartColumn, row, left, colours.text);
    DrawText(painter, kPartColumn + static_cast<int>(left.size()), row, Text(part.text),
             colours.value);
    return;
  }
  const ValueColours colours = ColoursOf(item.changed, at_cursor);
  if (at_cursor) FillRow(painter, row, colours.text);
  DrawText(painter, 0, row, Text(item.Label()), colours.text);
  DrawText(painter, views::kWatchLabelWidth, row, ValueOf(item), colours.value);
}

void WatchWindow::mousePressEvent(QMouseEvent* event) {
  setFocus();
  const QPoint at = event->position().toPoint();
  const int row = at.y() / cell().height;
  // The popup menu acts on what the pointer shows.
  view_.PlaceCursor(row);
  if (event->button() != Qt::LeftButton) return;
  view_.ToggleAt(row, ColumnAt(at.x()));
}

void WatchWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(commands::kWatchEdit);
}

void WatchWindow::keyPressEvent(QKeyEvent* event) {
  if (ScrollSideways(*event)) return;
  switch (event->key()) {
    case Qt::Key_Up:
      return view_.MoveCursor(-1);
    case Qt::Key_Down:
      return view_.MoveCursor(1);
    case Qt::Key_Home:
      return view_.MoveCursor(-table_.LineCount());
    case Qt::Key_End:
      return view_.MoveCursor(table_.LineCount());
    case Qt::Key_Left:
    case Qt::Key_Right:
      return view_.Unfold(event->key() == Qt::Key_Right);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return links_.send_command(commands::kWatchEdit);
    default:
      break;
  }
  if (!ScrollByKey(event->key())) event->ignore();
}

}  // namespace brevant::gui
