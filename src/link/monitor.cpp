// SPDX-License-Identifier: MIT
#include "link/monitor.h"

namespace brevant::link {

namespace {

using base::Address;
using base::HighByte;
using base::LowByte;

// The monitor's command bytes.
enum Command : std::uint8_t {
  kReadSp = 0x0C,
  kIWrite = 0x19,
  kIRead = 0x1A,
  kRun = 0x28,
  kWrite = 0x49,
  kRead = 0x4A,
};

template <std::size_t N>
void Send(MonitorLink& link, const std::array<std::uint8_t, N>& command) {
  link.SendEchoed(command);
}

std::uint32_t ReceiveWord(MonitorLink& link) {
  std::array<std::uint8_t, 2> reply{};
  link.ReadRaw(reply);
  return base::Word(reply[0], reply[1]);
}

// The step that both block reads repeat: IREAD with its two copies read but not compared. Nothing
// when a read failed.
bool ReadPairUnchecked(MonitorLink& link, std::array<std::uint8_t, 2>& pair) {
  static constexpr std::array<std::uint8_t, 1> kCommand{kIRead};
  link.WriteRaw(kCommand);
  std::array<std::uint8_t, 2> copies{};
  link.ReadRaw(copies);
  if (!link.LinkError) link.CountEchoes(kIRead, copies);
  link.ReadRaw(pair);
  return !link.LinkError;
}

}  // namespace

void Monitor::WriteByte(Address address, std::uint32_t data) {
  Send<4>(link_, {kWrite, HighByte(address), LowByte(address), LowByte(data)});
}

std::uint8_t Monitor::ReadByte(Address address) {
  Send<3>(link_, {kRead, HighByte(address), LowByte(address)});
  std::uint8_t value = 0;
  link_.ReadRaw(std::span(&value, 1));
  return value;
}

void Monitor::WriteNext(std::uint32_t data) {
  Send<2>(link_, {kIWrite, LowByte(data)});
}

std::uint32_t Monitor::ReadNext() {
  Send<1>(link_, {kIRead});
  return ReceiveWord(link_);
}

std::uint32_t Monitor::ReadStackPointer() {
  Send<1>(link_, {kReadSp});
  return ReceiveWord(link_);
}

void Monitor::RunTarget() {
  Send<1>(link_, {kRun});
}

int Monitor::SendSecurityCode(const SecurityCode& code) {
  link_.SendSecret(code);
  // 0 is the answer of a listening monitor, so silence must never read as 0.
  std::uint8_t answer = code[0] != 0 ? code[0] : 1;
  link_.ReadRaw(std::span(&answer, 1));
  return answer;
}

std::uint32_t Monitor::ReadWord(Address address) {
  ReadByte(address - 1);
  return ReadNext();
}

void Monitor::WriteWord(Address address, std::uint32_t value) {
  ReadByte(address - 1);
  WriteNext(HighByte(value));
  WriteNext(LowByte(value));
}

void Monitor::WriteBlock(Address address, base::Bytes bytes) {
  const long before = damage();
  ReadByte(address - 1);
  // An address that the line has altered must not be written behind.
  if (damage() != before) return;
  for (const std::uint8_t byte : bytes) WriteNext(byte);
}

void Monitor::ReadBlockWords(std::span<std::uint16_t> destination, Address address) {
  ReadByte(address - 1);
  if (LinkError()) return;
  std::array<std::uint8_t, 2> pair{};
  for (std::uint16_t& element : destination) {
    if (!ReadPairUnchecked(link_, pair)) return;
    element = static_cast<std::uint16_t>(base::Word(pair[0], pair[1]));
  }
}

void Monitor::ReadBlockBytes(std::span<std::uint8_t> destination, Address address) {
  ReadByte(address - 1);
  if (LinkError()) return;
  std::array<std::uint8_t, 2> pair{};
  for (std::size_t i = 0; i < destination.size(); i += 2) {
    if (!ReadPairUnchecked(link_, pair)) return;
    destination[i] = pair[0];
    if (i + 1 < destination.size()) destination[i + 1] = pair[1];
  }
}

}  // namespace brevant::link
