// SPDX-License-Identifier: MIT
#include "gui/source_window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <chrono>

#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kSourceColumns = 90;
constexpr int kSourceLines = 24;
constexpr std::chrono::seconds kCheckFileEvery{1};
constexpr int kWheelDegrees = 40;  // a character, in eighths of a degree
constexpr int kSideways = 4;       // characters a key press
constexpr int kAllTheWay = 1 << 20;

struct KindColour {
  views::TextKind kind;
  ColourRole colour;
};
constexpr std::array kKindColours{KindColour{views::TextKind::Plain, ColourRole::Text},
                                  KindColour{views::TextKind::Keyword, ColourRole::Keyword},
                                  KindColour{views::TextKind::Comment, ColourRole::Comment},
                                  KindColour{views::TextKind::Number, ColourRole::Number},
                                  KindColour{views::TextKind::String, ColourRole::String}};

}  // namespace

SourceWindow::SourceWindow(Session& session, FrameLinks links, const QFont& font,
                           const workspace::WindowAttributes&)
    : CodeWindow(session.gate, std::move(links), font),
      run_control_(session.debugger.run_control),
      view_(session.views, {session.source_files,
                            session.debugger.frame,
                            run_control_,
                            {session.debugger.memory, session.debugger.breakpoints,
                             session.debugger.activity, session.settings, session.ui},
                            [&session] { return session.recent_files.current(); }}) {
  setObjectName("MDI_Csrc");
  setAccessibleName("Source");
  startTimer(kCheckFileEvery);
}

SourceWindow::~SourceWindow() {
  run_control_.SetSourceViewCurrent(false);
}

QSize SourceWindow::sizeHint() const {
  return {kSourceColumns * cell().width, kSourceLines * cell().height};
}

void SourceWindow::timerEvent(QTimerEvent*) {
  view_.CheckFile();
}

void SourceWindow::ShowChanges() {
  CodeWindow::ShowChanges();
  const std::string& path = view_.state().path;
  const QString title = path.empty() ? "Source" : Text(path);
  if (parentWidget()->windowTitle() != title) parentWidget()->setWindowTitle(title);
}

std::optional<PopupItem> SourceWindow::ItemOf(int command) const {
  const views::SourceViewState& state = view_.state();
  const auto item = [command](bool enabled) {
    return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                     .enabled = enabled};
  };
  switch (command) {
    case commands::kSourceRunToCursor:
    case commands::kSourceToggleBreakpoint:
      return item(view_.CursorAddress().has_value());
    case commands::kSourceFind:
    case commands::kSourceGoToLine:
      return item(state.loaded);
    case commands::kFindNext:
      return item(state.loaded && !state.searchText.empty());
    case commands::kSourceTabSize:
      return PopupItem{.text = QString("Tab size\t%1").arg(state.tabSize)};
    case commands::kSourceFindFile:
      return item(!view_.FileName().empty());
    default:
      return std::nullopt;
  }
}

QString SourceWindow::NumberText(const views::SourceRow& row) const {
  return QString::number(row.number).leftJustified(view_.MarkColumn()) +
         (row.has_code ? QChar(0xB7) : QChar(' '));
}

QStringList SourceWindow::TextLines() const {
  QStringList lines;
  for (const std::string& line : view_.problem()) lines << Text(line);
  for (const views::SourceRow& row : view_.Rows()) {
    lines << NumberText(row) + Text(row.text) + SpokenMarks(MarksOf(row));
  }
  return lines;
}

QString SourceWindow::CursorText() const {
  return Text(view_.Explain());
}

std::string SourceWindow::WordAt(QPoint at) const {
  return view_.WordAt(at.x() - GutterColumns() * cell().width, at.y(), cell());
}

QPoint SourceWindow::PopupPlace() const {
  return {cell().width * (GutterColumns() + view_.TextColumn()),
          cell().height * (view_.state().cursor + 1)};
}

void SourceWindow::CellsChanged() {
  const int columns = GutterColumns() + view_.TextColumn();
  view_.Resize(viewport()->width() - columns * cell().width, viewport()->height(), cell());
}

SourceWindow::ScrollBarState SourceWindow::BarState() const {
  return {view_.state().lineCount, view_.state().rows, view_.state().top};
}

void SourceWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const std::string& line : view_.problem()) {
    DrawText(painter, 0, row++, Text(line), Colours(ColourRole::Text));
  }
  for (const views::SourceRow& line : view_.Rows()) PaintRow(painter, row++, line);
}

void SourceWindow::PaintRow(QPainter& painter, int row, const views::SourceRow& line) const {
  DrawText(painter, GutterColumns(), row, NumberText(line).left(view_.MarkColumn()),
           Colours(ColourRole::Text));
  if (line.has_code && (theme().gutter || !MarksOf(line).is_pc)) {
    DrawText(painter, GutterColumns() + view_.MarkColumn(), row, QChar(0xB7),
             Colours(ColourRole::CodeMark));
  }
  PaintText(painter, row, line);
  PaintMarks(painter, row, MarksOf(line), view_.MarkColumn(), view_.MarkColumn());
}

void SourceWindow::PaintText(QPainter& painter, int row, const views::SourceRow& line) const {
  const int left = view_.state().left;
  const int first = GutterColumns() + view_.TextColumn();
  const QList<uint> text = Text(line.text).toUcs4();
  const TextColours plain = LineColours(MarksOf(line));
  const auto draw = [&](int from, int to, const TextColours& colours) {
    from = std::max(from, left);
    to = std::min(to, static_cast<int>(text.size()));
    if (from >= to) return;
    const QString part =
        QString::fromUcs4(reinterpret_cast<const char32_t*>(text.constData()) + from, to - from);
    DrawText(painter, first + from - left, row, part, colours);
  };
  // The whole line has the colour behind it, however short its text is.
  DrawText(painter, first, row, QString(view_.state().columns, ' '), plain);
  int done = 0;
  for (const views::TextSpan& span : line.spans) {
    const auto* const known = std::ranges::find(kKindColours, span.kind, &KindColour::kind);
    TextColours coloured = plain;
    if (!MarksOf(line).is_pc) coloured.text = Colours(known->colour).text;
    draw(done, span.column, plain);
    done = span.column + span.count;
    draw(span.column, done, coloured);
  }
  draw(done, static_cast<int>(text.size()), plain);
}

void SourceWindow::mousePressEvent(QMouseEvent* event) {
  setFocus();
  const QPoint at = event->position().toPoint();
  // The popup menu acts on the line under the pointer.
  if (event->button() == Qt::RightButton) view_.MoveCursor(at.y() / cell().height);
  if (event->button() != Qt::LeftButton) return;
  gate_.Run([&] {
    view_.Click(at.x() - GutterColumns() * cell().width, at.y(), cell());
    links_.follow_engine();
  });
}

void SourceWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (MissesItsFile()) {
    links_.send_command(commands::kSourceFindFile);
  } else {
    mousePressEvent(event);
  }
}

void SourceWindow::wheelEvent(QWheelEvent* event) {
  const bool turned = event->modifiers().testFlag(Qt::ShiftModifier);
  const int sideways = turned ? event->angleDelta().y() : event->angleDelta().x();
  if (sideways == 0) return CodeWindow::wheelEvent(event);
  view_.ScrollSideways(-sideways / kWheelDegrees);
  event->accept();
}

void SourceWindow::keyPressEvent(QKeyEvent* event) {
  const bool moves_cursor = (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (!moves_cursor) break;
      return view_.MoveCursor(view_.state().cursor + (event->key() == Qt::Key_Up ? -1 : 1));
    case Qt::Key_Left:
      return view_.ScrollSideways(-kSideways);
    case Qt::Key_Right:
      return view_.ScrollSideways(kSideways);
    case Qt::Key_Home:
      return view_.ScrollSideways(-kAllTheWay);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!MissesItsFile()) break;
      return links_.send_command(commands::kSourceFindFile);
    default:
      break;
  }
  if (!ScrollByKey(event->key())) event->ignore();
}

}  // namespace brevant::gui
