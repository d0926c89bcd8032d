// SPDX-License-Identifier: MIT
#include "views/watch_reading.h"

#include <span>
#include <utility>

#include "base/text_format.h"
#include "devices/device.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

using base::Address;

constexpr std::size_t kWordBytes = 2;

// Why they are not to be read; empty when they may be.
std::string Obstacle(Address address, Address count, const memory::Memory& memory, Reading how) {
  if (memory.LinkError()) return messages::kNotAnswering;
  if (address > base::kLastAddress || address + count > base::kAddressSpace) {
    return messages::kEndsBeyondMemory;
  }
  for (Address at = address; at < address + count && how == Reading::ByTheWay; ++at) {
    const devices::Register* const effect = devices::FindReadEffect(memory.device(), at);
    if (effect == nullptr || memory.LastRead(at)) continue;
    return base::Format(messages::kReadOnRequestOnly, std::string(effect->name),
                        std::string(effect->read_effect));
  }
  return {};
}

// A word and a block begin with a READ of the byte below, and a block ends with a pair.
bool ComesNearTouchy(Address address, Address count, const memory::Memory& memory) {
  for (Address at = address - 1; at != address + count + 1; ++at) {
    if (memory.ChangesOnReading(at)) return true;
  }
  return false;
}

void ReadWordTo(std::span<std::uint8_t> bytes, Address address, memory::Memory& memory) {
  const std::uint32_t word = memory.ReadWord(address);
  bytes[0] = base::HighByte(word);
  bytes[1] = base::LowByte(word);
}

void ReadSoundly(const WatchItem& item, std::span<std::uint8_t> bytes, memory::Memory& memory) {
  if (item.IsString()) return memory.ReadBytes(bytes, item.address);
  if (bytes.size() == 1) {
    bytes[0] = memory.ReadByte(item.address);
    return;
  }
  // The low half of a long comes first.
  for (std::size_t at = bytes.size(); at >= kWordBytes; at -= kWordBytes) {
    const std::size_t first = at - kWordBytes;
    ReadWordTo(bytes.subspan(first, kWordBytes), item.address + static_cast<Address>(first),
               memory);
  }
}

}  // namespace

WatchReading ReadWatched(const WatchItem& item, memory::Memory& memory, Reading how) {
  const auto count = static_cast<Address>(item.bytes());
  std::string obstacle = Obstacle(item.address, count, memory, how);
  if (!obstacle.empty()) return {.problem = std::move(obstacle)};
  std::vector<std::uint8_t> bytes(count);
  memory.TakeDamage();  // of what came before
  if (!ComesNearTouchy(item.address, count, memory)) {
    ReadSoundly(item, bytes, memory);
  } else if (how == Reading::OnRequest) {
    memory.ReadBytes(bytes, item.address);
  } else {
    memory.ReadSparing(bytes, item.address);
  }
  if (memory.LinkError()) return {.problem = messages::kNotAnswering};
  if (memory.TakeDamage()) return {.problem = messages::kLineDamagesReading};
  return {.bytes = std::move(bytes)};
}

}  // namespace brevant::views
