// SPDX-License-Identifier: MIT
#include "gui/window_layout.h"

#include <QGuiApplication>
#include <QMdiArea>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "gui/first_arrangement.h"
#include "gui/main_window.h"

namespace brevant::gui {
namespace {

constexpr QSize kDefaultFrame(900, 700);
constexpr QSize kDesktopMargin(40, 60);

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

void SizeFrame(MainWindow& window, const std::optional<workspace::FramePlace>& frame) {
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  window.resize(frame ? QSize(std::max(frame->place.width, 1), std::max(frame->place.height, 1))
                      : kDefaultFrame.boundedTo(screen - kDesktopMargin));
}

void PlaceFrame(MainWindow& window, const workspace::FramePlace& frame) {
  const QPoint at(frame.place.left, frame.place.top);
  // Moving the widget would place the inside of a window that has been made but not shown, and the
  // frame would creep up by the height of its title bar from one run to the next.
  if (OnAScreen({at, window.size()})) window.windowHandle()->setFramePosition(at);
  if (frame.state == static_cast<int>(workspace::SizeState::Maximized)) {
    window.setWindowState(Qt::WindowMaximized);
  }
}

void PlaceChildAt(QMdiSubWindow& child, const workspace::ChildPlace& place) {
  if (place) child.setGeometry(place->left, place->top, place->width, place->height);
}

std::vector<workspace::WindowKeys> StoredKinds() {
  std::vector<workspace::WindowKeys> stored;
  for (const WindowKind& kind : WindowKinds()) stored.push_back(kind.stored);
  return stored;
}

// As the windows stand now.
workspace::Layout CurrentLayout(const MainWindow& window) {
  workspace::Layout layout;
  const QPoint at = window.pos();
  layout.frame = {{at.x(), at.y(), window.width(), window.height()}, SizeStateOf(window)};
  for (const WindowKind& kind : WindowKinds()) {
    std::vector<workspace::SavedWindow>& windows = layout.windows.emplace_back();
    for (const ChildWindow* child : window.Children(kind)) {
      windows.push_back(
          {PlaceOf(*child), static_cast<const TextView*>(child->widget())->Attributes()});
    }
  }
  return layout;
}

}  // namespace

void RestoreLayout(MainWindow& window, const base::SettingsFile& settings) {
  const workspace::Layout layout = workspace::ReadLayout(settings, StoredKinds());
  SizeFrame(window, layout.frame);
  // The area for children gets its size only now.
  window.ensurePolished();
  window.LayOutNow();
  if (layout.frame) PlaceFrame(window, *layout.frame);
  const auto& count = base::keys::kProgramWindowCount;
  if (!settings.Has(count.section, count.key)) {
    ChildWindow& program = window.Open(kProgramKind);
    new FirstArrangement(window.area(), *window.Children(kRegistersKind).front(), program);
  }
  for (std::size_t k = 0; k < layout.windows.size(); ++k) {
    const WindowKind& kind = WindowKinds()[k];
    for (const workspace::SavedWindow& saved : layout.windows[k]) {
      // Those that are always there are open already, and are not to become the active one.
      QMdiSubWindow& child =
          kind.Permanent() ? *window.Children(kind).front() : window.Open(kind, saved.attributes);
      PlaceChildAt(child, workspace::PlaceChild(layout.frame, saved.place));
    }
  }
}

void ReturnToPlace(QMdiSubWindow& child, const WindowKind& kind,
                   const base::SettingsFile& settings) {
  PlaceChildAt(child, workspace::ParseWindowPlace(settings.String(*kind.stored.place)));
}

bool StoreLayout(const MainWindow& window, base::SettingsFile& settings) {
  return workspace::SaveLayout(settings, StoredKinds(), CurrentLayout(window));
}

bool StoreAttributes(const MainWindow& window, base::SettingsFile& settings) {
  return workspace::SaveAttributes(settings, StoredKinds(), CurrentLayout(window));
}

}  // namespace brevant::gui
