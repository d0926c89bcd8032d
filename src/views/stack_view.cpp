// SPDX-License-Identifier: MIT
#include "views/stack_view.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "frames/call_stack.h"
#include "isa/flow.h"
#include "symbols/places.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

using base::Address;
using Kind = frames::StackEntry::Kind;

// "000111   +1  80 24           return to ..."
constexpr int kFirstByteColumn = 13;
constexpr int kByteWidth = 3;
constexpr int kMostBytes = 5;

// "8021 _main+21, count.c:30"; as much as is known.
std::string PlaceText(Address address, const symbols::DebugInfo& info) {
  std::string text = base::Format("%04x", address);
  const std::string name = symbols::NameWithOffset(address, info);
  if (!name.empty()) text += " " + name;
  const auto line = info.LineTable.LineForAddress(address);
  return line ? text + ", " + symbols::LineName(*line, info.LineTable) : text;
}

std::string CallText(const isa::Instruction& call, const symbols::DebugInfo& info) {
  const std::string mnemonic(isa::MnemonicName(call.entry().mnemonic()));
  const auto target = isa::FlowOf(call).target;
  return target ? mnemonic + " " + info.SymbolTable.SymbolName(*target) : "an indexed " + mnemonic;
}

}  // namespace

int StackByteColumn(int n) {
  return kFirstByteColumn + n * kByteWidth;
}

int StackTextColumn() {
  return StackByteColumn(kMostBytes) + 1;
}

std::string StackView::Problem() const {
  const Address sp = sources_.frame.ProgramSP();
  const std::string above = symbols::NameWithOffset(base::Low16(sp + 1), sources_.debug_info);
  const bool in_ram = sources_.memory.KindOf(sp) == devices::MemoryKind::Ram;
  if (in_ram && !above.empty()) return base::Format(messages::kStackBelowCode, sp, above);
  return base::Format(in_ram ? messages::kStackAtEnd : messages::kStackNotRam, sp);
}

void StackView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  state_.lineCount = std::max(client_height + line_height / 2, 0) / line_height;
  Request();
}

void StackView::Scroll(ScrollCode code, int position) {
  if (sources_.activity.FileIoActive()) return;
  const auto to = [this](int top) {
    state_.top = std::max(top, 0);
    Request();
  };
  switch (code) {
    case ScrollCode::LineUp:
      return state_.cursorLine > 0 ? MoveCursor(state_.cursorLine - 1) : to(state_.top - 1);
    case ScrollCode::LineDown:
      return state_.cursorLine + 1 < static_cast<int>(lines_.size())
                 ? MoveCursor(state_.cursorLine + 1)
                 : to(state_.top + 1);
    case ScrollCode::PageUp:
      return to(state_.top - state_.lineCount);
    case ScrollCode::PageDown:
      return to(state_.top + state_.lineCount);
    case ScrollCode::ThumbTrack:
      return to(position);
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

void StackView::MoveCursor(int line) {
  state_.cursorLine = std::clamp(line, 0, std::max(static_cast<int>(lines_.size()) - 1, 0));
  Repaint();
}

void StackView::Refresh() {
  for (const StackLine& line : lines_) {
    sources_.memory.Drop({line.entry.address, static_cast<Address>(line.entry.bytes.size())});
  }
  Request();
}

void StackView::Pull(const base::Generations& before, const base::Generations& now) {
  if (sources_.activity.FileIoActive()) return;
  if (before.stops != now.stops) {
    shown_.BeginStop();
    state_.top = 0;
  }
  ReadLines();
  MoveCursor(before.stops != now.stops ? 0 : state_.cursorLine);
}

void StackView::ReadLines() {
  const Address sp = sources_.frame.ProgramSP();
  stack_ = frames::StackAbove(sp, sources_.memory, sources_.debug_info);
  memory::Memory& memory = sources_.memory;
  const long asked = memory.asked();
  frames::StackWalk walk(memory, sources_.debug_info, sources_.frame.PC, stack_, kMostCode);
  std::vector<frames::StackEntry> entries;
  while (static_cast<int>(entries.size()) < state_.top + state_.lineCount) {
    auto entry = walk.Next();
    if (!entry) break;
    entries.push_back(std::move(*entry));
  }
  // What was read last stays when the link is lost on the way.
  if (memory.LinkError()) return;
  state_.top = std::min(state_.top, std::max(static_cast<int>(entries.size()) - 1, 0));
  lines_.clear();
  for (auto entry = entries.begin() + std::min<long>(state_.top, std::ssize(entries));
       entry != entries.end(); ++entry) {
    lines_.push_back(MakeLine(*entry));
  }
  problem_ = stack_.count == 0 ? Problem() : std::string();
  sp_ = sp;
  asked_ = memory.asked() - asked;
  code_asked_ = walk.code_asked();
}

StackLine StackView::MakeLine(const frames::StackEntry& entry) {
  const Address offset = entry.address - sources_.frame.ProgramSP();
  std::string bytes;
  std::vector<bool> changed;
  for (const std::uint8_t byte : entry.bytes) {
    changed.push_back(shown_.Show(entry.address + static_cast<Address>(changed.size()), byte));
    bytes += base::Format("%02x ", byte);
  }
  bytes.resize(std::size_t{kMostBytes} * kByteWidth, ' ');
  return {base::Format("%06lx %+4d  %s %s", entry.address, static_cast<int>(offset), bytes,
                       Described(entry)),
          entry, std::move(changed)};
}

std::string StackView::Described(const frames::StackEntry& entry) const {
  const symbols::DebugInfo& info = sources_.debug_info;
  switch (entry.kind) {
    case Kind::ReturnAddress:
      return base::Format("%sreturn to %04x behind %s at %s", entry.certain ? "" : "perhaps ",
                          entry.code, CallText(entry.call, info),
                          PlaceText(entry.call.address, info));
    case Kind::Interrupt:
      return base::Format("perhaps interrupt %s at %s: CCR=%02x A=%02x X=%02x", entry.vectors,
                          PlaceText(entry.code, info), entry.bytes[0], entry.bytes[1],
                          entry.bytes[2]);
    case Kind::Byte:
      break;
  }
  return base::Format("%d", entry.bytes[0]) +
         (entry.looked_at ? "" : "  (code not looked at: Refresh goes on)");
}

std::optional<Address> StackView::CodeUnderCursor() const {
  const auto line = static_cast<std::size_t>(state_.cursorLine);
  if (line >= lines_.size() || lines_[line].entry.kind == Kind::Byte) return std::nullopt;
  const frames::StackEntry& entry = lines_[line].entry;
  return entry.kind == Kind::ReturnAddress ? entry.call.address : entry.code;
}

std::string StackView::Explain() const {
  std::string text = base::Format("SP %04x", sp_);
  const auto line = static_cast<std::size_t>(state_.cursorLine);
  if (line < lines_.size()) {
    const Address address = lines_[line].entry.address;
    text += base::Format("; %04x is %d,SP", address, static_cast<int>(address - sp_));
  }
  return text +
         base::Format("; to show this %ld bytes were read, %ld of them code", asked_, code_asked_);
}

}  // namespace brevant::views
