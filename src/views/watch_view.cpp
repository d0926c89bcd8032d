// SPDX-License-Identifier: MIT
#include "views/watch_view.h"

#include <utility>

#include "base/text_format.h"
#include "views/watch_reading.h"

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

}  // namespace

WatchView::WatchView(OpenViews& open, WatchTable& table, memory::Memory& memory,
                     const control::Activity& activity)
    : View(open), table_(table), memory_(memory), activity_(activity) {
  table_.Clear();
}

void WatchView::Resize(int client_height, int line_height) {
  if (line_height > 0) table_.SetRows(client_height / line_height);
  Repaint();
}

void WatchView::Scroll(ScrollCode code, int position) {
  if (activity_.FileIoActive()) return;
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

void WatchView::Refresh() {
  for (const WatchItem& item : table_.items()) {
    memory_.Drop({item.address, static_cast<Address>(item.bytes())});
  }
  on_request_ = true;
  Request();
}

void WatchView::Pull(const base::Generations& before, const base::Generations& now) {
  const long written = memory_.WrittenAt(0, base::kAddressSpace);
  const bool edited = std::exchange(written_, written) != written;
  if (edited || before.stops != now.stops || before.registers != now.registers) {
    missed_stop_ = true;
  }
  if (activity_.FileIoActive() || activity_.WaitingForBreak()) return;
  const bool outdated = missed_stop_ || on_request_ || read_memory_ != now.memory ||
                        read_table_ != table_.generation();
  if (!outdated) return;
  const Compare compare =
      std::exchange(missed_stop_, false) ? Compare::WithTheTimeBefore : Compare::WithWhatIsShown;
  for (WatchItem& item : table_.values()) Read(item, compare);
  on_request_ = false;
  // Reading moves neither.
  read_memory_ = now.memory;
  read_table_ = table_.generation();
}

void WatchView::Read(WatchItem& item, Compare compare) const {
  WatchReading reading =
      ReadWatched(item, memory_, on_request_ ? Reading::OnRequest : Reading::ByTheWay);
  if (compare == Compare::WithTheTimeBefore) item.changed = false;
  item.problem = std::move(reading.problem);
  if (!reading.bytes) {
    if (item.held == Held::Current) item.held = Held::Old;
    return;
  }
  const bool known = std::exchange(item.held, Held::Current) != Held::Nothing;
  bool differs = false;
  if (item.IsString()) {
    const std::string bytes(reading.bytes->begin(), reading.bytes->end());
    differs = std::exchange(item.lastString, bytes) != bytes;
  } else {
    const std::int32_t value = NumberOf(*reading.bytes);
    differs = std::exchange(item.lengthOrValue, value) != value;
  }
  if (known && differs) item.changed = true;
}

std::string WatchView::Explain() const {
  const WatchItem* const item = table_.Highlighted();
  if (item == nullptr) return {};
  std::string text = base::Format("%04x %s: %s", item->address, item->name, KindText(*item));
  if (!item->resolved) text += "; its name is no symbol of the program";
  if (!item->problem.empty()) text += "; " + item->problem;
  if (item->held != Held::Current || item->IsString()) return text;
  const auto value = static_cast<std::uint32_t>(item->lengthOrValue);
  return text + base::Format("; %0*x, decimal %s", item->bytes() * 2, value, item->DecimalText());
}

}  // namespace brevant::views
