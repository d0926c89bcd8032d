// SPDX-License-Identifier: MIT
#include "views/data_view.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::views {
namespace {

constexpr int kBytesSetting = 3;  // of "WordByte"
constexpr int kMostPositions = 32768;

bool Printable(std::uint8_t byte) {
  return byte >= 0x20 && byte < 0x7F;
}

}  // namespace

int DataSettings::scroll_shift() const {
  int shift = 0;
  while (total_lines() >> shift > kMostPositions) ++shift;
  return shift;
}

DataSettings ReadDataSettings(const base::SettingsFile& settings) {
  namespace keys = base::keys;
  DataSettings read;
  read.unit =
      settings.Integer(keys::kDataUnit) == kBytesSetting ? DataUnit::Bytes : DataUnit::Words;
  read.bytes_per_line = (settings.Integer(keys::kDataPerLine) & 1) != 0 ? 16 : 8;
  read.characters = settings.Integer(keys::kDataAscii) != 0;
  const std::string range = settings.String(keys::kDataRange);
  if (!range.empty() && base::IsHexField(range)) read.range = base::ParseHex(range);
  return read;
}

bool StoreDataSettings(const DataSettings& wanted, base::SettingsFile& settings) {
  namespace keys = base::keys;
  base::SettingsFile::Change change;
  change.Store(keys::kDataUnit, long{wanted.cell_width()});
  change.Store(keys::kDataPerLine, wanted.bytes_per_line == 16 ? 1L : 0L);
  change.Store(keys::kDataAscii, wanted.characters ? 1L : 0L);
  return settings.Apply(change);
}

DataView::DataView(OpenViews& open, memory::Memory& memory, const control::Activity& activity,
                   const DataSettings& settings, int top_line)
    : View(open), memory_(memory), activity_(activity), settings_(settings) {
  drawn_with_ = settings;
  SetTop(top_line);
}

base::Address DataView::AddressOf(int line) const {
  return static_cast<base::Address>(line * settings_.bytes_per_line);
}

int DataView::ShownLines() const {
  return std::clamp(settings_.total_lines() - state_.topLine, 0, state_.lineCount);
}

int DataView::ClampedTop(int line) const {
  return std::clamp(line, 0, std::max(settings_.total_lines() - 1, 0));
}

void DataView::SetTop(int line) {
  state_.topLine = ClampedTop(line);
  moved_ = true;
  Request();
}

void DataView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  state_.lineCount = std::max(client_height + line_height / 2, 0) / line_height;
  moved_ = true;
  Request();
}

void DataView::GoToDataAddress(base::Address address) {
  const auto per_line = static_cast<base::Address>(settings_.bytes_per_line);
  SetTop(static_cast<int>(address / per_line));
  MoveCursor(static_cast<int>(address % per_line) / settings_.cell_bytes(), 0);
}

base::Address DataView::CursorCellAddress() const {
  return AddressOf(state_.topLine + state_.cursorRow) +
         static_cast<base::Address>(state_.cursorColumn * settings_.cell_bytes());
}

void DataView::MoveCursor(int column, int row) {
  state_.cursorColumn = std::clamp(column, 0, settings_.cells() - 1);
  state_.cursorRow = std::clamp(row, 0, std::max(ShownLines() - 1, 0));
  Repaint();
}

void DataView::Refresh() {
  memory_.Drop({AddressOf(state_.topLine), AddressOf(ShownLines())});
  refresh_ = true;
  Request();
}

void DataView::Scroll(ScrollCode code, int position) {
  if (activity_.FileIoActive()) return;
  switch (code) {
    case ScrollCode::LineUp:
      if (state_.cursorRow > 0) return MoveCursor(state_.cursorColumn, state_.cursorRow - 1);
      return SetTop(state_.topLine - 1);
    case ScrollCode::LineDown:
      if (state_.cursorRow + 1 < ShownLines()) {
        return MoveCursor(state_.cursorColumn, state_.cursorRow + 1);
      }
      return SetTop(state_.topLine + 1);
    case ScrollCode::PageUp:
      return SetTop(state_.topLine - state_.lineCount);
    case ScrollCode::PageDown:
      return SetTop(state_.topLine + state_.lineCount);
    case ScrollCode::ThumbTrack:
      // The last position stands for the last line, whatever the scale.
      return SetTop(position >= std::min(settings_.total_lines(), kMostPositions - 1)
                        ? settings_.total_lines() - 1
                        : position << settings_.scroll_shift());
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

bool DataView::Outdated(const base::Generations& before, const base::Generations& now) const {
  // Registers of the MCU may have changed by themselves while a program ran.
  if (lines_.empty() || before.stops != now.stops || before.settings != now.settings) return true;
  const auto count = static_cast<int>(lines_.size());
  return memory_.ChangedAt(lines_.front().address, AddressOf(count)) > drawn_from_;
}

void DataView::Pull(const base::Generations& before, const base::Generations& now) {
  const bool outdated = refresh_ || Outdated(before, now);
  if (!outdated && !moved_) return;
  if (drawn_with_.bytes_per_line != settings_.bytes_per_line) {
    // The same address stays at the top.
    state_.topLine = state_.topLine * drawn_with_.bytes_per_line / settings_.bytes_per_line;
  }
  drawn_with_ = settings_;
  state_.topLine = ClampedTop(state_.topLine);
  if (outdated) drawn_from_ = memory_.generation();
  moved_ = refresh_ = false;
  ReadLines(outdated ? Held::Outdated : Held::Good);
  MoveCursor(state_.cursorColumn, state_.cursorRow);
}

void DataView::ReadLines(Held lines) {
  // Good lines that are on the screen already stay; what is missing is one stretch.
  const base::Address first = AddressOf(state_.topLine);
  const base::Address end = AddressOf(state_.topLine + ShownLines());
  const auto held = [&](base::Address address) {
    return lines == Held::Good ? std::ranges::find(lines_, address, &DataLine::address)
                               : lines_.end();
  };
  base::Address from = first, to = end;
  const auto per_line = static_cast<base::Address>(settings_.bytes_per_line);
  while (from < to && held(from) != lines_.end()) from += per_line;
  while (to > from && held(to - per_line) != lines_.end()) to -= per_line;

  const bool available = !activity_.FileIoActive();
  std::vector<std::uint8_t> bytes(to - from);
  const base::Address readable = std::clamp(base::kAddressSpace, from, to) - from;
  if (available) memory_.ReadBytes(std::span(bytes).first(readable), from);
  // What was read last stays when the link is lost on the way.
  if (memory_.LinkError()) return;

  std::vector<DataLine> shown;
  for (base::Address address = first; address < end; address += per_line) {
    if (address < from || address >= to) {
      shown.push_back(*held(address));
      continue;
    }
    const auto line = base::Bytes(bytes).subspan(address - from, per_line);
    shown.push_back({LineText(address, line, available && address < base::kAddressSpace), address});
  }
  lines_ = std::move(shown);
}

std::string DataView::LineText(base::Address address, base::Bytes bytes, bool available) const {
  std::string text = base::Format("%06lx ", address);
  const bool as_bytes = settings_.unit == DataUnit::Bytes;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    if (!available) {
      text += as_bytes ? "** ** " : "**** ";
    } else {
      text += base::Format(as_bytes ? "%02x %02x " : "%02x%02x ", bytes[i], bytes[i + 1]);
    }
  }
  if (!settings_.characters) return text;
  for (const std::uint8_t byte : bytes) {
    text += available && Printable(byte) ? static_cast<char>(byte) : '.';
  }
  return text;
}

}  // namespace brevant::views
