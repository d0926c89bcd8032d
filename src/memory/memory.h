// SPDX-License-Identifier: MIT
// The one door to the target's memory. Everything that reads or writes it, and everything that lets
// the target run, passes here; so the door knows what has been read and whether it is still true.
//
// While the target stays stopped, what was read is kept and handed out again: scrolling back, a
// second window on the same place and a repaint cost nothing on the wire. Not kept are registers,
// which change by themselves, and the bytes below the stack pointer, where the monitor works.
// Whatever runs, resets or reconnects drops what it may have touched; a write to RAM updates what
// is kept.
//
// Registers that are not the same once they have been read are touched only by whoever asks for
// them, not by those who read or write the bytes beside them; ReadSparing leaves them out.
//
// A block that the line damages on its way is done once more; where it is damaged again, what was
// read or written there is in doubt, and TakeDamage says so.
//
// Rests on the monitor's commands and the device's memory map. While LinkError is set nothing is
// sent and the results mean nothing; callers that care look at LinkError.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "base/address.h"
#include "base/function_ref.h"
#include "devices/device.h"
#include "link/monitor.h"

namespace brevant::memory {

// A byte that is not what it should be.
struct Difference {
  base::Address address = 0;
  std::uint8_t expected = 0;
  std::uint8_t found = 0;
  bool operator==(const Difference&) const = default;
};

struct Range {
  base::Address first = 0;
  base::Address count = 0;
};

class Memory {
 public:
  explicit Memory(link::Monitor& monitor);
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  // Whose memory map holds from now on; nothing is kept of the one before.
  void UseDevice(const devices::Device& device);
  const devices::Device& device() const { return *device_; }
  devices::MemoryKind KindOf(base::Address address) const;
  // RAM and registers; the monitor's writes to flash, ROM and nothing at all leave no trace.
  bool Writable(base::Address address) const;
  // Reads the same as long as the target is stopped: no register, nor below the stack pointer.
  bool IsSteady(base::Address address) const;
  // Reading the register changes it, or another one.
  bool ChangesOnReading(base::Address address) const;
  bool LinkError() const { return monitor_.LinkError(); }

  // The first address of a block that was damaged twice since the last call.
  std::optional<base::Address> TakeDamage() { return std::exchange(damaged_, std::nullopt); }
  // What is there cannot be relied on, which the next TakeDamage says.
  void Doubt(base::Address address) { damaged_ = damaged_.value_or(address); }
  // How often the line has altered, lost or added a byte so far, as far as echoes tell.
  long damage() const { return monitor_.damage(); }

  // Reading. Addresses are cut to 16 bits; blocks wrap at the end of the address space.

  // Costs a READ (3 host bytes) when the byte is not kept.
  std::uint8_t ReadByte(base::Address address);
  // A READ and one IREAD when it is not kept.
  std::uint32_t ReadWord(base::Address address);
  // Asks for the stretches that are not kept: a READ each, and an IREAD for every two bytes.
  void ReadBytes(std::span<std::uint8_t> destination, base::Address address);
  // As ReadBytes, but registers that change on being read are not asked for: they become what
  // LastRead says of them, or 0.
  void ReadSparing(std::span<std::uint8_t> destination, base::Address address);
  // What the target answered when it was asked last, since it was connected or reset.
  std::optional<std::uint8_t> LastRead(base::Address address) const;
  // Asks for all of it, whatever is kept.
  void AskBytes(std::span<std::uint8_t> destination, base::Address address);
  // The same with every echo compared, for a few bytes that much depends on. With an odd number the
  // READ brings the first.
  void AskChecked(std::span<std::uint8_t> destination, base::Address address);
  // As AskChecked, unless all are kept.
  void ReadChecked(std::span<std::uint8_t> destination, base::Address address);
  std::uint8_t AskByte(base::Address address);
  // Asks for a few bytes until two answers agree: no echo tells of a bit that the line turns in an
  // answer. For what is acted upon or written back. False when none of four agree, which is in
  // doubt then (see TakeDamage), or the link failed.
  bool AskConfirmed(std::span<std::uint8_t> destination, base::Address address);

  // Writing. Nothing is read back.

  void WriteByte(base::Address address, std::uint32_t data);
  // A READ of the address below, then an IWRITE a byte.
  void WriteWord(base::Address address, std::uint32_t value);
  void WriteBytes(base::Address address, base::Bytes bytes);
  // Writes, then asks: the first byte that the memory did not take. Nothing when it holds them all,
  // and while LinkError is set.
  std::optional<Difference> WriteAndLook(base::Address address, base::Bytes bytes);

  // How many bytes the target has been asked for so far.
  long asked() const { return asked_; }

  // Running.

  // READSP: the base of the register frame. The bytes below it are not kept from now on.
  base::Address ReadStackPointer();
  // RUN. It may change anything.
  void RunTarget();
  // RUN of something that can change these bytes and registers alone.
  void RunTarget(std::span<const Range> touched);
  // All RAM of the device.
  std::vector<Range> Ram() const;
  // The target has been reset or another one may stand there.
  void DropAll();
  // The user wants to see these bytes as they are now.
  void Drop(const Range& range);

  // Generations: numbers that only grow. A view compares those of the bytes that it shows with what
  // they were when it was drawn.

  // Of the last change that the host has made to these bytes.
  long WrittenAt(base::Address first, base::Address count) const;
  // Of the last time that these bytes were changed by the host or dropped.
  long ChangedAt(base::Address first, base::Address count) const;
  // Of the last change anywhere.
  long generation() const { return generation_; }

 private:
  static constexpr int kLineShift = 4;  // generations are counted for lines of 16 bytes

  // What is kept may be true no more.
  void DropKept();
  // Touches no byte but these. READ brings the first of an odd number.
  void AskExactly(std::span<std::uint8_t> destination, base::Address address);
  // Does the exchange, and once more if the line has damaged it. False when it was damaged again:
  // nothing of it may be kept.
  bool Soundly(base::Address address, base::FunctionRef<void()> exchange);
  void Keep(base::Address address, base::Bytes bytes);
  void DropAt(const Range& range);
  void NoteWritten(base::Address address, base::Bytes bytes, bool sound);
  static long Latest(const std::vector<long>& lines, base::Address first, base::Address count);

  link::Monitor& monitor_;
  const devices::Device* device_;
  std::vector<std::uint8_t> bytes_;
  std::bitset<base::kAddressSpace> kept_;
  std::bitset<base::kAddressSpace> answered_;  // bytes_ is what the target said, then or now
  base::Address frame_base_ = 0;
  std::optional<base::Address> damaged_;
  long asked_ = 0;
  long generation_ = 1;
  std::vector<long> written_, changed_;
};

}  // namespace brevant::memory
