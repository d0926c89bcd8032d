// SPDX-License-Identifier: MIT
#include "gui/window_layout.h"

#include <QGuiApplication>
#include <QMdiArea>
#include <QScreen>
#include <algorithm>

#include "gui/main_window.h"

namespace brevant::gui {
namespace {

constexpr QSize kDefaultFrame(900, 700);
constexpr QSize kDesktopMargin(40, 60);
constexpr int kGap = 4;
constexpr int kTitleBarAllowance = 44;  // title bar and borders of a child
constexpr int kLeastProgramHeight = 200;

workspace::ChildPlace PlaceOf(const QMdiSubWindow& child) {
  if (child.isMinimized() || child.isMaximized()) return std::nullopt;
  const QRect at = child.geometry();
  return workspace::SavedPlace(at.x(), at.y(), at.x() + at.width(), at.y() + at.height());
}

int SizeStateOf(const QWidget& window) {
  if (window.isMinimized()) return static_cast<int>(workspace::SizeState::Minimized);
  return static_cast<int>(window.isMaximized() ? workspace::SizeState::Maximized
                                               : workspace::SizeState::Restored);
}

// A place on a screen that is no longer there would leave nothing to be seen.
bool OnAScreen(const QRect& place) {
  const auto screens = QGuiApplication::screens();
  return std::ranges::any_of(screens, [&](const QScreen* screen) {
    return screen->availableGeometry().intersects(place);
  });
}

void PlaceFrame(MainWindow& window, const std::optional<workspace::FramePlace>& frame) {
  if (!frame) {
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    window.resize(kDefaultFrame.boundedTo(screen - kDesktopMargin));
    return;
  }
  const workspace::WindowPlace& place = frame->place;
  const QRect at(place.left, place.top, std::max(place.width, 1), std::max(place.height, 1));
  if (OnAScreen(at)) window.move(at.topLeft());
  window.resize(at.size());
  if (frame->state == static_cast<int>(workspace::SizeState::Maximized)) {
    window.setWindowState(Qt::WindowMaximized);
  }
}

void PlaceChildAt(QMdiSubWindow& child, const workspace::ChildPlace& place) {
  if (place) child.setGeometry(place->left, place->top, place->width, place->height);
}

// The registers in one row over a program window that fills the rest.
void PlaceByDefault(MainWindow& window, bool opens_program) {
  QMdiSubWindow& registers = *window.Children(kRegistersKind).front();
  const int line = static_cast<TextView*>(registers.widget())->cell().height;
  const int registers_height = line + kTitleBarAllowance;
  const int width = window.area().width() - 2 * kGap;
  registers.setGeometry(kGap, kGap, width, registers_height);
  if (!opens_program) return;
  QMdiSubWindow& program = window.Open(kProgramKind);
  const int top = registers_height + 2 * kGap;
  program.setGeometry(kGap, top, width,
                      std::max(window.area().height() - top - kGap, kLeastProgramHeight));
}

}  // namespace

workspace::Layout CurrentLayout(const MainWindow& window) {
  workspace::Layout layout;
  const QPoint at = window.pos();
  layout.frame = {{at.x(), at.y(), window.width(), window.height()}, SizeStateOf(window)};
  layout.registers = PlaceOf(*window.Children(kRegistersKind).front());
  for (const QMdiSubWindow* child : window.Children(kProgramKind)) {
    layout.programs.push_back(PlaceOf(*child));
  }
  return layout;
}

void RestoreLayout(MainWindow& window, const base::SettingsFile& settings) {
  const workspace::Layout layout = workspace::ReadLayout(settings);
  PlaceFrame(window, layout.frame);
  // The area for children gets its size only now.
  window.ensurePolished();
  window.LayOutNow();
  const auto& count = base::keys::kProgramWindowCount;
  PlaceByDefault(window, !settings.Has(count.section, count.key));
  PlaceChildAt(*window.Children(kRegistersKind).front(),
               workspace::PlaceChild(layout.frame, layout.registers));
  for (const workspace::ChildPlace& place : layout.programs) {
    PlaceChildAt(window.Open(kProgramKind), workspace::PlaceChild(layout.frame, place));
  }
}

bool StoreLayout(const MainWindow& window, base::SettingsFile& settings) {
  return workspace::SaveLayout(settings, CurrentLayout(window));
}

}  // namespace brevant::gui
