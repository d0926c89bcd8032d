// SPDX-License-Identifier: MIT
#include "frames/call_stack.h"

#include <algorithm>
#include <array>

#include "base/text_format.h"
#include "frames/function_at.h"
#include "frames/source_line.h"
#include "frames/stack_depth.h"
#include "frames/stack_walk.h"
#include "isa/flow.h"
#include "symbols/places.h"

namespace brevant::frames {
namespace {

using base::Address;
using isa::kLongestCall;
using isa::kReturnBytes;
using isa::kShortestCall;

constexpr Address kInterruptBytes = 5;   // CCR, A, X, PC
constexpr long kMostCodeSearched = 256;  // bytes, for one frame
// How far from a label code is still told by it.
constexpr Address kNearestReach = 0x200;
constexpr std::string_view kOutermost = "main";

// The call that ends before the address and goes to the function, where one does; else any call.
std::optional<isa::Instruction> CallBefore(memory::Memory& memory, Address address,
                                           const symbols::Function& function) {
  if (address < kLongestCall) return std::nullopt;
  std::array<std::uint8_t, kLongestCall> code{};
  memory.ReadBytes(code, address - kLongestCall);
  if (memory.LinkError()) return std::nullopt;
  std::optional<isa::Instruction> found;
  for (Address length = kLongestCall; length >= kShortestCall; --length) {
    const auto call = isa::InstructionAt(address - length, base::Bytes(code).last(length));
    const isa::Flow flow = isa::FlowOf(call);
    if (flow.kind != isa::FlowKind::Call || call.end() != address) continue;
    if (flow.target == function.first) return call;
    if (!found) found = call;
  }
  return found;
}

}  // namespace

memory::Range StackAbove(Address sp, const memory::Memory& memory, const symbols::DebugInfo& info) {
  const Address first = base::Low16(sp + 1);
  const auto known = [&](Address address) {
    return symbols::FindContaining(address, info) != nullptr;
  };
  for (const memory::Range& ram : memory.Ram()) {
    if (first - ram.first >= ram.count) continue;
    const Address end = ram.first + ram.count;
    // A stack that has grown into the variables is shown all the more.
    if (known(first) && FunctionAt(first, info) == nullptr) return {first, end - first};
    Address last = first;
    while (last < end && !known(last)) ++last;
    return {first, last - first};
  }
  return {first, 0};
}

Frame Unwinder::FrameAt(Address pc, Address sp, Found found) {
  Frame frame{.pc = pc, .sp = sp, .call = pc, .found = found, .function = FunctionAt(pc, info_)};
  if (frame.function == nullptr) return frame;
  if (const auto depth = StackDepth(memory_, *frame.function, pc)) {
    frame.entry_sp = base::Low16(sp + static_cast<Address>(*depth));
  }
  return frame;
}

Frame Unwinder::Innermost(Address pc, Address sp) {
  return FrameAt(base::Low16(pc), base::Low16(sp), Found::Here);
}

std::optional<Frame> Unwinder::CallerOf(const Frame& frame) {
  reason_.clear();
  return frame.entry_sp ? ByCode(frame) : BySearch(frame);
}

bool Unwinder::InRam(Address first, Address count) const {
  return memory_.KindOf(first) == devices::MemoryKind::Ram &&
         memory_.KindOf(first + count - 1) == devices::MemoryKind::Ram;
}

std::optional<Frame> Unwinder::ByCode(const Frame& frame) {
  const bool handler = frame.function->is_interrupt;
  const Address bytes = handler ? kInterruptBytes : kReturnBytes;
  const Address first = base::Low16(*frame.entry_sp + 1);
  if (!InRam(first, bytes)) {
    reason_ = base::Format("no return address can lie at %04x", first);
    return std::nullopt;
  }
  const Address pc = memory_.ReadWord(first + bytes - kReturnBytes);
  if (memory_.LinkError()) {
    reason_ = "the link is lost";
    return std::nullopt;
  }
  const Address sp = base::Low16(*frame.entry_sp + bytes);
  if (handler) {
    Frame caller = FrameAt(pc, sp, Found::Followed);
    caller.interrupted = true;
    return caller;
  }
  const auto call = CallBefore(memory_, pc, *frame.function);
  if (!call) {
    reason_ = base::Format("the return address %04x at %04x has no call before it", pc, first);
    return std::nullopt;
  }
  // A call that gets its target from registers may well have been this one, as may one of a place
  // in the caller itself: so calls through pointers are made.
  const auto target = isa::FlowOf(*call).target;
  const bool certain = !target || *target == frame.function->first ||
                       (FunctionAt(*target, info_) == FunctionAt(pc, info_) &&
                        FunctionAt(*target, info_) != nullptr);
  Frame caller = FrameAt(pc, sp, certain ? Found::Followed : Found::Perhaps);
  caller.call = call->address;
  return caller;
}

std::optional<Frame> Unwinder::BySearch(const Frame& frame) {
  StackWalk walk(memory_, info_, frame.pc, StackAbove(frame.sp, memory_, info_), kMostCodeSearched);
  while (const auto entry = walk.Next()) {
    if (!entry->looked_at) break;
    if (entry->kind == StackEntry::Kind::Byte) continue;
    const auto end = entry->address + static_cast<Address>(entry->bytes.size()) - 1;
    Frame caller =
        FrameAt(entry->code, base::Low16(end), entry->certain ? Found::CallStands : Found::Perhaps);
    caller.interrupted = entry->kind == StackEntry::Kind::Interrupt;
    if (!caller.interrupted) caller.call = entry->call.address;
    return caller;
  }
  reason_ = memory_.LinkError()
                ? "the link is lost"
                : base::Format("nothing above %04x looks like a return address", frame.sp);
  return std::nullopt;
}

CallStack FindCallStack(memory::Memory& memory, const symbols::DebugInfo& info, Address pc,
                        Address sp, int most) {
  Unwinder unwinder(memory, info);
  CallStack stack{{unwinder.Innermost(pc, sp)}, {}};
  while (true) {
    const Frame& last = stack.frames.back();
    if (last.function != nullptr && symbols::PlainName(last.function->name) == kOutermost)
      return stack;
    if (static_cast<int>(stack.frames.size()) >= most) {
      stack.end = "further callers were not looked for";
      return stack;
    }
    auto caller = unwinder.CallerOf(last);
    if (!caller) {
      stack.end = unwinder.reason();
      return stack;
    }
    stack.frames.push_back(*caller);
  }
}

std::string FrameText(std::size_t number, const Frame& frame, const symbols::DebugInfo& info) {
  const auto line = LineAt(frame.call, info);
  const std::string place =
      line ? symbols::LineName(*line, info.LineTable) : base::Format("%04x", frame.call);
  std::string text =
      "#" + std::to_string(number) + " " + FunctionName(frame, info) + " at " + place;
  if (frame.interrupted) text += " (interrupted there)";
  if (frame.found == Found::Perhaps) text += " (perhaps)";
  return text;
}

std::string FunctionName(const Frame& frame, const symbols::DebugInfo& info) {
  if (frame.function != nullptr) return std::string(symbols::PlainName(frame.function->name));
  const symbols::Symbol* const nearest = symbols::NearestBelow(frame.pc, info);
  if (nearest == nullptr || frame.pc - nearest->address >= kNearestReach) return "?";
  const Address offset = frame.pc - nearest->address;
  return std::string(symbols::PlainName(nearest->name)) +
         (offset == 0 ? "" : base::Format("+%x", offset));
}

}  // namespace brevant::frames
