// SPDX-License-Identifier: MIT
// One serial port and clock in front of several kinds of device. Open("COM2") asks which device
// stands behind the name, makes the backend that drives it and forwards everything to it; the
// backend's clock rules while it is open, since the simulated target keeps its own time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/clock.h"
#include "base/serial_port.h"
#include "link/system_clock.h"

namespace brevant::link {

// A device with the clock that goes with it. Both references live as long as owner.
struct PortBackend {
  std::shared_ptr<void> owner;
  base::SerialPort* port = nullptr;
  base::Clock* clock = nullptr;
};

class PortRouter final : public base::SerialPort, public base::Clock {
 public:
  // resolve: logical port or device name -> device name, or nothing when nothing stands behind it.
  // make_backend: device name -> backend. between_transfers is called after every transfer and
  // again and again during a Sleep, however long the engine is at work: what must go on meanwhile,
  // such as repainting, has its place there. It must not use the port.
  PortRouter(std::function<std::optional<std::string>(const std::string&)> resolve,
             std::function<PortBackend(const std::string&)> make_backend,
             std::function<void()> between_transfers = {});

  // The device opened last, empty when none is open.
  const std::string& device() const { return device_; }

  bool Open(const std::string& name) override;
  void Close() override;
  bool Configure(const base::LineSettings& settings) override;
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override;
  bool SetDtr(bool high) override;
  bool SetRts(bool high) override;
  bool SetBreak(bool on) override;
  bool Write(base::Bytes bytes) override;
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override;
  std::string LastError() const override;

  // One continuous time: it neither jumps nor goes back when the backend changes. Without an open
  // device the computer's clock goes on.
  std::int64_t NowMs() override;
  void SpinUntil(std::int64_t deadline_ms) override;
  void Sleep(std::chrono::milliseconds time) override;

 private:
  void Use(PortBackend backend);
  void Transferred() const;

  std::function<std::optional<std::string>(const std::string&)> resolve_;
  std::function<PortBackend(const std::string&)> make_backend_;
  std::function<void()> between_transfers_;
  SystemClock system_clock_;
  PortBackend backend_;
  base::Clock* clock_ = &system_clock_;
  std::int64_t clock_offset_ms_ = 0;  // added to what clock_ shows
  std::string device_;
  std::string error_;  // of a port that is not open
};

}  // namespace brevant::link
