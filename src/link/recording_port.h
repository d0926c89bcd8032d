// SPDX-License-Identifier: MIT
// A serial port that tells of everything that passes through it. Rests on the port that does the
// work and on the clock whose times are told; what becomes of the lines is their receiver's.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/serial_port.h"
#include "link/recording_text.h"

namespace brevant::link {

class RecordingPort final : public base::SerialPort {
 public:
  // sink receives each event as a line with its end, security codes marked (see WithSecrets). It
  // must not use the port.
  RecordingPort(base::SerialPort& port, base::Clock& clock,
                std::function<void(std::string_view)> sink);
  RecordingPort(const RecordingPort&) = delete;
  RecordingPort& operator=(const RecordingPort&) = delete;
  ~RecordingPort() override { TellNothings(); }

  // What is exchanged while this is on is a security code.
  void Secret(bool on) { secret_ = on; }
  // Reads that found nothing are told of together, when something else happens; this tells now.
  void TellNothings();

  bool Open(const std::string& device) override;
  void Close() override;
  bool Configure(const base::LineSettings& settings) override;
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override;
  bool SetDtr(bool high) override;
  bool SetRts(bool high) override;
  bool SetBreak(bool on) override;
  bool Write(base::Bytes bytes) override;
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override;
  std::string LastError() const override { return port_.LastError(); }

 private:
  // Since the first event.
  std::int64_t Now();
  void Begin(WireKind kind);
  void TellText(WireKind kind, std::string_view text);
  void TellBytes(WireKind kind, base::Bytes bytes);
  // What the host did, and that it failed. Nothing is told of a port that is not open.
  bool Told(WireKind kind, std::string_view text, bool done);

  base::SerialPort& port_;
  base::Clock& clock_;
  std::function<void(std::string_view)> sink_;
  std::string line_;
  std::optional<std::int64_t> start_ms_;
  bool open_ = false;
  bool gone_ = false;  // has been told of
  bool secret_ = false;
  std::uint8_t last_sent_ = 0;
  long nothings_ = 0;
  std::int64_t last_nothing_ms_ = 0;
};

}  // namespace brevant::link
