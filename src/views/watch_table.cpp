// SPDX-License-Identifier: MIT
#include "views/watch_table.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::views {
namespace {

using namespace watch_codes;

// A name that does not fit gives way to the end of the text, its display code.
constexpr std::size_t kNameShown = 9;
constexpr std::size_t kEndShown = 4;
constexpr char kAsC = 'C';  // in place of a display code

}  // namespace

std::string ShownString(std::string_view bytes) {
  std::string shown(bytes);
  std::ranges::replace(shown, '\0', kShownZero);
  return shown;
}

int WatchItem::bytes() const {
  if (IsString()) return std::clamp(lengthOrValue, 0, kMostString);
  if (width == kByte) return 1;
  return width == kWord ? 2 : 4;
}

int WatchItem::RowsBelow() const {
  return std::max(static_cast<int>(values.rows().size()) - 1, 0);
}

std::string WatchItem::Label() const {
  std::string text = base::Format("%s(%c) ", name, as_c.empty() ? display : kAsC);
  constexpr auto kWidth = static_cast<std::size_t>(kWatchLabelWidth);
  if (text.size() >= kWidth) {
    text = name.substr(0, kNameShown) + text.substr(text.size() - kEndShown);
  } else {
    text.insert(0, kWidth - text.size(), ' ');
  }
  if (has_parts) text.back() = RowsBelow() > 0 ? '-' : '+';
  if (!resolved) text.back() = '*';
  return text;
}

std::string WatchItem::DecimalText() const {
  const auto value = static_cast<std::uint32_t>(lengthOrValue);
  if (sign != kSigned) return base::Format("%u", value);
  if (width == kByte) return base::Format("%d", static_cast<std::int8_t>(value));
  if (width == kWord) return base::Format("%d", static_cast<std::int16_t>(value));
  return base::Format("%d", lengthOrValue);
}

std::string WatchItem::ValueText() const {
  if (!as_c.empty()) return as_c;
  if (held != Held::Current) return kNotKnown;
  if (IsString()) return ShownString(lastString);
  const auto value = static_cast<std::uint32_t>(lengthOrValue);
  switch (display) {
    case kDecimal:
      return DecimalText();
    case kBinary:
      return base::FormatBinary(value, bytes() * 8);
    default:
      return base::Format("%0*x", bytes() * 2, value);
  }
}

int WatchTable::LineCount() const {
  return LineOf(count());
}

int WatchTable::LineOf(int entry) const {
  int line = 0;
  for (int n = 0; n < entry; ++n) line += 1 + items_[static_cast<std::size_t>(n)].RowsBelow();
  return line;
}

WatchTable::Place WatchTable::PlaceOf(int line) const {
  int entry = 0;
  for (const WatchItem& item : items_) {
    if (line <= item.RowsBelow()) break;
    line -= 1 + item.RowsBelow();
    ++entry;
  }
  return {entry, line};
}

std::optional<WatchTable::Place> WatchTable::HighlightedPlace() const {
  if (items_.empty()) return std::nullopt;
  return PlaceOf(std::min(top_ + cursor_, LineCount() - 1));
}

const WatchItem* WatchTable::Highlighted() const {
  const auto place = HighlightedPlace();
  return place ? &items_[static_cast<std::size_t>(place->entry)] : nullptr;
}

int WatchTable::last_position() const {
  return rows_ >= LineCount() ? 0 : LineCount() - 1;
}

void WatchTable::Highlight(int line) {
  line = std::clamp(line, 0, std::max(LineCount() - 1, 0));
  if (rows_ >= LineCount() || line < top_) top_ = rows_ >= LineCount() ? 0 : line;
  if (line >= top_ + rows_ && rows_ > 0) top_ = line - rows_ + 1;
  cursor_ = line - top_;
}

void WatchTable::Assign(std::vector<WatchItem> items) {
  items_ = std::move(items);
  if (count() > kMost) items_.resize(kMost);
  top_ = cursor_ = 0;
  Changed();
}

bool WatchTable::Insert(WatchItem item) {
  if (full()) return false;
  const auto place = HighlightedPlace();
  items_.insert(items_.begin() + (place ? place->entry + 1 : 0), std::move(item));
  Changed();
  return true;
}

void WatchTable::Replace(WatchItem item) {
  const auto place = HighlightedPlace();
  if (!place) return;
  items_[static_cast<std::size_t>(place->entry)] = std::move(item);
  Changed();
  Highlight(LineOf(place->entry));
}

void WatchTable::Delete() {
  const auto place = HighlightedPlace();
  if (!place) {
    cursor_ = 0;
    return;
  }
  items_.erase(items_.begin() + place->entry);
  Changed();
  Highlight(LineOf(std::min(place->entry, std::max(count() - 1, 0))));
}

bool WatchTable::CanMoveUp() const {
  const auto place = HighlightedPlace();
  return place && place->entry > 0;
}

bool WatchTable::CanMoveDown() const {
  const auto place = HighlightedPlace();
  return place && place->entry + 1 < count();
}

void WatchTable::MoveUp() {
  if (CanMoveUp()) Swap(HighlightedPlace()->entry - 1, HighlightedPlace()->entry - 1);
}

void WatchTable::MoveDown() {
  if (CanMoveDown()) Swap(HighlightedPlace()->entry, HighlightedPlace()->entry + 1);
}

void WatchTable::Swap(int upper, int highlighted) {
  WatchItem& first = items_[static_cast<std::size_t>(upper)];
  WatchItem& second = items_[static_cast<std::size_t>(upper) + 1];
  std::swap(first, second);
  std::swap(first.reserved, second.reserved);  // belongs to the place in the file
  Highlight(LineOf(highlighted));
  Changed();
}

void WatchTable::SetRows(int rows) {
  if (rows == rows_) return;
  rows_ = std::max(rows, 0);
  Highlight(top_ + cursor_);
}

void WatchTable::Scroll(ScrollCode code, int position) {
  const int last = std::max(LineCount() - 1, 0);
  const auto to = [&](int top) {
    top_ = rows_ >= LineCount() ? 0 : std::clamp(top, 0, last);
    cursor_ = std::clamp(cursor_, 0, last - top_);
  };
  switch (code) {
    case ScrollCode::LineUp:
      return to(top_ - 1);
    case ScrollCode::LineDown:
      return to(top_ + 1);
    case ScrollCode::PageUp:
      return to(top_ - rows_);
    case ScrollCode::PageDown:
      return to(top_ + rows_);
    case ScrollCode::ThumbTrack:
      return to(position);
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

void WatchTable::PlaceCursor(int row) {
  if (items_.empty()) row = 0;
  if (row < 0 || top_ + row >= std::max(LineCount(), 1)) return;
  cursor_ = row;
}

void WatchTable::MoveCursor(int lines) {
  Highlight(top_ + cursor_ + lines);
}

void WatchTable::SetValues(int entry, ValueRows values) {
  WatchItem& item = items_[static_cast<std::size_t>(entry)];
  const int rows_before = item.RowsBelow();
  // The same entry stays highlighted, and what is unfolded under it as far as it is still there.
  const WatchTable::Place place = *HighlightedPlace();
  item.values = std::move(values);
  if (item.RowsBelow() == rows_before) return;
  const int below = place.entry == entry ? std::min(place.below, item.RowsBelow()) : place.below;
  Highlight(LineOf(place.entry) + below);
}

}  // namespace brevant::views
