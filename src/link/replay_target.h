// SPDX-License-Identifier: MIT
// A recording played back as a target: what the host does is compared with what it did then, and
// what the target sent then is handed out at its places and times. Its clock is the recording's: it
// moves with the events and with the host's waits, so that nothing takes real time.
//
// From the first difference on the port is gone, and LastError tells of it.
#pragma once

#include <optional>
#include <string>

#include "base/clock.h"
#include "base/serial_port.h"
#include "link/recording_text.h"

namespace brevant::link {

class ReplayTarget final : public base::SerialPort, public base::Clock {
 public:
  // A recording with an error cannot be opened; the reason says what is wrong with the file.
  ReplayTarget(Recording recording, std::string file);

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
  std::string LastError() const override { return error_; }

  std::int64_t NowMs() override { return now_ms_; }
  void SpinUntil(std::int64_t deadline_ms) override;
  void Sleep(std::chrono::milliseconds time) override { now_ms_ += time.count(); }

 private:
  const WireEvent* Next() const;
  // Reads that found nothing may be fewer than they were.
  void PassNothings();
  void TakeTime(const WireEvent& event);
  // Ends the event, and says whether the call failed then.
  bool Done();
  bool Differ(const std::string& did);
  bool Switch(WireKind kind, bool on, const char* did);
  bool SendByte(std::uint8_t byte);
  std::uint8_t ByteOf(const WireByte& byte) const;

  const std::vector<WireEvent> events_;
  const std::string file_;
  std::size_t next_ = 0;
  std::size_t taken_ = 0;  // bytes of that event, or reads that found nothing
  std::int64_t now_ms_ = 0;
  std::uint8_t last_sent_ = 0;
  std::string difference_;
  std::string error_;
};

}  // namespace brevant::link
