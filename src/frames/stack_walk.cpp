// SPDX-License-Identifier: MIT
#include "frames/stack_walk.h"

#include <algorithm>
#include <array>
#include <utility>

#include "devices/hc08.h"
#include "isa/flow.h"
#include "symbols/places.h"

namespace brevant::frames {
namespace {

using base::Address;
using devices::MemoryKind;
using isa::kLongestCall;

constexpr int kStackAhead = 16;     // bytes of the stack that are fetched in one go
constexpr Address kFrameBytes = 5;  // CCR, A, X, PC
// Without symbols: how far from its start code is still taken for the handler's.
constexpr Address kHandlerReach = 0x100;
// Decoding from a known start costs its bytes.
constexpr Address kMostDecoded = 32;

// Bits 6 and 5 always read 1; with the interrupt mask set there is no interrupt.
constexpr bool CanHaveBeenInterrupted(std::uint8_t ccr) {
  return (ccr & 0x68) == 0x60;
}

}  // namespace

StackWalk::StackWalk(memory::Memory& memory, const symbols::DebugInfo& debug_info, Address pc,
                     memory::Range stack, long most_code)
    : memory_(memory),
      debug_info_(debug_info),
      stack_(memory),
      next_(stack.first),
      end_(stack.first + stack.count),
      most_code_(most_code),
      below_{pc} {}

std::uint8_t StackWalk::ByteAt(Address address) {
  const auto ahead = std::min<Address>(kStackAhead, end_ - address);
  return stack_.From(address, 1, static_cast<int>(ahead))[0];
}

Address StackWalk::WordAt(Address address) {
  const std::uint8_t high = ByteAt(address);
  return base::Word(high, ByteAt(address + 1));
}

std::vector<std::uint8_t> StackWalk::BytesAt(Address address, Address count) {
  std::vector<std::uint8_t> bytes;
  for (Address i = 0; i < count; ++i) bytes.push_back(ByteAt(address + i));
  return bytes;
}

bool StackWalk::ReadCode(std::span<std::uint8_t> bytes, Address address) {
  if (code_asked_ >= most_code_) refused_ = true;
  if (refused_) return false;
  const long before = memory_.asked();
  memory_.ReadBytes(bytes, address);
  code_asked_ += memory_.asked() - before;
  return !memory_.LinkError();
}

bool StackWalk::MayHoldCode(Address address) const {
  const MemoryKind kind = memory_.KindOf(address);
  if (kind != MemoryKind::Ram) return kind == MemoryKind::Flash;
  // In a program that runs from flash, small numbers are no code in RAM.
  return memory_.KindOf(below_.front()) == MemoryKind::Ram ||
         std::ranges::any_of(debug_info_.functions, [address](const symbols::Function& function) {
           return function.first <= address && address <= function.last;
         });
}

bool StackWalk::RunsIn(Address function) const {
  return std::ranges::any_of(below_, [&](Address place) {
    const symbols::Symbol* symbol = symbols::FindContaining(place, debug_info_);
    if (symbol == nullptr) symbol = symbols::NearestBelow(place, debug_info_);
    return symbol != nullptr && symbol->address == function;
  });
}

bool StackWalk::MayRunIn(Address handler) const {
  return RunsIn(handler) || std::ranges::any_of(below_, [&](Address place) {
           return symbols::FindContaining(place, debug_info_) == nullptr && handler <= place &&
                  place - handler < kHandlerReach;
         });
}

bool StackWalk::MayBegin(Address address) {
  const symbols::LineTable& lines = debug_info_.LineTable;
  Address start = address;
  while (start > address - std::min(address, kMostDecoded) && !lines.HasLineAt(start)) --start;
  if (start == address && lines.HasLineAt(address)) return true;
  if (!lines.HasLineAt(start)) start = address;
  // Two bytes are enough to know an instruction.
  std::vector<std::uint8_t> code(address + 2 - start);
  if (!ReadCode(code, start)) return false;
  const auto decoded = [&](Address at) {
    return isa::InstructionAt(at, base::Bytes(code).subspan(at - start));
  };
  Address at = start;
  while (at < address) at = decoded(at).end();
  return at == address && !decoded(at).entry().illegal();
}

std::optional<isa::Instruction> StackWalk::CallBefore(Address address) {
  std::array<std::uint8_t, kLongestCall> code{};
  if (address < kLongestCall || !MayHoldCode(address - 1)) return std::nullopt;
  if (!ReadCode(code, address - kLongestCall)) return std::nullopt;
  std::optional<isa::Instruction> found;
  for (Address length = kLongestCall; length > 0; --length) {
    const auto call = isa::InstructionAt(address - length, base::Bytes(code).last(length));
    const auto [kind, target] = isa::FlowOf(call);
    if (kind != isa::FlowKind::Call || call.end() != address) continue;
    if (target && !MayHoldCode(*target)) continue;
    if (target && RunsIn(*target)) return call;
    if (!found) found = call;
  }
  return found;
}

std::string StackWalk::VectorsOfHandlerBelow() {
  const auto vectors = memory_.device().vectors;
  const Address first = vectors.front().address;
  std::vector<std::uint8_t> table(vectors.back().address + 2 - first);
  if (!ReadCode(table, first)) return {};
  std::string names;
  for (const devices::Vector& vector : vectors) {
    // The monitor has these two.
    if (vector.address >= devices::kSwiVector) continue;
    const auto at = vector.address - first;
    if (!MayRunIn(base::Word(table[at], table[at + 1]))) continue;
    names += (names.empty() ? "" : "/") + std::string(vector.name);
  }
  return names;
}

std::optional<StackEntry> StackWalk::ReturnAddressAt(Address address) {
  if (!Has(address, 2)) return std::nullopt;
  const Address code = WordAt(address);
  const auto call = CallBefore(code);
  if (!call) return std::nullopt;
  const auto target = isa::FlowOf(*call).target;
  return StackEntry{.kind = StackEntry::Kind::ReturnAddress,
                    .address = address,
                    .bytes = BytesAt(address, 2),
                    .code = code,
                    .certain = target && RunsIn(*target),
                    .call = *call};
}

std::optional<StackEntry> StackWalk::InterruptAt(Address address) {
  if (!Has(address, kFrameBytes) || !CanHaveBeenInterrupted(ByteAt(address))) return std::nullopt;
  const Address code = WordAt(address + kFrameBytes - 2);
  if (!MayHoldCode(code)) return std::nullopt;
  std::string vectors = VectorsOfHandlerBelow();
  if (vectors.empty() || !MayBegin(code)) return std::nullopt;
  return StackEntry{.kind = StackEntry::Kind::Interrupt,
                    .address = address,
                    .bytes = BytesAt(address, kFrameBytes),
                    .code = code,
                    .vectors = std::move(vectors)};
}

StackEntry StackWalk::Take(StackEntry entry) {
  next_ += static_cast<Address>(entry.bytes.size());
  entry.looked_at = !refused_;
  // What is certain leaves no doubt of what lies below either.
  if (entry.certain) below_.clear();
  if (entry.kind != StackEntry::Kind::Byte) below_.push_back(entry.code);
  return entry;
}

std::optional<StackEntry> StackWalk::Next() {
  if (next_ >= end_ || memory_.LinkError()) return std::nullopt;
  refused_ = false;
  if (auto frame = InterruptAt(next_)) return Take(std::move(*frame));
  auto back = ReturnAddressAt(next_);
  // One that only looks so may be the end of a number and the beginning of a true one.
  if (back && !back->certain) {
    const auto later = ReturnAddressAt(next_ + 1);
    if (later && later->certain) back.reset();
  }
  if (back) return Take(std::move(*back));
  return Take({.address = next_, .bytes = BytesAt(next_, 1)});
}

}  // namespace brevant::frames
