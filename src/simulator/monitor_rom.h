// SPDX-License-Identifier: MIT
// The monitor program in the MCU's ROM, as it behaves towards the host: the security bytes, the six
// commands, the address pointer, and what it does to the stack it works on. Byte in, byte out; time
// and the wire are the board's. Rests on Mcu. A plain value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/address.h"
#include "simulator/mcu.h"

namespace brevant::simulator {

class MonitorRom {
 public:
  static constexpr int kSecurityBytes = 8;
  // What security bytes are compared with, $FFF6 to $FFFD.
  static constexpr base::Address kSecurityAddress = 0xFFF6;
  // Bytes below the frame that the monitor's own subroutine calls overwrite with each command.
  static constexpr int kStackUsed = 8;

  // The MCU has been reset: eight security bytes come first. They are compared only after a
  // power-on reset; after any other they are taken, and what was decided before stands.
  void Reset(ResetCause cause);
  // The MCU has entered the monitor from a program. The stack frame is the MCU's.
  void Enter();

  enum class Taken {
    More,          // the byte is echoed, nothing else
    Command,       // ... and completes a command: Execute is due when the cancel window has passed
    SecurityDone,  // ... and was the last security byte: a break character follows the echo
  };
  Taken Take(Mcu& mcu, std::uint8_t byte);

  // A break from the host: forgets the command or the security bytes that were under way.
  void Abandon();

  struct Reply {
    std::array<std::uint8_t, 2> bytes{};
    std::size_t count = 0;
  };
  // Number of data bytes that the completed command will answer with.
  std::size_t reply_bytes() const;
  // Carries out the completed command. RUN leaves the monitor (see Mcu::in_monitor).
  Reply Execute(Mcu& mcu);

 private:
  struct Command;
  static std::span<const Command> Commands();
  static const Command* Find(std::uint8_t code);

  Taken TakeSecurityByte(Mcu& mcu, std::uint8_t byte);
  void FinishSecurity(Mcu& mcu);
  void UseStack(Mcu& mcu);

  Reply ReadByte(Mcu& mcu);
  Reply WriteByte(Mcu& mcu);
  Reply ReadNext(Mcu& mcu);
  Reply WriteNext(Mcu& mcu);
  Reply ReadStackPointer(Mcu& mcu);
  Reply Run(Mcu& mcu);
  base::Address NamedAddress() const { return base::Word(frame_[1], frame_[2]); }

  int security_left_ = kSecurityBytes;
  bool compare_ = true;  // the security bytes decide
  bool match_ = true;    // all compared so far are right

  std::array<std::uint8_t, 4> frame_{};  // the command under way
  std::size_t frame_size_ = 0;
  base::Address pointer_ = 0;
  std::uint8_t garbage_ = 0;
};

}  // namespace brevant::simulator
