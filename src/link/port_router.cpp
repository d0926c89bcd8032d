// SPDX-License-Identifier: MIT
#include "link/port_router.h"

#include <algorithm>
#include <utility>

namespace brevant::link {
namespace {

constexpr std::chrono::milliseconds kSleepSlice{20};

}  // namespace

PortRouter::PortRouter(std::function<std::optional<std::string>(const std::string&)> resolve,
                       std::function<PortBackend(const std::string&)> make_backend,
                       std::function<void()> between_transfers)
    : resolve_(std::move(resolve)),
      make_backend_(std::move(make_backend)),
      between_transfers_(std::move(between_transfers)) {}

void PortRouter::Use(PortBackend backend) {
  const std::int64_t now = NowMs();
  clock_ = backend.clock != nullptr ? backend.clock : &system_clock_;
  clock_offset_ms_ = now - clock_->NowMs();
  // Last, since the old backend may own the clock that has just been read.
  backend_ = std::move(backend);
}

bool PortRouter::Open(const std::string& name) {
  Close();
  const auto device = resolve_(name);
  if (!device) {
    error_ = "No device stands behind " + name +
             ". Choose one in the connect dialog, or under [ports] in the settings file.";
    return false;
  }
  PortBackend backend = make_backend_(*device);
  if (backend.port == nullptr) {
    error_ = "There is nothing that could open " + *device + ". Choose another device.";
    return false;
  }
  if (!backend.port->Open(*device)) {
    error_ = backend.port->LastError();
    return false;
  }
  Use(std::move(backend));
  device_ = *device;
  return true;
}

void PortRouter::Close() {
  error_.clear();
  device_.clear();
  if (backend_.port == nullptr) return;
  backend_.port->Close();
  Use({});
}

bool PortRouter::Configure(const base::LineSettings& settings) {
  return backend_.port != nullptr && backend_.port->Configure(settings);
}

bool PortRouter::SetQueueSizes(int receive_bytes, int transmit_bytes) {
  return backend_.port != nullptr && backend_.port->SetQueueSizes(receive_bytes, transmit_bytes);
}

bool PortRouter::SetDtr(bool high) {
  return backend_.port != nullptr && backend_.port->SetDtr(high);
}

bool PortRouter::SetRts(bool high) {
  return backend_.port != nullptr && backend_.port->SetRts(high);
}

bool PortRouter::SetBreak(bool on) {
  return backend_.port != nullptr && backend_.port->SetBreak(on);
}

bool PortRouter::Write(base::Bytes bytes) {
  return backend_.port != nullptr && backend_.port->Write(bytes);
}

std::optional<std::size_t> PortRouter::Read(std::span<std::uint8_t> buffer,
                                            std::chrono::milliseconds timeout) {
  if (backend_.port == nullptr) return std::nullopt;
  const auto count = backend_.port->Read(buffer, timeout);
  Transferred();
  return count;
}

std::string PortRouter::LastError() const {
  if (backend_.port != nullptr) return backend_.port->LastError();
  return error_.empty() ? "No port is open. Connect to a target first." : error_;
}

std::int64_t PortRouter::NowMs() {
  return clock_->NowMs() + clock_offset_ms_;
}

void PortRouter::SpinUntil(std::int64_t deadline_ms) {
  clock_->SpinUntil(deadline_ms - clock_offset_ms_);
}

void PortRouter::Sleep(std::chrono::milliseconds time) {
  if (!between_transfers_) return clock_->Sleep(time);
  for (; time.count() > 0; time -= kSleepSlice) {
    clock_->Sleep(std::min(time, kSleepSlice));
    Transferred();
  }
}

void PortRouter::Transferred() const {
  if (between_transfers_) between_transfers_();
}

}  // namespace brevant::link
