// SPDX-License-Identifier: MIT
#include "memory/memory.h"

#include <algorithm>
#include <array>

namespace brevant::memory {

namespace {

using base::Address;
using base::Low16;
using devices::MemoryKind;

// More than any version of the monitor uses below the frame while it serves a command.
constexpr Address kMonitorStack = 32;
// A READ costs as many host bytes as three IREADs: reading so many kept bytes again is cheaper than
// a second stretch.
constexpr std::size_t kWorthBridging = 6;
// Of which two in a row have to agree: one that the line has altered may be any.
constexpr int kMostAnswers = 4;

}  // namespace

Memory::Memory(link::Monitor& monitor)
    : monitor_(monitor),
      device_(&devices::BySettingsNumber(0)),
      bytes_(base::kAddressSpace),
      written_(base::kAddressSpace >> kLineShift, 1),
      changed_(base::kAddressSpace >> kLineShift, 1) {}

void Memory::UseDevice(const devices::Device& device) {
  device_ = &device;
  DropAll();
}

MemoryKind Memory::KindOf(Address address) const {
  return devices::KindOf(*device_, Low16(address));
}

bool Memory::Writable(Address address) const {
  const MemoryKind kind = KindOf(address);
  return kind == MemoryKind::Ram || kind == MemoryKind::Registers;
}

bool Memory::IsSteady(Address address) const {
  if (KindOf(address) == MemoryKind::Registers) return false;
  return address >= frame_base_ || frame_base_ - address > kMonitorStack;
}

bool Memory::ChangesOnReading(Address address) const {
  return devices::FindReadEffect(*device_, Low16(address)) != nullptr;
}

void Memory::Keep(Address address, base::Bytes bytes) {
  if (LinkError()) return;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const Address at = Low16(address + static_cast<Address>(i));
    bytes_[at] = bytes[i];
    kept_[at] = IsSteady(at);
    answered_[at] = true;
  }
}

std::uint8_t Memory::ReadByte(Address address) {
  return kept_[Low16(address)] ? bytes_[Low16(address)] : AskByte(address);
}

std::uint8_t Memory::AskByte(Address address) {
  std::uint8_t byte = 0;
  ++asked_;
  const bool sound = Soundly(address, [&] { byte = monitor_.ReadByte(Low16(address)); });
  if (sound) Keep(address, base::Bytes(&byte, 1));
  return byte;
}

std::uint32_t Memory::ReadWord(Address address) {
  std::array<std::uint8_t, 2> bytes{};
  ReadChecked(bytes, address);
  return base::Word(bytes[0], bytes[1]);
}

void Memory::AskChecked(std::span<std::uint8_t> destination, Address address) {
  asked_ += std::ssize(destination);
  const bool sound = Soundly(address, [&] {
    const bool odd = destination.size() % 2 != 0;
    const std::uint8_t first = monitor_.ReadByte(Low16(odd ? address : address - 1));
    if (odd) destination[0] = first;
    for (std::size_t i = odd ? 1 : 0; i < destination.size(); i += 2) {
      const std::uint32_t word = monitor_.ReadNext();
      destination[i] = base::HighByte(word);
      destination[i + 1] = base::LowByte(word);
    }
  });
  if (sound) Keep(address, destination);
}

bool Memory::AskConfirmed(std::span<std::uint8_t> destination, Address address) {
  AskChecked(destination, address);
  std::vector<std::uint8_t> before(destination.size());
  for (int answers = 1; answers < kMostAnswers && !LinkError(); ++answers) {
    std::ranges::copy(destination, before.begin());
    AskChecked(destination, address);
    if (!LinkError() && std::ranges::equal(destination, before)) return true;
  }
  if (!LinkError()) Doubt(Low16(address));
  return false;
}

void Memory::ReadChecked(std::span<std::uint8_t> destination, Address address) {
  for (std::size_t i = 0; i < destination.size(); ++i) {
    const Address at = Low16(address + static_cast<Address>(i));
    if (!kept_[at]) return AskChecked(destination, address);
    destination[i] = bytes_[at];
  }
}

bool Memory::Soundly(Address address, base::FunctionRef<void()> exchange) {
  for (int tries = 0; tries < 2 && !LinkError(); ++tries) {
    const long before = damage();
    exchange();
    if (LinkError()) return false;
    if (damage() == before) return true;
    monitor_.DiscardUnexpected();
  }
  if (!LinkError() && !damaged_) damaged_ = Low16(address);
  return false;
}

void Memory::AskExactly(std::span<std::uint8_t> destination, Address address) {
  const std::size_t odd = destination.size() - (destination.size() + 1) % 2;
  AskChecked(destination.first(odd), address);
  if (odd == destination.size() || LinkError()) return;
  AskChecked(destination.subspan(odd), address + static_cast<Address>(odd));
}

void Memory::AskBytes(std::span<std::uint8_t> destination, Address address) {
  if (destination.empty()) return;
  // A block begins with a READ of the byte below it and ends with a pair.
  const auto size = static_cast<Address>(destination.size());
  if (ChangesOnReading(address - 1) || (size % 2 != 0 && ChangesOnReading(address + size))) {
    return AskExactly(destination, address);
  }
  asked_ += std::ssize(destination);
  const bool sound =
      Soundly(address, [&] { monitor_.ReadBlockBytes(destination, Low16(address)); });
  if (sound) Keep(address, destination);
}

void Memory::ReadBytes(std::span<std::uint8_t> destination, Address address) {
  const auto kept = [&](std::size_t i) { return kept_[Low16(address + static_cast<Address>(i))]; };
  const std::size_t size = destination.size();
  for (std::size_t i = 0; i < size && !LinkError();) {
    if (kept(i)) {
      destination[i] = bytes_[Low16(address + static_cast<Address>(i))];
      ++i;
      continue;
    }
    std::size_t end = i + 1;
    for (std::size_t next = end; next < size && next - end <= kWorthBridging; ++next) {
      if (!kept(next)) end = next + 1;
    }
    AskBytes(destination.subspan(i, end - i), address + static_cast<Address>(i));
    i = end;
  }
}

void Memory::ReadSparing(std::span<std::uint8_t> destination, Address address) {
  const auto spared = [&](std::size_t i) {
    return ChangesOnReading(address + static_cast<Address>(i));
  };
  for (std::size_t i = 0; i < destination.size();) {
    std::size_t end = i;
    while (end < destination.size() && !spared(end)) ++end;
    ReadBytes(destination.subspan(i, end - i), address + static_cast<Address>(i));
    i = end;
    if (i == destination.size()) break;
    destination[i] = LastRead(address + static_cast<Address>(i)).value_or(0);
    ++i;
  }
}

std::optional<std::uint8_t> Memory::LastRead(Address address) const {
  const Address at = Low16(address);
  return answered_[at] ? std::optional(bytes_[at]) : std::nullopt;
}

void Memory::NoteWritten(Address address, base::Bytes bytes, bool sound) {
  ++generation_;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const Address at = Low16(address + static_cast<Address>(i));
    // Only RAM can be taken at its word; what else has become of it is for a read to tell.
    answered_[at] = kept_[at] = sound && KindOf(at) == MemoryKind::Ram && IsSteady(at);
    bytes_[at] = bytes[i];
    written_[at >> kLineShift] = changed_[at >> kLineShift] = generation_;
  }
}

void Memory::WriteByte(Address address, std::uint32_t data) {
  const long before = damage();
  const bool sound = Soundly(address, [&] { monitor_.WriteByte(Low16(address), data); });
  // With an address that the line has altered it was written anywhere.
  if (damage() != before) DropKept();
  const std::uint8_t byte = base::LowByte(data);
  NoteWritten(address, base::Bytes(&byte, 1), sound);
}

void Memory::WriteWord(Address address, std::uint32_t value) {
  WriteBytes(address, std::array{base::HighByte(value), base::LowByte(value)});
}

void Memory::WriteBytes(Address address, base::Bytes bytes) {
  // A block begins with a READ of the byte below it.
  if (ChangesOnReading(address - 1)) {
    for (const std::uint8_t byte : bytes) WriteByte(address++, byte);
    return;
  }
  const bool sound = Soundly(address, [&] { monitor_.WriteBlock(Low16(address), bytes); });
  NoteWritten(address, bytes, sound);
}

std::optional<Difference> Memory::WriteAndLook(Address address, base::Bytes bytes) {
  WriteBytes(address, bytes);
  std::vector<std::uint8_t> found(bytes.size());
  AskBytes(found, address);
  if (LinkError()) return std::nullopt;
  const auto [expected, differing] = std::ranges::mismatch(bytes, found);
  if (expected == bytes.end()) return std::nullopt;
  const auto offset = static_cast<Address>(expected - bytes.begin());
  return Difference{Low16(address + offset), *expected, *differing};
}

Address Memory::ReadStackPointer() {
  const Address base = monitor_.ReadStackPointer();
  if (LinkError()) return base;
  frame_base_ = base;
  const Address first = base - std::min(base, kMonitorStack);
  for (Address at = first; at < base; ++at) kept_[at] = false;
  return base;
}

void Memory::RunTarget() {
  DropKept();
  monitor_.RunTarget();
}

void Memory::RunTarget(std::span<const Range> touched) {
  ++generation_;
  for (const Range& range : touched) DropAt(range);
  monitor_.RunTarget();
}

std::vector<Range> Memory::Ram() const {
  std::vector<Range> ranges;
  for (const devices::MemoryRange& range : device_->memory) {
    if (range.kind == MemoryKind::Ram) {
      ranges.push_back({range.first, range.last - range.first + 1});
    }
  }
  return ranges;
}

void Memory::Drop(const Range& range) {
  ++generation_;
  DropAt(range);
}

void Memory::DropAt(const Range& range) {
  for (Address i = 0; i < range.count; ++i) {
    const Address at = Low16(range.first + i);
    kept_[at] = false;
    changed_[at >> kLineShift] = generation_;
  }
}

void Memory::DropAll() {
  DropKept();
  answered_.reset();
}

void Memory::DropKept() {
  ++generation_;
  kept_.reset();
  std::ranges::fill(changed_, generation_);
}

long Memory::WrittenAt(Address first, Address count) const {
  return Latest(written_, first, count);
}

long Memory::ChangedAt(Address first, Address count) const {
  return Latest(changed_, first, count);
}

long Memory::Latest(const std::vector<long>& lines, Address first, Address count) {
  long latest = 0;
  for (Address line = first >> kLineShift; count > 0 && line <= (first + count - 1) >> kLineShift;
       ++line) {
    latest = std::max(latest, lines[line % lines.size()]);
  }
  return latest;
}

}  // namespace brevant::memory
