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

constexpr int kLongestInstruction = 4;
constexpr int kUsualInstruction = 2;
// So that a window fills visibly, run by run, and little is read in vain.
constexpr int kLongestRun = 32;

// How many bytes to read beyond a line's own for the lines that are to be filled after it.
int Ahead(int lines_to_come) {
  return std::min(lines_to_come * kUsualInstruction, kLongestRun);
}

// Sets the line's text and returns the instruction's length.
base::Address Disassemble(CodeLine& line, const isa::SymbolNames& symbols) {
  const isa::Instruction instruction = isa::InstructionAt(line.address, line.bytes);
  line.text = isa::Disassemble(instruction, symbols);
  line.length = static_cast<int>(instruction.length());
  return static_cast<base::Address>(instruction.length());
}

// The line at the address, which moves on to the next one.
CodeLine LineAt(base::Address& address, std::span<const std::uint8_t> bytes,
                const isa::SymbolNames& symbols) {
  CodeLine line;
  line.address = address;
  std::copy(bytes.begin(), bytes.end(), line.bytes.begin());
  address += Disassemble(line, symbols);
  return line;
}

}  // namespace

std::vector<CodeLine> ReadCodeLines(memory::Memory& memory, const isa::SymbolNames& symbols,
                                    base::Address address, int count) {
  std::vector<CodeLine> lines;
  memory::CodeBytes bytes(memory);
  for (int to_come = count - 1; to_come >= 0 && address <= base::kLastAddress; --to_come) {
    const int run = kLongestInstruction + Ahead(to_come);
    const auto read = bytes.From(address, kLongestInstruction, run);
    if (memory.LinkError()) break;
    lines.push_back(LineAt(address, read, symbols));
  }
  return lines;
}

CodeLine ReadCodeLine(memory::Memory& memory, const isa::SymbolNames& symbols,
                      base::Address& address) {
  memory::CodeBytes bytes(memory);
  return LineAt(address, bytes.From(address, kLongestInstruction, kLongestInstruction), symbols);
}

CodeLine CodeLines::FillLineForward(memory::CodeBytes& bytes, base::Address& address,
                                    int lines_to_come) {
  if (reads_target_) {
    const int run = kLongestInstruction + Ahead(lines_to_come);
    const auto read = bytes.From(address, kLongestInstruction, run);
    // What a lost link leaves in the buffer is no code.
    if (!memory_.LinkError()) {
      CodeLine line = LineAt(address, read, symbols_);
      before_[address] = line.address;
      return line;
    }
  }
  CodeLine line;
  line.address = address;
  line.text = base::Format("%05lx: %s", address & kShownAddressBits, "****");
  ++address;
  return line;
}

std::optional<CodeLine> CodeLines::KnownLineBefore(base::Address address) {
  const auto known = before_.find(address);
  if (known == before_.end()) return std::nullopt;
  base::Address at = known->second;
  std::array<std::uint8_t, kLongestInstruction> bytes{};
  memory_.ReadBytes(bytes, at);
  CodeLine line = LineAt(at, bytes, symbols_);
  if (at != address) return std::nullopt;
  return line;
}

bool CodeLines::KnownStart(base::Address address) const {
  return debug_info_.LineTable.HasLineAt(address) || symbols_.FindSymbolName(address);
}

CodeLine CodeLines::FillLineBackward(memory::CodeBytes& target_bytes, const CodeLine& below,
                                     int lines_to_come) {
  if (auto known = KnownLineBefore(below.address)) return *known;
  const int size = static_cast<int>(std::min<base::Address>(kBackwardBytes, below.address));
  // The bytes before the line below and, behind them, that line's own: they are what follows a
  // page prefix, and what an instruction that runs into that line ends with.
  std::array<std::uint8_t, kBackwardBytes + kLongestInstruction> bytes{};
  const auto before =
      target_bytes.Before(below.address, size, kBackwardBytes + Ahead(lines_to_come));
  std::copy(before.begin(), before.end(), bytes.begin());
  std::copy(below.bytes.begin(), below.bytes.end(), bytes.begin() + size);

  std::array<int, kBackwardBytes> lengths{};
  for (int j = 0; j < size; ++j) {
    const auto at = static_cast<std::size_t>(size - 1 - j);
    lengths[static_cast<std::size_t>(j)] = isa::InstructionLength(bytes[at], bytes[at + 1]);
  }
  const auto known_lengths = std::span(lengths).first(static_cast<std::size_t>(size));
  const auto known = StartFrom(known_lengths, [&](int j) {
    return KnownStart(below.address - 1 - static_cast<base::Address>(j));
  });
  const int start = known ? *known : BackwardStart(known_lengths);
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
  for (memory::CodeBytes bytes(memory_); lines_.size() < wanted;) {
    const auto to_come = static_cast<int>(wanted - lines_.size()) - 1;
    lines_.push_back(FillLineForward(bytes, bottom_, to_come));
  }
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
  memory::CodeBytes bytes(memory_);
  CodeLine line = FillLineBackward(bytes, lines_.front(), 0);
  bottom_ = lines_.back().address;
  std::rotate(lines_.begin(), lines_.end() - 1, lines_.end());
  lines_.front() = std::move(line);
}

void CodeLines::LineDown(const ScrollRange& range) {
  if (top() >= range.LastTop()) return;
  memory::CodeBytes bytes(memory_);
  CodeLine line = FillLineForward(bytes, bottom_, 0);
  std::rotate(lines_.begin(), lines_.begin() + 1, lines_.end());
  lines_.back() = std::move(line);
}

void CodeLines::PageUp() {
  if (top() == 0) return;
  memory::CodeBytes bytes(memory_);
  std::vector<CodeLine> upwards{lines_.front()};
  while (upwards.back().address != 0 && upwards.size() <= lines_.size()) {
    const auto to_come = static_cast<int>(lines_.size() - upwards.size());
    upwards.push_back(FillLineBackward(bytes, upwards.back(), to_come));
  }
  if (upwards.size() <= lines_.size()) {
    FillFrom(0, count());
    return;
  }
  bottom_ = upwards.front().address;
  lines_.assign(upwards.rbegin(), upwards.rend() - 1);
}

}  // namespace brevant::views
