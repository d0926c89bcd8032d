// SPDX-License-Identifier: MIT
#include "gui/scrolling_view.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <optional>

#include "gui/accessible_text.h"

namespace brevant::gui {
namespace {

using views::ScrollCode;

constexpr int kWheelNotch = 120;
constexpr int kLinesANotch = 3;
constexpr int kColumnsAKey = 4;

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

ScrollingView::ScrollingView(Gate& gate, FrameLinks links, const QFont& font)
    : TextView(font), gate_(gate), links_(std::move(links)) {
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  connect(verticalScrollBar(), &QScrollBar::actionTriggered, this,
          [this](int action) { OnScrollBar(action); });
}

void ScrollingView::ShowChanges() {
  if (painted_ == shown().version()) return;
  painted_ = shown().version();
  TellReaders(*this);
  FitColumns();
  viewport()->update();
  QScrollBar* const bar = verticalScrollBar();
  if (bar->isSliderDown()) return;
  const ScrollBarState state = BarState();
  const QSignalBlocker quiet(bar);
  bar->setRange(0, state.maximum);
  bar->setPageStep(std::max(state.page, 1));
  bar->setValue(state.position);
}

void ScrollingView::OnScrollBar(int action) {
  const auto code = CodeOfAction(action);
  if (!code) return;
  QScrollBar* const bar = verticalScrollBar();
  Scroll(*code, bar->sliderPosition());
  // Only the view knows where a line or a page leads.
  if (code != ScrollCode::ThumbTrack) bar->setSliderPosition(BarState().position);
}

bool ScrollingView::ScrollByKey(int key) {
  const auto* const known = std::ranges::find(kScrollKeys, key, &ScrollKey::key);
  if (known == kScrollKeys.end()) return false;
  Scroll(known->code, 0);
  return true;
}

bool ScrollingView::ScrollSideways(const QKeyEvent& event) {
  const bool left = event.key() == Qt::Key_Left;
  if ((!left && event.key() != Qt::Key_Right) || event.modifiers() != Qt::ShiftModifier) {
    return false;
  }
  QScrollBar* const bar = horizontalScrollBar();
  bar->setValue(bar->value() + (left ? -kColumnsAKey : kColumnsAKey));
  return true;
}

void ScrollingView::contextMenuEvent(QContextMenuEvent* event) {
  const bool by_keyboard = event->reason() == QContextMenuEvent::Keyboard;
  links_.show_popup(*this,
                    by_keyboard ? viewport()->mapToGlobal(PopupPlace()) : event->globalPos());
}

void ScrollingView::wheelEvent(QWheelEvent* event) {
  const QPoint turned = event->angleDelta();
  if (std::abs(turned.x()) > std::abs(turned.y())) return TextView::wheelEvent(event);
  wheel_rest_ += event->angleDelta().y();
  const int notches = wheel_rest_ / kWheelNotch;
  wheel_rest_ %= kWheelNotch;
  gate_.Run([&] {
    for (int i = 0; i < std::abs(notches) * kLinesANotch; ++i) {
      Scroll(notches > 0 ? ScrollCode::LineUp : ScrollCode::LineDown, 0);
      links_.follow_engine();
    }
  });
  event->accept();
}

}  // namespace brevant::gui
