// SPDX-License-Identifier: MIT
#include "gui/blinking_mark.h"

#include <QEvent>

namespace brevant::gui {
namespace {

constexpr int kBlinkMs = 700;

}  // namespace

BlinkingMark::BlinkingMark(QAbstractScrollArea& window) : window_(window) {
  window.installEventFilter(this);
  connect(&timer_, &QTimer::timeout, this, [this] {
    shown_ = !shown_;
    window_.viewport()->update();
  });
}

void BlinkingMark::Blink(bool on) {
  shown_ = on;
  if (on) {
    timer_.start(kBlinkMs);
  } else {
    timer_.stop();
  }
  window_.viewport()->update();
}

bool BlinkingMark::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) Blink(true);
  if (event->type() == QEvent::FocusOut) Blink(false);
  return QObject::eventFilter(watched, event);
}

}  // namespace brevant::gui
