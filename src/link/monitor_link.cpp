// SPDX-License-Identifier: MIT
#include "link/monitor_link.h"

#include <algorithm>
#include <array>

namespace brevant::link {

namespace {

using std::chrono::milliseconds;

constexpr int kReceiveQueue = 2048;
constexpr int kTransmitQueue = 1024;
constexpr milliseconds kSettleBeforeLines{100};
constexpr milliseconds kSettleAfterReset{1000};
constexpr int kResetPulseMs = 100;
constexpr int kBreakPulseMs = 100;
constexpr std::size_t kLongestRead = 64;  // no reply is longer than two bytes
// A line that chatters without end must not hang DiscardInput.
constexpr int kDiscardLimit = 64 * 1024;

// 10 ms a byte on top of 100 ms a call: eight times what a byte and its echo take at 9600 baud.
milliseconds ReadTimeOut(std::size_t bytes) {
  return milliseconds(100 + 10 * static_cast<int>(bytes));
}

}  // namespace

bool MonitorLink::OpenPort(const std::string& name) {
  ClosePort();
  if (!port_.Open(name)) return false;
  open_ = true;
  if (!ConfigurePort() || !port_.SetQueueSizes(kReceiveQueue, kTransmitQueue)) {
    // The port's own reason must survive the closing.
    open_error_ = port_.LastError();
    port_.Close();
    open_ = false;
    return false;
  }
  DiscardInput();
  return true;
}

bool MonitorLink::ConfigurePort() {
  if (!port_.Configure(base::LineSettings{})) return false;
  clock_.Sleep(kSettleBeforeLines);
  if (!port_.SetDtr(false) || !port_.SetRts(false)) return false;
  clock_.Sleep(kSettleAfterReset);
  return true;
}

void MonitorLink::ClosePort() {
  open_error_.clear();
  if (!open_) return;
  port_.Close();
  open_ = false;
}

std::string MonitorLink::PortError() const {
  return open_error_.empty() ? port_.LastError() : open_error_;
}

bool MonitorLink::ReadExactly(std::span<std::uint8_t> buffer) {
  // Half an answer is none: it must not reach the caller.
  std::array<std::uint8_t, kLongestRead> received;
  const auto wanted = std::span(received).first(std::min(buffer.size(), received.size()));
  const auto count = port_.Read(wanted, ReadTimeOut(buffer.size()));
  if (count != buffer.size()) {
    LinkError = true;
    return false;
  }
  std::copy(wanted.begin(), wanted.end(), buffer.begin());
  return true;
}

void MonitorLink::SendEchoed(base::Bytes bytes) {
  if (LinkError || bytes.empty()) return;
  std::array<std::uint8_t, 2> copies{};
  for (const std::uint8_t& byte : bytes) {
    // A write that fails is noticed by its copies not arriving.
    port_.Write(base::Bytes(&byte, 1));
    if (!ReadExactly(copies)) return;
    CountEchoes(byte, copies);
  }
  if (copies[0] != copies[1]) LinkError = true;
}

void MonitorLink::SendSecret(base::Bytes bytes) {
  secret_(true);
  SendEchoed(bytes);
  secret_(false);
}

void MonitorLink::CountEchoes(std::uint8_t sent, base::Bytes copies) {
  for (const std::uint8_t copy : copies) {
    if (copy != sent) ++damage_;
  }
}

void MonitorLink::DiscardUnexpected() {
  std::uint8_t byte = 0;
  while (port_.Read(std::span(&byte, 1), milliseconds(0)) == 1u) ++damage_;
}

void MonitorLink::ReadRaw(std::span<std::uint8_t> buffer) {
  if (!LinkError) ReadExactly(buffer);
}

bool MonitorLink::WriteRaw(base::Bytes bytes) {
  return port_.Write(bytes);
}

int MonitorLink::PollBreak(PollWait wait) {
  std::uint8_t byte = 0;
  const auto count =
      port_.Read(std::span(&byte, 1), wait == PollWait::None ? milliseconds(0) : ReadTimeOut(1));
  return count == 1u ? static_cast<std::int8_t>(byte) : kNoByte;
}

// The port's reason must survive the look whether it is still there.
bool MonitorLink::SignalRefused() {
  signal_error_ = port_.LastError();
  if (!port_.Read({}, milliseconds(0))) LinkError = true;
  return false;
}

bool MonitorLink::SendBreak() {
  signal_error_.clear();
  if (!port_.SetBreak(true)) return SignalRefused();
  WaitMs(kBreakPulseMs);
  if (!port_.SetBreak(false)) return SignalRefused();
  std::uint8_t byte = 0;
  port_.Read(std::span(&byte, 1), ReadTimeOut(1));
  const auto count = port_.Read(std::span(&byte, 1), ReadTimeOut(1));
  if (!count) LinkError = true;
  return count == 1u;
}

bool MonitorLink::PulseRts() {
  if (!port_.SetRts(true)) return false;
  WaitMs(kResetPulseMs);
  return port_.SetRts(false);
}

bool MonitorLink::PulseReset() {
  signal_error_.clear();
  if (!PulseRts()) return SignalRefused();
  clock_.Sleep(kSettleAfterReset);
  DiscardInput();
  return true;
}

void MonitorLink::WaitMs(int ms) {
  clock_.SpinUntil(clock_.NowMs() + ms + 1);
}

void MonitorLink::DiscardInput() {
  std::array<std::uint8_t, 256> dropped;
  for (std::size_t total = 0; total < kDiscardLimit;) {
    const auto count = port_.Read(dropped, milliseconds(0));
    if (!count || *count == 0) return;
    total += *count;
  }
}

}  // namespace brevant::link
