// SPDX-License-Identifier: MIT
#include "cli/memory_writes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cli/interrupt.h"
#include "devices/device.h"
#include "load/target_range.h"

namespace brevant::cli {
namespace {

// Why memory of this kind takes no write; null when it does.
const char* WhyNotWritable(devices::MemoryKind kind) {
  switch (kind) {
    case devices::MemoryKind::Flash:
      return "is flash, which takes program and program-bytes only";
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

Result NotTaken(base::Address address, std::uint8_t expected, std::uint8_t found) {
  Result result = Failure(
      ExitStatus::Failed,
      fmt::format("{:04x} holds {:02x} and not {:02x}: the RAM did not take it; check that the "
                  "configured device is the one on the board",
                  address, found, expected));
  result.fields["address"] = fmt::format("{:04x}", address);
  return result;
}

}  // namespace

Result CheckWritable(Session& session, base::Address first, base::Address last) {
  const memory::Memory& memory = session.debugger().memory;
  for (base::Address at = first; at <= last; ++at) {
    const char* why =
        at > base::kLastAddress ? "is beyond FFFF" : WhyNotWritable(memory.KindOf(at));
    if (!why) continue;
    Result result =
        Failure(ExitStatus::Failed, fmt::format("nothing was written: {:04x} {}", at, why));
    result.fields["address"] = fmt::format("{:04x}", at);
    return result;
  }
  return {};
}

Result CheckBlock(Session& session, base::Address first, base::Address last) {
  first &= ~base::Address{1};
  last |= 1;
  Result refused = CheckWritable(session, first, last);
  if (!refused.ok()) return refused;
  control::RegisterFrame& frame = session.debugger().frame;
  const auto stack = frame.stack_in_use();
  if (!stack.Meets(first, last)) return {};
  if (frame.MoveStackClearOf(std::array{memory::Range{first, last - first + 1}})) {
    session.ui().Notice(
        fmt::format("SP was moved to {:04x}: the monitor works on the stack, which "
                    "lay in the block.",
                    frame.ProgramSP()));
    return {};
  }
  return Failure(ExitStatus::Failed,
                 fmt::format("nothing was written: the monitor works on the stack, {:04x} to "
                             "{:04x}, and the block leaves no room for it elsewhere",
                             stack.first, stack.last));
}

Result WriteAndTell(Session& session, base::Address address, base::Bytes bytes) {
  memory::Memory& memory = session.debugger().memory;
  const auto refused = memory.WriteAndLook(address, bytes);
  if (!refused) return {};
  if (memory.KindOf(refused->address) == devices::MemoryKind::Ram) {
    return NotTaken(refused->address, refused->expected, refused->found);
  }
  session.ui().Notice(fmt::format("{:04x} holds {:02x} and not {:02x}.", refused->address,
                                  refused->found, refused->expected));
  return {};
}

Result LookAtWritten(Session& session, base::Address address, base::Bytes expected) {
  memory::Memory& memory = session.debugger().memory;
  Result result;
  const auto look = [&](base::Address at, base::Bytes found) {
    const auto differs = std::ranges::mismatch(found, expected, [&](const auto& a, const auto& b) {
      const auto offset = static_cast<base::Address>(&a - found.data());
      return a == b || memory.KindOf(at + offset) != devices::MemoryKind::Ram;
    });
    if (differs.in1 != found.end()) {
      const auto offset = static_cast<base::Address>(differs.in1 - found.begin());
      result = NotTaken(at + offset, *differs.in2, *differs.in1);
    }
    expected = expected.subspan(found.size());
    if (Interrupted() && result.ok() && !expected.empty()) {
      result = Interruption("; all was written, but not all of it was looked at");
    }
    return result.ok();
  };
  load::ReadRange(memory, address, expected.size(), look);
  return result;
}

}  // namespace brevant::cli
