// SPDX-License-Identifier: MIT
#include "workspace/layout.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text_format.h"

namespace brevant::workspace {
namespace {

constexpr int kMostWindows = 100;
constexpr int kSmallestExtent = 100;  // of a window saved without any

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

// The leading comma-separated integers of a text, at most N of them; how many there were.
template <std::size_t N>
std::size_t ScanIntegers(std::string_view text, std::array<int, N>& fields) {
  std::size_t count = 0;
  while (count < N) {
    SkipBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, fields[count]);
    if (error != std::errc()) break;
    ++count;
    if (rest == end || *rest != ',') break;
    text = std::string_view(rest + 1, static_cast<std::size_t>(end - rest - 1));
  }
  return count;
}

int ReadCount(const base::SettingsFile& settings, const WindowKeys& kind) {
  if (kind.count == nullptr) return 1;
  const int most = kind.how_many == WindowKeys::HowMany::Many ? kMostWindows : 1;
  return std::clamp(settings.Integer(*kind.count), 0, most);
}

void StoreAttributes(base::SettingsFile::Change& change, const WindowKeys& kind,
                     const std::vector<SavedWindow>& windows) {
  for (std::size_t n = 0; n < windows.size(); ++n) {
    for (std::size_t i = 0; i < kind.attributes.size(); ++i) {
      if (kind.attributes[i] == nullptr) continue;
      change.Store(*kind.attributes[i], long{windows[n].attributes[i]}, static_cast<int>(n));
    }
  }
}

void StoreWindows(base::SettingsFile::Change& change, const WindowKeys& kind,
                  const std::vector<SavedWindow>& windows) {
  if (kind.count != nullptr) change.Store(*kind.count, static_cast<long>(windows.size()));
  for (std::size_t n = 0; n < windows.size(); ++n) {
    if (!windows[n].place) continue;
    change.Store(*kind.place, FormatWindowPlace(*windows[n].place), static_cast<int>(n));
  }
  StoreAttributes(change, kind, windows);
}

}  // namespace

std::optional<WindowPlace> ParseWindowPlace(std::string_view text) {
  std::array<int, 4> fields{};
  if (ScanIntegers(text, fields) < fields.size()) return std::nullopt;
  return WindowPlace{fields[0], fields[1], fields[2], fields[3]};
}

std::string FormatWindowPlace(const WindowPlace& place) {
  return base::Format("%d,%d,%d,%d", place.left, place.top, place.width, place.height);
}

std::optional<FramePlace> ParseFramePlace(std::string_view text) {
  std::array<int, 5> fields{};
  if (ScanIntegers(text, fields) < fields.size()) return std::nullopt;
  return FramePlace{{fields[0], fields[1], fields[2], fields[3]}, fields[4]};
}

std::string FormatFramePlace(const FramePlace& frame) {
  return base::Format("%s,%d", FormatWindowPlace(frame.place), frame.state);
}

WindowPlace SavedPlace(int left, int top, int right, int bottom) {
  left = std::max(left, 0);
  right = std::max(right, 0);
  return {left, top, right - left, bottom - top};
}

ChildPlace PlaceChild(const std::optional<FramePlace>& frame, const ChildPlace& saved) {
  if (!frame || !saved) return std::nullopt;
  const auto [frame_width, frame_height] = std::pair(frame->place.width, frame->place.height);
  WindowPlace place = *saved;
  if (place.left < 0 || place.left >= frame_width) place.left = 0;
  if (place.top < 0 || place.top >= frame_height) place.top = 0;
  if (place.width < 1) place.width = kSmallestExtent;
  if (place.height < 1) place.height = kSmallestExtent;
  place.width = std::min(place.width, frame_width);
  place.height = std::min(place.height, frame_height);
  return place;
}

Layout ReadLayout(const base::SettingsFile& settings, std::span<const WindowKeys> kinds) {
  Layout layout;
  layout.frame = ParseFramePlace(settings.String(base::keys::kFrameGeometry));
  for (const WindowKeys& kind : kinds) {
    std::vector<SavedWindow>& windows = layout.windows.emplace_back();
    for (int n = 0, count = ReadCount(settings, kind); n < count; ++n) {
      SavedWindow& window = windows.emplace_back();
      window.place = ParseWindowPlace(settings.String(*kind.place, n));
      for (std::size_t i = 0; i < kind.attributes.size(); ++i) {
        if (kind.attributes[i] == nullptr) continue;
        window.attributes[i] = settings.Integer(*kind.attributes[i], n);
      }
    }
  }
  return layout;
}

bool SaveLayout(base::SettingsFile& settings, std::span<const WindowKeys> kinds,
                const Layout& layout) {
  base::SettingsFile::Change change;
  if (layout.frame) change.Store(base::keys::kFrameGeometry, FormatFramePlace(*layout.frame));
  for (std::size_t k = 0; k < kinds.size(); ++k) StoreWindows(change, kinds[k], layout.windows[k]);
  return settings.Apply(change);
}

bool SaveAttributes(base::SettingsFile& settings, std::span<const WindowKeys> kinds,
                    const Layout& layout) {
  base::SettingsFile::Change change;
  for (std::size_t k = 0; k < kinds.size(); ++k) {
    StoreAttributes(change, kinds[k], layout.windows[k]);
  }
  return settings.Apply(change);
}

}  // namespace brevant::workspace
