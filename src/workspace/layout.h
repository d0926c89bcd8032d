// SPDX-License-Identifier: MIT
// The places of all windows, as section "window" of the settings file keeps them from one run to
// the next. Children are placed in the frame's client area. All numbers are pixels.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_file.h"

namespace brevant::workspace {

struct WindowPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const WindowPlace&) const = default;
};

enum class SizeState { Restored = 0, Minimized = 1, Maximized = 2 };

struct FramePlace {
  WindowPlace place;
  int state = 0;  // of SizeState
  bool operator==(const FramePlace&) const = default;
};

// Nothing: on saving, a window that is not restored, whose key keeps its older place; on reading, a
// key that is absent or malformed, so that the window gets its default place.
using ChildPlace = std::optional<WindowPlace>;

// How section "window" keeps the windows of one kind.
struct WindowKeys {
  enum class HowMany { One, AtMostOne, Many };
  static constexpr std::size_t kMostAttributes = 2;

  HowMany how_many;
  const base::SettingsKey* count;  // how many are open; nullptr: always one
  const base::SettingsKey* place;  // of the n-th
  // Numbers of the n-th window's own, with their defaults; nullptr: none.
  std::array<const base::SettingsKey*, kMostAttributes> attributes = {};
};
using WindowAttributes = std::array<int, WindowKeys::kMostAttributes>;

struct SavedWindow {
  ChildPlace place = {};
  WindowAttributes attributes = {};
  bool operator==(const SavedWindow&) const = default;
};

// windows[k] are those of the k-th kind, in the order in which they were opened. Keys of kinds that
// are not asked for stay as they are.
struct Layout {
  std::optional<FramePlace> frame = {};
  std::vector<std::vector<SavedWindow>> windows = {};
  bool operator==(const Layout&) const = default;
};

// Everything that is stored, at most 100 windows of a kind.
Layout ReadLayout(const base::SettingsFile& settings, std::span<const WindowKeys> kinds);
// False when nothing could be stored.
bool SaveLayout(base::SettingsFile& settings, std::span<const WindowKeys> kinds,
                const Layout& layout);
// What is stored at every exit, even when the layout is not.
bool SaveAttributes(base::SettingsFile& settings, std::span<const WindowKeys> kinds,
                    const Layout& layout);

// "left,top,width,height"; further fields are ignored. Nothing unless all four are integers.
std::optional<WindowPlace> ParseWindowPlace(std::string_view text);
std::string FormatWindowPlace(const WindowPlace& place);
// The same with the frame's size state.
std::optional<FramePlace> ParseFramePlace(std::string_view text);
std::string FormatFramePlace(const FramePlace& frame);

// What is saved of a child: edges left of the client area are brought to 0.
WindowPlace SavedPlace(int left, int top, int right, int bottom);
// Where a saved child goes: inside the saved frame, never without extent. Nothing, so the default
// place, unless both are known.
ChildPlace PlaceChild(const std::optional<FramePlace>& frame, const ChildPlace& saved);

}  // namespace brevant::workspace
