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

int ReadCount(const base::SettingsFile& settings, const base::SettingsKey& key) {
  return std::clamp(settings.Integer(key), 0, kMostWindows);
}

void StorePlace(base::SettingsFile::Change& change, const base::SettingsKey& key,
                const ChildPlace& place, int n = 0) {
  if (place) change.Store(key, FormatWindowPlace(*place), n);
}

void StoreSingle(base::SettingsFile::Change& change, const base::SettingsKey& open_key,
                 const base::SettingsKey& place_key, const std::optional<SingleWindow>& window) {
  if (!window) return;
  change.Store(open_key, window->open ? 1L : 0L);
  if (window->open) StorePlace(change, place_key, window->place);
}

void StoreDataAttributes(base::SettingsFile::Change& change, const std::vector<DataWindow>& data) {
  for (std::size_t n = 0; n < data.size(); ++n) {
    change.Store(base::keys::kDataFirstLine, long{data[n].first_line}, static_cast<int>(n));
    change.Store(base::keys::kDataAttribute, long{data[n].attribute}, static_cast<int>(n));
  }
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

Layout ReadLayout(const base::SettingsFile& settings) {
  namespace keys = base::keys;
  const auto place = [&settings](const base::SettingsKey& key, int n = 0) {
    return ParseWindowPlace(settings.String(key, n));
  };
  Layout layout;
  layout.frame = ParseFramePlace(settings.String(keys::kFrameGeometry));
  layout.watch = {settings.Integer(keys::kWatchOpen) != 0, place(keys::kWatchGeometry)};
  layout.registers = place(keys::kRegistersGeometry);
  layout.data.emplace();
  for (int n = 0, count = ReadCount(settings, keys::kDataWindowCount); n < count; ++n) {
    layout.data->push_back({place(keys::kDataGeometry, n),
                            settings.Integer(keys::kDataFirstLine, n),
                            settings.Integer(keys::kDataAttribute, n)});
  }
  for (int n = 0, count = ReadCount(settings, keys::kProgramWindowCount); n < count; ++n) {
    layout.programs.push_back(place(keys::kProgramGeometry, n));
  }
  layout.source = {settings.Integer(keys::kSourceOpen) != 0, place(keys::kSourceGeometry)};
  return layout;
}

bool SaveLayout(base::SettingsFile& settings, const Layout& layout) {
  namespace keys = base::keys;
  base::SettingsFile::Change change;
  if (layout.frame) change.Store(keys::kFrameGeometry, FormatFramePlace(*layout.frame));
  StoreSingle(change, keys::kWatchOpen, keys::kWatchGeometry, layout.watch);
  StoreSingle(change, keys::kSourceOpen, keys::kSourceGeometry, layout.source);
  StorePlace(change, keys::kRegistersGeometry, layout.registers);
  change.Store(keys::kProgramWindowCount, static_cast<long>(layout.programs.size()));
  for (std::size_t n = 0; n < layout.programs.size(); ++n) {
    StorePlace(change, keys::kProgramGeometry, layout.programs[n], static_cast<int>(n));
  }
  if (layout.data) {
    change.Store(keys::kDataWindowCount, static_cast<long>(layout.data->size()));
    for (std::size_t n = 0; n < layout.data->size(); ++n) {
      StorePlace(change, keys::kDataGeometry, (*layout.data)[n].place, static_cast<int>(n));
    }
    StoreDataAttributes(change, *layout.data);
  }
  return settings.Apply(change);
}

bool SaveDataAttributes(base::SettingsFile& settings, const std::vector<DataWindow>& data) {
  base::SettingsFile::Change change;
  StoreDataAttributes(change, data);
  return settings.Apply(change);
}

}  // namespace brevant::workspace
