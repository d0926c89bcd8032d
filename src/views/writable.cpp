// SPDX-License-Identifier: MIT
#include "views/writable.h"

#include <array>
#include <utility>

#include "base/text_format.h"
#include "devices/device.h"

namespace brevant::views {
namespace {

// Why memory of this kind takes no write; null when it does.
const char* WhyNotWritable(devices::MemoryKind kind) {
  switch (kind) {
    case devices::MemoryKind::Flash:
      return "is flash, which only erasing and programming change";
    case devices::MemoryKind::Rom:
      return "is the monitor's ROM";
    case devices::MemoryKind::Nothing:
      return "is no memory of this device";
    case devices::MemoryKind::Ram:
    case devices::MemoryKind::Registers:
      break;
  }
  return nullptr;
}

constexpr const char* kNoAnswer =
    "the target did not come back while the monitor's stack was moved out of the block";
constexpr const char* kNoRoom =
    "the monitor works on the stack, %04x to %04x, and the block leaves no room for it elsewhere";

}  // namespace

std::optional<WriteRefusal> WhyNotWritable(const memory::Memory& memory,
                                           const memory::Range& range) {
  for (base::Address at = range.first; at < range.first + range.count; ++at) {
    const char* why =
        at > base::kLastAddress ? "is beyond FFFF" : WhyNotWritable(memory.KindOf(at));
    if (why != nullptr) return WriteRefusal{at, base::Format("%04x %s", at, why)};
  }
  return std::nullopt;
}

WriteRoom MakeRoomToWrite(const memory::Range& range, const memory::Range& keep,
                          const memory::Memory& memory, control::RegisterFrame& frame) {
  if (auto refused = WhyNotWritable(memory, range)) return {.refused = std::move(refused)};
  const auto stack = frame.stack_in_use();
  if (range.count == 0 || !stack.Meets(range.first, range.first + range.count - 1)) return {};
  const base::Address before = frame.SP;
  if (frame.MoveStackClearOf(std::array{range, keep})) {
    return {.moved_sp = frame.SP == before ? std::nullopt : std::optional(frame.ProgramSP())};
  }
  if (memory.LinkError()) return {.refused = WriteRefusal{stack.first, kNoAnswer}};
  return {.refused = WriteRefusal{stack.first, base::Format(kNoRoom, stack.first, stack.last)}};
}

}  // namespace brevant::views
