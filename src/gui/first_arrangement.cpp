// SPDX-License-Identifier: MIT
#include "gui/first_arrangement.h"

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>

namespace brevant::gui {
namespace {

constexpr int kGap = 4;
constexpr int kTitleBarAllowance = 44;  // title bar and borders of a child
constexpr int kBorders = 16;            // of both sides of a child
constexpr int kLeastProgramHeight = 200;

}  // namespace

FirstArrangement::FirstArrangement(QMdiArea& area, QMdiSubWindow& registers, QMdiSubWindow& program)
    : QObject(&area), area_(area), windows_{Placed{&registers, {}}, Placed{&program, {}}} {
  Arrange();
  area.installEventFilter(this);
  for (const Placed& placed : windows_) placed.window->installEventFilter(this);
}

void FirstArrangement::Arrange() {
  const int width = area_.width() - 2 * kGap;
  const int registers_height =
      windows_[0].window->widget()->heightForWidth(width - kBorders) + kTitleBarAllowance;
  const int top = registers_height + 2 * kGap;
  const int program_height = std::max(area_.height() - top - kGap, kLeastProgramHeight);
  arranging_ = true;
  windows_[0].window->setGeometry(kGap, kGap, width, registers_height);
  windows_[1].window->setGeometry(kGap, top, width, program_height);
  arranging_ = false;
  for (Placed& placed : windows_) placed.place = placed.window->geometry();
}

bool FirstArrangement::Rearranged(const QObject* window) const {
  return std::ranges::any_of(windows_, [window](const Placed& placed) {
    return placed.window == window && placed.window->geometry() != placed.place;
  });
}

bool FirstArrangement::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::LayoutRequest:
      if (watched == &area_) {
        Arrange();
      } else if (!arranging_ && Rearranged(watched)) {
        deleteLater();
        area_.removeEventFilter(this);
      }
      break;
    case QEvent::Close:
      deleteLater();
      area_.removeEventFilter(this);
      break;
    default:
      break;
  }
  return false;
}

}  // namespace brevant::gui
