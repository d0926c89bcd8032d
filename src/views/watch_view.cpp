// SPDX-License-Identifier: MIT
#include "views/watch_view.h"

#include <utility>

#include "base/text_format.h"
#include "control/program_context.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "views/messages.h"
#include "views/watch_reading.h"
#include "views/watched_name.h"

namespace brevant::views {
namespace {

using base::Address;
using namespace watch_codes;

std::int32_t NumberOf(const std::vector<std::uint8_t>& bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return static_cast<std::int32_t>(value);
}

std::string KindText(const WatchItem& item) {
  if (item.IsString()) return base::Format("string of %d bytes", item.bytes());
  const char* const width = item.width == kByte ? "byte" : item.width == kWord ? "word" : "long";
  return base::Format("%s %s", item.sign == kSigned ? "signed" : "unsigned", width);
}

std::int32_t CutTo(int bytes, std::int64_t number) {
  const auto value = static_cast<std::uint32_t>(number);
  return static_cast<std::int32_t>(bytes >= 4 ? value : value & ((1U << 8 * bytes) - 1));
}

// Keeps what was read, or why nothing was, and marks what has changed.
void Hold(WatchItem& item, const std::optional<std::string>& bytes, std::int32_t number) {
  if (!bytes) {
    if (item.held == Held::Current) item.held = Held::Old;
    return;
  }
  const bool known = std::exchange(item.held, Held::Current) != Held::Nothing;
  const bool differs = item.IsString() ? std::exchange(item.lastString, *bytes) != *bytes
                                       : std::exchange(item.lengthOrValue, number) != number;
  if (known && differs) item.changed = true;
}

}  // namespace

WatchView::WatchView(OpenViews& open, WatchTable& table, const WatchSources& sources, bool as_c)
    : View(open), table_(table), sources_(sources), as_c_(as_c) {
  table_.Clear();
}

void WatchView::Resize(int client_height, int line_height) {
  if (line_height > 0) table_.SetRows(client_height / line_height);
  Repaint();
}

void WatchView::Scroll(ScrollCode code, int position) {
  if (sources_.activity.FileIoActive()) return;
  table_.Scroll(code, position);
  Repaint();
}

void WatchView::MoveCursor(int lines) {
  table_.MoveCursor(lines);
  Repaint();
}

void WatchView::PlaceCursor(int row) {
  table_.PlaceCursor(row);
  Repaint();
}

void WatchView::ShowAsC(bool wanted) {
  as_c_ = wanted;
  read_table_ = -1;
  Request();
}

void WatchView::Refresh() {
  for (const WatchItem& item : table_.items()) {
    sources_.memory.Drop({item.address, static_cast<Address>(item.bytes())});
  }
  on_request_ = true;
  Request();
}

const ValueRow* WatchView::RowAt(const WatchTable::Place& place) const {
  const WatchItem& item = table_.items()[static_cast<std::size_t>(place.entry)];
  const auto below = static_cast<std::size_t>(place.below);
  return below < item.values.rows().size() ? &item.values.rows()[below] : nullptr;
}

const ValueRow* WatchView::EditablePart() const {
  const auto place = table_.HighlightedPlace();
  const ValueRow* const row = place && place->below > 0 ? RowAt(*place) : nullptr;
  return row != nullptr && CanChange(*row) ? row : nullptr;
}

std::string WatchView::AssignPart(std::string_view text) const {
  const ValueRow* const row = EditablePart();
  if (row == nullptr) return "it cannot be changed";
  return Assign(*row, text,
                control::ContextOf(sources_.memory, sources_.debug_info, sources_.frame,
                                   eval::Reading::Everything));
}

void WatchView::UnfoldAt(int line, bool unfolded) {
  const WatchTable::Place place = table_.PlaceOf(line);
  WatchItem& item = table_.values()[static_cast<std::size_t>(place.entry)];
  const ValueRow* const row = RowAt(place);
  if (row == nullptr ? !item.has_parts : !row->has_parts) return;
  const std::string path = row == nullptr ? ValueRows::PathOf("", item.name) : row->path;
  if (!item.values.Unfold(path, unfolded)) return;
  read_table_ = -1;
  Request();
}

void WatchView::Unfold(bool unfolded) {
  if (table_.count() > 0) UnfoldAt(table_.top() + table_.cursor(), unfolded);
}

bool WatchView::ToggleAt(int row, int column) {
  const int line = table_.top() + row;
  if (row < 0 || line >= table_.LineCount()) return false;
  const WatchTable::Place place = table_.PlaceOf(line);
  const ValueRow* const shown = RowAt(place);
  const WatchItem& item = table_.items()[static_cast<std::size_t>(place.entry)];
  const int mark = kWatchLabelWidth - 1 + (shown != nullptr ? shown->MarkColumn() : 0);
  const bool has_parts = shown != nullptr ? shown->has_parts : item.has_parts;
  if (column != mark || !has_parts) return false;
  UnfoldAt(line, shown == nullptr || !shown->unfolded);
  return true;
}

void WatchView::Pull(const base::Generations& before, const base::Generations& now) {
  const long written = sources_.memory.WrittenAt(0, base::kAddressSpace);
  const bool edited = std::exchange(written_, written) != written;
  if (edited || before.stops != now.stops || before.registers != now.registers) {
    missed_stop_ = true;
  }
  if (sources_.activity.FileIoActive() || sources_.activity.WaitingForBreak()) return;
  const bool outdated = missed_stop_ || on_request_ || read_memory_ != now.memory ||
                        read_symbols_ != now.symbols || read_table_ != table_.generation();
  if (!outdated) return;
  const Compare compare =
      std::exchange(missed_stop_, false) ? Compare::WithTheTimeBefore : Compare::WithWhatIsShown;
  const eval::Context context =
      control::ContextOf(sources_.memory, sources_.debug_info, sources_.frame,
                         on_request_ ? eval::Reading::Everything : eval::Reading::Sparing);
  for (int entry = 0; entry < table_.count(); ++entry) ReadEntry(entry, compare, context);
  on_request_ = false;
  // Reading moves none of them.
  read_memory_ = now.memory;
  read_symbols_ = now.symbols;
  read_table_ = table_.generation();
}

void WatchView::ReadEntry(int entry, Compare compare, const eval::Context& context) {
  WatchItem& item = table_.values()[static_cast<std::size_t>(entry)];
  if (compare == Compare::WithTheTimeBefore) item.changed = false;
  item.problem.clear();
  item.computed = item.has_parts = item.is_larger = false;
  const auto meant = EvaluateWatched(item.name, context);
  const bool is_expression = meant && IsExpression(item.name, sources_.debug_info);
  if (is_expression) Locate(item, *meant, context);
  if (!item.problem.empty()) {
    Hold(item, {}, 0);
  } else if (!item.computed) {
    ReadBytes(item);
  }

  ValueRows values = item.values;  // the table looks at those before
  if (compare == Compare::WithTheTimeBefore) values.BeginStop();
  values.Begin();
  const std::string as_c = std::exchange(item.as_c, {});
  if (meant && meant->ok()) {
    const eval::Value& value = meant->value;
    item.has_parts = eval::HasParts(value, context);
    // A part must not pass for the whole.
    item.is_larger = !item.IsString() && value.type.size > item.bytes();
    if (as_c_ || item.is_larger) item.as_c = eval::ValueText(value, context);
    if (!item.as_c.empty() && !as_c.empty() && as_c != item.as_c) item.changed = true;
    if (item.has_parts && values.IsUnfolded(ValueRows::PathOf("", item.name))) {
      values.Add("", item.name, value, context);
    }
  }
  table_.SetValues(entry, std::move(values));
}

void WatchView::Locate(WatchItem& item, const eval::Result& meant, const eval::Context& context) {
  const eval::Value& value = meant.value;
  item.resolved = meant.ok() && value.unavailable.empty();
  item.problem = !meant.ok() ? meant.problem : item.resolved ? "" : eval::UnavailableText(value);
  if (!item.resolved) return;
  item.computed = !value.place || value.place->bits > 0;
  if (!item.computed) {
    item.address = value.place->address;
    return;
  }
  const eval::Value number = eval::Loaded(value, context);
  if (item.IsString() || !eval::IsScalar(number.type)) {
    item.problem = messages::kNoBytesOfItsOwn;
  } else if (!number.unavailable.empty()) {
    item.problem = eval::UnavailableText(number);
  } else {
    Hold(item, std::string(), CutTo(item.bytes(), number.number));
  }
}

void WatchView::ReadBytes(WatchItem& item) const {
  WatchReading reading =
      ReadWatched(item, sources_.memory, on_request_ ? Reading::OnRequest : Reading::ByTheWay);
  item.problem = std::move(reading.problem);
  if (!reading.bytes) return Hold(item, {}, 0);
  Hold(item, std::string(reading.bytes->begin(), reading.bytes->end()), NumberOf(*reading.bytes));
}

std::string WatchView::Explain() const {
  const auto place = table_.HighlightedPlace();
  if (!place) return {};
  const WatchItem& item = *table_.Highlighted();
  if (const ValueRow* const row = RowAt(*place); row != nullptr && place->below > 0) {
    const std::string at =
        row->value.place ? base::Format("%04x ", row->value.place->address) : std::string();
    return at + row->path.substr(1) + " = " + row->text;
  }
  std::string text = item.computed ? item.name : base::Format("%04x %s", item.address, item.name);
  text += ": " + KindText(item);
  if (!item.resolved) text += "; its name is no symbol of the program";
  if (!item.problem.empty()) text += "; " + item.problem;
  if (item.held != Held::Current || item.IsString()) return text;
  const auto value = static_cast<std::uint32_t>(item.lengthOrValue);
  return text + base::Format("; %0*x, decimal %s", item.bytes() * 2, value, item.DecimalText());
}

}  // namespace brevant::views
