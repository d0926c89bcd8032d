// SPDX-License-Identifier: MIT
#include "gui/program_window.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <optional>

#include "gui/qt_user_interface.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

using views::ScrollCode;

const QString kPcMarker = QStringLiteral("\u25BA");
constexpr int kWheelNotch = 120;
constexpr int kLinesANotch = 3;
constexpr int kUsualColumns = 56;
constexpr int kUsualLines = 20;

struct ScrollKey {
  int key;
  ScrollCode code;
};
constexpr std::array kScrollKeys{ScrollKey{Qt::Key_Up, ScrollCode::LineUp},
                                 ScrollKey{Qt::Key_Down, ScrollCode::LineDown},
                                 ScrollKey{Qt::Key_PageUp, ScrollCode::PageUp},
                                 ScrollKey{Qt::Key_PageDown, ScrollCode::PageDown}};

std::optional<ScrollCode> CodeOfAction(int action) {
  switch (action) {
    case QAbstractSlider::SliderSingleStepSub:
      return ScrollCode::LineUp;
    case QAbstractSlider::SliderSingleStepAdd:
      return ScrollCode::LineDown;
    case QAbstractSlider::SliderPageStepSub:
      return ScrollCode::PageUp;
    case QAbstractSlider::SliderPageStepAdd:
      return ScrollCode::PageDown;
    case QAbstractSlider::SliderToMinimum:
    case QAbstractSlider::SliderToMaximum:
    case QAbstractSlider::SliderMove:
      return ScrollCode::ThumbTrack;
    default:
      return std::nullopt;
  }
}

}  // namespace

ProgramWindow::ProgramWindow(views::ProgramViews& views, Gate& gate, FrameLinks links,
                             const QFont& font)
    : TextView(font), views_(views), gate_(gate), links_(std::move(links)), view_(views.Open()) {
  setObjectName("MDI_Prog");
  setAccessibleName("Program");
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  view_.SetInvalidate([this] {
    needs_update_ = true;
    viewport()->update();
  });
  connect(verticalScrollBar(), &QScrollBar::actionTriggered, this,
          [this](int action) { OnScrollBar(action); });
}

ProgramWindow::~ProgramWindow() {
  views_.Close(view_);
}

QSize ProgramWindow::sizeHint() const {
  return {kUsualColumns * cell().width, kUsualLines * cell().height};
}

void ProgramWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

void ProgramWindow::UpdateIfNeeded() {
  if (!needs_update_) return;
  needs_update_ = false;
  view_.Update();
  ShowPosition();
  viewport()->update();
}

void ProgramWindow::ShowPosition() {
  QScrollBar* const bar = verticalScrollBar();
  if (bar->isSliderDown()) return;
  const QSignalBlocker quiet(bar);
  bar->setRange(0, views_.range().maximum);
  bar->setPageStep(std::max(view_.state().lineCount, 1));
  bar->setValue(view_.ScrollPosition());
}

void ProgramWindow::OnScrollBar(int action) {
  const auto code = CodeOfAction(action);
  if (!code) return;
  QScrollBar* const bar = verticalScrollBar();
  view_.Scroll(*code, bar->sliderPosition());
  // Only the view knows where a line or a page leads.
  if (code != ScrollCode::ThumbTrack) bar->setSliderPosition(view_.ScrollPosition());
}

void ProgramWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const views::ProgramLine& line : view_.Lines()) PaintLine(painter, row++, line);
}

void ProgramWindow::PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const {
  const QString text =
      Text(views::ExpandTabs(line.text)).leftJustified(views::kDrawnCharacters, ' ', true);
  TextColours highlighted = line.is_pc ? Red() : Normal();
  if (line.is_cursor) highlighted = line.is_pc ? CursorRed() : Cursor();
  DrawText(painter, 0, row, text.left(views::kHighlightColumn), Normal());
  DrawText(painter, views::kHighlightColumn, row, text.mid(views::kHighlightColumn), highlighted);
  if (line.is_pc) DrawText(painter, views::kPcMarkerColumn, row, kPcMarker, Red());
  if (line.has_breakpoint) InvertCells(painter, cell(), 0, row, views::kAddressColumns);
}

void ProgramWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint at = event->position().toPoint();
  gate_.Run([&] {
    if (view_.Click(at.x(), at.y(), cell())) views_.RepaintProgramWindows();
  });
}

void ProgramWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) links_.send_command(workspace::commands::kPopupEdit);
}

void ProgramWindow::contextMenuEvent(QContextMenuEvent* event) {
  const QPoint keyboard_place(cell().width * views::kHighlightColumn,
                              cell().height * (view_.state().cursorLine + 1));
  links_.program_popup()->popup(event->reason() == QContextMenuEvent::Keyboard
                                    ? viewport()->mapToGlobal(keyboard_place)
                                    : event->globalPos());
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
  const auto* const key =
      std::find_if(kScrollKeys.begin(), kScrollKeys.end(),
                   [event](const ScrollKey& known) { return known.key == event->key(); });
  if (key != kScrollKeys.end()) {
    view_.Scroll(key->code);
  } else {
    event->ignore();
  }
}

void ProgramWindow::MoveCursor(int by) {
  view_.MoveCursor(view_.state().cursorLine + by);
  viewport()->update();
}

void ProgramWindow::wheelEvent(QWheelEvent* event) {
  wheel_rest_ += event->angleDelta().y();
  const int notches = wheel_rest_ / kWheelNotch;
  wheel_rest_ %= kWheelNotch;
  gate_.Run([&] {
    for (int i = 0; i < std::abs(notches) * kLinesANotch; ++i) {
      view_.Scroll(notches > 0 ? ScrollCode::LineUp : ScrollCode::LineDown);
      UpdateIfNeeded();
    }
  });
  event->accept();
}

}  // namespace brevant::gui
