// SPDX-License-Identifier: MIT
// The ROM monitor's six commands as host operations, with word and block access built on them.
// Everything the debugger knows of the target comes through here. While LinkError is set nothing is
// sent and the results mean nothing; callers that care look at LinkError.
//
// The monitor keeps one address pointer: READ and WRITE set it, IREAD returns the two bytes after
// it and advances by two, IWRITE stores after it and advances by one.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/address.h"
#include "link/monitor_link.h"

namespace brevant::link {

using SecurityCode = std::array<std::uint8_t, 8>;

class Monitor {
 public:
  explicit Monitor(MonitorLink& link) : link_(link) {}
  MonitorLink& link() { return link_; }
  bool LinkError() const { return link_.LinkError; }
  long damage() const { return link_.damage(); }
  void DiscardUnexpected() { link_.DiscardUnexpected(); }

  void WriteByte(base::Address address, std::uint32_t data);  // WRITE
  std::uint8_t ReadByte(base::Address address);               // READ
  void WriteNext(std::uint32_t data);                         // IWRITE
  std::uint32_t ReadNext();                                   // IREAD, first byte * 256 + second
  // READSP: the stack pointer plus one, which is the base of the register frame.
  std::uint32_t ReadStackPointer();
  void RunTarget();  // RUN
  // The monitor's answer to the code: 0 means that it is listening. Without an answer the result is
  // the code's first byte, or 1 when that is 0.
  int SendSecurityCode(const SecurityCode& code);

  // READ at address - 1 (16-bit arithmetic), then one IREAD or two IWRITEs.
  std::uint32_t ReadWord(base::Address address);
  void WriteWord(base::Address address, std::uint32_t value);
  // READ at address - 1, then one IWRITE a byte; none when the line has damaged the READ.
  void WriteBlock(base::Address address, base::Bytes bytes);
  // READ at address - 1, then one IREAD for each element (words) or each two elements (bytes), with
  // echoes read but not compared. With an odd number of bytes one more is read and dropped.
  void ReadBlockWords(std::span<std::uint16_t> destination, base::Address address);
  void ReadBlockBytes(std::span<std::uint8_t> destination, base::Address address);

 private:
  MonitorLink& link_;
};

}  // namespace brevant::link
