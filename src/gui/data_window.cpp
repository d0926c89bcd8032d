// SPDX-License-Identifier: MIT
#include "gui/data_window.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <array>

#include "base/text_number.h"
#include "gui/edit_dialogs.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "views/location_editor.h"
#include "views/messages.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kSpareColumns = 3;  // for the scroll bar
constexpr int kDataLines = 16;

struct MarkOfBytes {
  views::DataMark mark;
  ColourRole colour;
  const char* spoken;
};
constexpr std::array kMarks{
    MarkOfBytes{views::DataMark::Changed, ColourRole::Changed, ", changed:"},
    MarkOfBytes{views::DataMark::OnRequest, ColourRole::OnRequest, ", read only by Refresh:"}};

}  // namespace

DataWindow::DataWindow(Session& session, FrameLinks links, const QFont& font,
                       const workspace::WindowAttributes& starting)
    : ScrollingView(session.gate, std::move(links), font),
      session_(session),
      attribute_(starting[1]),
      view_(session.views, session.debugger.memory, session.debugger.activity,
            session.data_settings(), starting[0]) {
  setObjectName("MDI_Data");
  setAccessibleName("Data");
}

QSize DataWindow::sizeHint() const {
  const views::DataSettings& settings = view_.settings();
  const int columns = settings.CharacterColumn(settings.bytes_per_line) + kSpareColumns;
  return {columns * cell().width, kDataLines * cell().height};
}

workspace::WindowAttributes DataWindow::Attributes() const {
  return {view_.state().topLine, attribute_};
}

std::optional<PopupItem> DataWindow::ItemOf(int command) const {
  const views::DataSettings& settings = view_.settings();
  switch (command) {
    case commands::kDataPerLine:
      return PopupItem{QString("Toggle data per line (%1)").arg(settings.bytes_per_line)};
    case commands::kDataUnit:
      return PopupItem{settings.unit == views::DataUnit::Bytes ? "Display as BYTE"
                                                               : "Display as WORD"};
    case commands::kDataAscii:
      return PopupItem{"Display ASCII data", settings.characters};
    default:
      return std::nullopt;
  }
}

QStringList DataWindow::TextLines() const {
  QStringList lines;
  for (const views::DataLine& line : view_.lines()) {
    QString& text = lines.emplace_back(Text(line.text));
    for (const MarkOfBytes& row : kMarks) {
      QString marked;
      for (base::Address i = 0; i < line.bytes.size(); ++i) {
        if (line.bytes[i].mark == row.mark)
          marked += QString(" %1").arg(line.address + i, 4, 16, QChar('0'));
      }
      if (!marked.isEmpty()) text += row.spoken + marked;
    }
  }
  return lines;
}

QString DataWindow::Explain(const views::DataCell& cell) const {
  return Text(view_.Explain(cell, session_.debugger.debug_info));
}

QString DataWindow::CursorText() const {
  return Explain(view_.cursor());
}

bool DataWindow::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return ScrollingView::viewportEvent(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const auto under = view_.HitTest(help->pos().x(), help->pos().y(), cell());
  QToolTip::showText(help->globalPos(), under ? Explain(*under) : QString(), this);
  return true;
}

QPoint DataWindow::PopupPlace() const {
  const views::DataViewState& state = view_.state();
  return {
      cell().width * (views::kFirstCellColumn + state.cursorColumn * view_.settings().cell_width()),
      cell().height * (state.cursorRow + 1)};
}

void DataWindow::EditCell(char key) {
  const control::Activity& activity = session_.debugger.activity;
  if (activity.FileIoActive() || activity.Busy() || view_.lines().empty()) return;
  views::LocationEditor editor(session_.debugger.memory, view_.settings().unit,
                               view_.CursorCellAddress(), session_.ui);
  const EditRequest request{.title = editor.Title(),
                            .text = key != 0 ? std::string(1, key) : editor.initial_text(),
                            .max_length = editor.max_length(),
                            .typing_continues = key != 0};
  AskForText(window(), view_font(), request, [&editor](std::string_view text) {
    return editor.Accept(text) ? std::string() : views::messages::kExpectHex;
  });
}

void DataWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

DataWindow::ScrollBarState DataWindow::BarState() const {
  return {view_.settings().last_position(), view_.state().lineCount, view_.ScrollPosition()};
}

void DataWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const views::DataLine& line : view_.lines()) PaintLine(painter, row++, line);
  if (!mark_.shown() || view_.lines().empty()) return;
  const int width = view_.settings().cell_width();
  InvertCells(painter, cell(), views::kFirstCellColumn + view_.state().cursorColumn * width,
              view_.state().cursorRow, width - 1);
}

void DataWindow::PaintLine(QPainter& painter, int row, const views::DataLine& line) const {
  const views::DataSettings& settings = view_.settings();
  QString plain = Text(line.text);
  const auto draw = [&](int column, int count, ColourRole colour) {
    if (column >= plain.size()) return;
    DrawText(painter, column, row, plain.mid(column, count), Colours(colour));
    plain.replace(column, count, QString(count, ' '));
  };
  for (int n = 0; n < static_cast<int>(line.bytes.size()); ++n) {
    const views::DataMark mark = line.bytes[static_cast<std::size_t>(n)].mark;
    const auto* const marked = std::ranges::find(kMarks, mark, &MarkOfBytes::mark);
    if (marked == kMarks.end()) continue;
    draw(settings.ByteColumn(n), views::kByteDigits, marked->colour);
    draw(settings.CharacterColumn(n), 1, marked->colour);
  }
  DrawText(painter, 0, row, plain, Colours(ColourRole::Text));
}

void DataWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setFocus();
  const QPoint at = event->position().toPoint();
  const auto hit = view_.HitTest(at.x(), at.y(), cell());
  if (hit) view_.MoveCursor(hit->column, hit->row);
  mark_.Blink(true);
}

void DataWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(commands::kDataEdit);
}

void DataWindow::keyPressEvent(QKeyEvent* event) {
  const views::DataViewState& state = view_.state();
  switch (event->key()) {
    case Qt::Key_Home:
      return view_.MoveCursor(0, state.cursorRow);
    case Qt::Key_End:
      return view_.MoveCursor(view_.settings().cells() - 1, state.cursorRow);
    case Qt::Key_Left:
      return view_.MoveCursor(state.cursorColumn - 1, state.cursorRow);
    case Qt::Key_Right:
      return view_.MoveCursor(state.cursorColumn + 1, state.cursorRow);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return links_.send_command(commands::kDataEdit);
    default:
      break;
  }
  const std::string typed = Bytes(event->text());
  if (typed.size() == 1 && base::IsHexField(typed)) {
    links_.carry_out([this, key = typed.front()] { EditCell(key); });
  } else if (!ScrollByKey(event->key())) {
    event->ignore();
  }
}

}  // namespace brevant::gui
