// SPDX-License-Identifier: MIT
#include "cli/memory_writes.h"

#include <fmt/format.h>

#include "devices/device.h"
#include "views/writable.h"

namespace brevant::cli {
namespace {

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
  const auto refused = views::WhyNotWritable(session.debugger().memory, {first, last - first + 1});
  if (!refused) return {};
  Result result = Failure(ExitStatus::Failed, fmt::format("nothing was written: {}", refused->why));
  result.fields["address"] = fmt::format("{:04x}", refused->address);
  return result;
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

}  // namespace brevant::cli
