// SPDX-License-Identifier: MIT
#include "views/data_view.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/text_format.h"
#include "base/text_number.h"
#include "symbols/places.h"

namespace brevant::views {
namespace {

constexpr int kBytesSetting = 3;  // of "WordByte"
constexpr int kMostPositions = 32768;

// Both digits of a register that was not read.
constexpr const char* kNotRead = "--";

char Character(std::uint8_t byte) {
  return byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
}

// "3f 63 '?' %00111111"; a value that can be negative both ways: "ff 255 -1".
std::string ByteText(std::uint8_t byte) {
  const int value = static_cast<std::int8_t>(byte);
  return base::Format("%02x %d", byte, byte) + (value < 0 ? base::Format(" %d", value) : "") +
         base::Format(" '%c' %%", Character(byte)) + base::FormatBinary(byte, 8);
}

std::string WordText(std::uint32_t word) {
  const int value = static_cast<std::int16_t>(word);
  return base::Format("%04x %u", word, word) + (value < 0 ? base::Format(" %d", value) : "");
}

// "PTA (port A data)", and of a word "PTA, PTB"; empty where no register is known.
std::string RegisterNames(base::Address first, int count, const devices::Device& device) {
  std::string names;
  for (int i = 0; i < count; ++i) {
    const auto at = first + static_cast<base::Address>(i);
    const devices::Register* const row = devices::FindRegister(device, at);
    // One that has not been read by the way is named with the reason.
    if (row == nullptr || !row->read_effect.empty()) continue;
    names += (names.empty() ? "" : ", ") + std::string(row->name);
    if (count == 1) names += base::Format(" (%s)", std::string(row->what));
  }
  return names;
}

}  // namespace

int DataSettings::scroll_shift() const {
  int shift = 0;
  while (total_lines() >> shift > kMostPositions) ++shift;
  return shift;
}

int DataSettings::last_position() const {
  return scroll_shift() == 0 ? total_lines() : kMostPositions - 1;
}

int DataSettings::ByteColumn(int n) const {
  const int cell = n / cell_bytes();
  return kFirstCellColumn + cell * cell_width() + (n % cell_bytes()) * kByteDigits;
}

int DataSettings::CharacterColumn(int n) const {
  return kFirstCellColumn + cells() * cell_width() + n;
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
  return static_cast<base::Address>(line) * static_cast<base::Address>(settings_.bytes_per_line);
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
      return SetTop(position >= settings_.last_position() ? settings_.total_lines() - 1
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
  if (before.stops != now.stops) shown_.BeginStop();
  const bool outdated = refresh_ || Outdated(before, now);
  if (!outdated && !moved_) return;
  if (drawn_with_.bytes_per_line != settings_.bytes_per_line) {
    // The same address stays at the top.
    const auto top = static_cast<base::Address>(state_.topLine) *
                     static_cast<base::Address>(drawn_with_.bytes_per_line);
    state_.topLine = static_cast<int>(top / static_cast<base::Address>(settings_.bytes_per_line));
  }
  drawn_with_ = settings_;
  state_.topLine = ClampedTop(state_.topLine);
  if (outdated) drawn_from_ = memory_.generation();
  moved_ = false;
  ReadLines(outdated ? Held::Outdated : Held::Good, std::exchange(refresh_, false));
  MoveCursor(state_.cursorColumn, state_.cursorRow);
}

void DataView::ReadLines(Held lines, bool on_request) {
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
  const auto readable = std::span(bytes).first(std::clamp(base::kAddressSpace, from, to) - from);
  if (available && on_request) memory_.ReadBytes(readable, from);
  if (available && !on_request) memory_.ReadSparing(readable, from);
  // What was read last stays when the link is lost on the way.
  if (memory_.LinkError()) return;

  std::vector<DataLine> shown;
  for (base::Address address = first; address < end; address += per_line) {
    if (address < from || address >= to) {
      shown.push_back(*held(address));
      continue;
    }
    shown.push_back(available && address < base::kAddressSpace
                        ? MakeLine(address, base::Bytes(bytes).subspan(address - from, per_line))
                        : Unavailable(address));
  }
  lines_ = std::move(shown);
}

DataByte DataView::MakeByte(base::Address address, std::uint8_t byte) {
  if (memory_.ChangesOnReading(address)) return {memory_.LastRead(address), DataMark::OnRequest};
  return {byte, shown_.Show(address, byte) ? DataMark::Changed : DataMark::None};
}

DataLine DataView::MakeLine(base::Address address, base::Bytes bytes) {
  DataLine line{base::Format("%06lx ", address), address};
  std::string characters;
  for (const std::uint8_t byte : bytes) {
    const auto n = static_cast<base::Address>(line.bytes.size());
    const DataByte& made = line.bytes.emplace_back(MakeByte(address + n, byte));
    line.text += made.value ? base::Format("%02x", *made.value) : kNotRead;
    if (line.bytes.size() % static_cast<unsigned>(settings_.cell_bytes()) == 0) line.text += ' ';
    characters += made.value ? Character(*made.value) : '.';
  }
  if (settings_.characters) line.text += characters;
  return line;
}

DataLine DataView::Unavailable(base::Address address) const {
  DataLine line{base::Format("%06lx ", address), address};
  for (int i = 0; i < settings_.cells(); ++i) {
    line.text += settings_.unit == DataUnit::Bytes ? "** " : "**** ";
  }
  line.bytes.resize(static_cast<std::size_t>(settings_.bytes_per_line));
  if (!settings_.characters) return line;
  for (base::Address i = 0; i < line.bytes.size(); ++i) {
    line.text += Character(shown_.Last(address + i).value_or(0));
  }
  return line;
}

std::optional<DataCell> DataView::HitTest(int x, int y, CellSize character) const {
  const int first = (kFirstCellColumn - 1) * character.width;
  const int width = settings_.cell_width() * character.width;
  // The blank before a cell belongs to it; before the first one, half a blank more.
  const bool in_cells =
      2 * x > 2 * first - character.width && x < first + settings_.cells() * width;
  const int row = y / character.height;
  if (!in_cells || y < 0 || row >= static_cast<int>(lines_.size())) return std::nullopt;
  return DataCell{std::max(x - first, 0) / width, row};
}

const DataByte* DataView::ByteAt(base::Address address) const {
  for (const DataLine& line : lines_) {
    const base::Address offset = address - line.address;
    if (offset < line.bytes.size()) return &line.bytes[offset];
  }
  return nullptr;
}

std::string DataView::Explain(const DataCell& cell, const symbols::DebugInfo& info) const {
  const base::Address first = AddressOf(state_.topLine + cell.row) +
                              static_cast<base::Address>(cell.column * settings_.cell_bytes());
  const DataByte* const byte = ByteAt(first);
  if (byte == nullptr) return {};
  std::string name = symbols::NameWithOffset(first, info);
  if (name.empty()) name = RegisterNames(first, settings_.cell_bytes(), memory_.device());
  std::string text = base::Format("%04x", first) + (name.empty() ? "" : " " + name);
  if (byte->value) text += ": " + ByteText(*byte->value);
  const DataByte* const next = ByteAt(first + 1);
  if (byte->value && next != nullptr && next->value) {
    text += ", word " + WordText(base::Word(*byte->value, *next->value));
  }
  for (int i = 0; i < settings_.cell_bytes(); ++i) {
    const base::Address at = first + static_cast<base::Address>(i);
    const devices::Register* const effect = devices::FindReadEffect(memory_.device(), at);
    if (effect == nullptr) continue;
    text += base::Format(
        "; %s %s: reading it %s, so only Refresh (Ctrl+F5) does", std::string(effect->name),
        memory_.LastRead(at) ? "as read last" : "not read yet", std::string(effect->read_effect));
  }
  return text;
}

}  // namespace brevant::views
