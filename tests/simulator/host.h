// SPDX-License-Identifier: MIT
// The host's side of the wire for tests of the board: one byte, two copies, then the data.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "simulator/simulated_target.h"

namespace brevant::simulator {

using ByteList = std::vector<std::uint8_t>;
using std::chrono::milliseconds;

class Host {
 public:
  explicit Host(const Device& device = Gp32(), Pace pace = Pace::Instant) : target(device, pace) {}

  SimulatedTarget target;
  Board& board() { return target.board(); }
  Mcu& mcu() { return target.board().mcu(); }
  std::uint8_t Peek(base::Address address) { return mcu().Peek(address); }

  ByteList Read(std::size_t count, milliseconds timeout = milliseconds(120)) {
    ByteList bytes(count);
    bytes.resize(target.Read(bytes, timeout).value_or(0));
    return bytes;
  }
  // Sends each byte after the copies of the one before; returns all that came back: both copies of
  // each byte, then up to replies bytes of data.
  ByteList Exchange(const ByteList& bytes, std::size_t replies = 0) {
    ByteList all;
    for (const std::uint8_t byte : bytes) {
      target.Write({&byte, 1});
      for (const std::uint8_t copy : Read(2)) all.push_back(copy);
    }
    for (const std::uint8_t data : Read(replies)) all.push_back(data);
    return all;
  }
  // The data alone.
  ByteList Ask(const ByteList& bytes, std::size_t replies) {
    const ByteList all = Exchange(bytes, replies);
    const auto copies = static_cast<std::ptrdiff_t>(std::min(all.size(), 2 * bytes.size()));
    return {all.begin() + copies, all.end()};
  }
  void WriteByte(base::Address address, std::uint8_t value) {
    Exchange({0x49, base::HighByte(address), base::LowByte(address), value});
  }
  // Into RAM, past the wire; the program counter of the frame at $00FA points to it.
  void Plant(base::Address address, const ByteList& program) {
    board().Load(address, program);
    mcu().Poke(0x00FE, base::HighByte(address));
    mcu().Poke(0x00FF, base::LowByte(address));
  }

  void PowerUp() {
    target.Open("board");
    target.Configure({});
    target.SetRts(false);
    target.Sleep(milliseconds(10));
  }
  // Powers up and answers with what followed the security bytes.
  ByteList Connect(const ByteList& code = ByteList(8, 0xFF)) {
    PowerUp();
    return Ask(code, 1);
  }
};

}  // namespace brevant::simulator
