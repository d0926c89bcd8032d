// SPDX-License-Identifier: MIT
// The simulated board with random code in RAM and random bytes from the host. It must stay within
// its memory, and two boards that are treated alike stay alike.
#include <algorithm>
#include <cstdlib>

#include "simulator/board.h"

using namespace brevant::simulator;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kCode = 64;
  constexpr Cycles kByteTime = 12 * kCyclesPerBit;
  Board board(size % 2 == 0 ? DeviceByIndex(0) : DeviceByIndex(1));
  board.SetPower(true);
  board.RunUntil(board.now() + 10 * kByteTime);
  const std::size_t code = std::min(size, kCode);
  board.Load(0x0080, brevant::base::Bytes(data, code));
  Board twin = board;
  for (std::size_t i = code; i < size; ++i) {
    for (Board* each : {&board, &twin}) {
      if (data[i] == 0xB0) each->SetHostBreak(i % 2 == 0);
      each->SendFromHost(data[i]);
      each->RunUntil(each->now() + kByteTime);
    }
  }
  if (!(board.mcu() == twin.mcu()) || board.now() != twin.now()) std::abort();
  return 0;
}
