// SPDX-License-Identifier: MIT
#include "views/code_lines.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/text_format.h"
#include "isa/instruction_table.h"
#include "views/backward_start.h"

namespace brevant::views {
namespace {

constexpr base::Address kShownAddressBits = 0xFFFFF;

// Sets the line's text and returns the instruction's length.
base::Address Disassemble(CodeLine& line, const isa::SymbolNames& symbols) {
  isa::CurrentInstruction instruction;
  instruction.address = line.address;
  std::copy(line.bytes.begin(), line.bytes.end(), instruction.bytes.begin());
  line.text = isa::Disassemble(instruction, symbols);
  return instruction.length;
}

}  // namespace

CodeLine ReadCodeLine(link::Monitor& monitor, const isa::SymbolNames& symbols,
                      base::Address& address) {
  CodeLine line;
  line.address = address;
  monitor.ReadBlockBytes(line.bytes, address);
  address += Disassemble(line, symbols);
  return line;
}

CodeLine CodeLines::FillLineForward(base::Address& address) {
  if (reads_target_) return ReadCodeLine(monitor_, symbols_, address);
  CodeLine line;
  line.address = address;
  line.text = base::Format("%05lx: %s", address & kShownAddressBits, "****");
  ++address;
  return line;
}

CodeLine CodeLines::FillLineBackward(const CodeLine& below) {
  const int size = static_cast<int>(std::min<base::Address>(kBackwardBytes, below.address));
  // The bytes before the line below and, behind them, that line's own: they are what follows a
  // page prefix, and what an instruction that runs into that line ends with.
  std::array<std::uint8_t, kBackwardBytes + 4> bytes{};
  monitor_.ReadBlockBytes(std::span(bytes).first(static_cast<std::size_t>(size)),
                          below.address - static_cast<base::Address>(size));
  std::copy(below.bytes.begin(), below.bytes.end(), bytes.begin() + size);

  std::array<int, kBackwardBytes> lengths{};
  for (int j = 0; j < size; ++j) {
    const auto at = static_cast<std::size_t>(size - 1 - j);
    lengths[static_cast<std::size_t>(j)] = isa::InstructionLength(bytes[at], bytes[at + 1]);
  }
  const int start = BackwardStart(std::span(lengths).first(static_cast<std::size_t>(size)));
  CodeLine line;
  line.address = below.address - 1 - static_cast<base::Address>(start);
  std::copy_n(bytes.begin() + (size - 1 - start), line.bytes.size(), line.bytes.begin());
  Disassemble(line, symbols_);
  return line;
}

void CodeLines::FillFrom(base::Address address, int count) {
  lines_.clear();
  bottom_ = address;
  Resize(count);
}

void CodeLines::Resize(int count) {
  const auto wanted = static_cast<std::size_t>(std::max(count, 0));
  if (wanted < lines_.size()) {
    bottom_ = lines_[wanted].address;
    lines_.resize(wanted);
  }
  while (lines_.size() < wanted) lines_.push_back(FillLineForward(bottom_));
}

void CodeLines::RecomputeLines(ScrollCode code, int position, const ScrollRange& range) {
  if (lines_.empty()) return;
  switch (code) {
    case ScrollCode::LineUp:
      LineUp();
      break;
    case ScrollCode::LineDown:
      LineDown(range);
      break;
    case ScrollCode::PageUp:
      PageUp();
      break;
    case ScrollCode::PageDown:
      FillFrom(std::min(bottom_, range.LastTop()), count());
      break;
    case ScrollCode::ThumbTrack:
      FillFrom(range.AddressAt(position), count());
      break;
    case ScrollCode::RedrawFromTop:  // FillFrom, by whoever knows where the top is to be
    case ScrollCode::RepaintOnly:
      break;
  }
}

void CodeLines::LineUp() {
  if (top() == 0) return;
  CodeLine line = FillLineBackward(lines_.front());
  bottom_ = lines_.back().address;
  std::rotate(lines_.begin(), lines_.end() - 1, lines_.end());
  lines_.front() = std::move(line);
}

void CodeLines::LineDown(const ScrollRange& range) {
  if (top() >= range.LastTop()) return;
  CodeLine line = FillLineForward(bottom_);
  std::rotate(lines_.begin(), lines_.begin() + 1, lines_.end());
  lines_.back() = std::move(line);
}

void CodeLines::PageUp() {
  if (top() == 0) return;
  std::vector<CodeLine> upwards{lines_.front()};
  while (upwards.back().address != 0 && upwards.size() <= lines_.size()) {
    upwards.push_back(FillLineBackward(upwards.back()));
  }
  if (upwards.size() <= lines_.size()) {
    FillFrom(0, count());
    return;
  }
  bottom_ = upwards.front().address;
  lines_.assign(upwards.rbegin(), upwards.rend() - 1);
}

}  // namespace brevant::views
