// SPDX-License-Identifier: MIT
#include "simulator/simulated_target.h"

#include <algorithm>
#include <array>

namespace brevant::simulator {

using std::chrono::milliseconds;

namespace {

// When the process was held up for longer than this, the board was held up with it.
constexpr Cycles kLongestCatchUp = 2 * Mcu::kBusHz;

}  // namespace

SimulatedTarget::SimulatedTarget(const Device& device, Pace pace)
    : board_(device, pace == Pace::Bus ? 0 : kCyclesPerBit), pace_(pace) {}

void SimulatedTarget::CatchUp() {
  if (pace_ == Pace::Instant) return;
  const Cycles now = real_time_.Now();
  if (now > board_.now() + kLongestCatchUp) real_time_.Skip(now - board_.now() - kLongestCatchUp);
  board_.RunUntil(real_time_.Now());
}

void SimulatedTarget::Settle(bool program_ran) {
  if (pace_ == Pace::Instant) return;
  if (pace_ == Pace::Bus && !program_ran && !board_.running()) {
    real_time_.JumpTo(board_.now());
  } else {
    real_time_.WaitUntil(board_.now());
  }
}

void SimulatedTarget::Pass(Nanoseconds time) {
  CatchUp();
  const bool program_ran = board_.running();
  board_.RunUntil(board_.now() + ToCycles(time));
  Settle(program_ran);
}

bool SimulatedTarget::Usable() {
  error_.clear();
  if (!open_) {
    error_ = "The port of the simulated target is not open. Connect to it first.";
  } else if (board_.line_cut()) {
    error_ = "The line to the simulated target is cut. Plug the cable in and connect again.";
  }
  return error_.empty();
}

bool SimulatedTarget::Open(const std::string&) {
  CatchUp();
  open_ = true;
  if (!Usable()) {
    open_ = false;
    return false;
  }
  std::array<std::uint8_t, 64> stale{};
  while (board_.TakeReceived(stale) > 0) {
  }
  board_.SetPower(false);
  return true;
}

void SimulatedTarget::Close() {
  CatchUp();
  open_ = false;
  error_.clear();
}

bool SimulatedTarget::Configure(const base::LineSettings& settings) {
  CatchUp();
  if (!Usable()) return false;
  board_.SetHostBaud(settings.baud);
  return true;
}

bool SimulatedTarget::SetQueueSizes(int, int) {
  return Usable();
}

bool SimulatedTarget::SetDtr(bool) {
  return Usable();
}

bool SimulatedTarget::SetRts(bool high) {
  CatchUp();
  if (!Usable()) return false;
  board_.SetPower(!high);
  return true;
}

bool SimulatedTarget::SetBreak(bool on) {
  CatchUp();
  if (!Usable()) return false;
  board_.SetHostBreak(on);
  return true;
}

bool SimulatedTarget::Write(base::Bytes bytes) {
  CatchUp();
  if (!Usable()) return false;
  for (const std::uint8_t byte : bytes) board_.SendFromHost(byte);
  return true;
}

std::optional<std::size_t> SimulatedTarget::Read(std::span<std::uint8_t> buffer,
                                                 milliseconds timeout) {
  CatchUp();
  if (!Usable()) return std::nullopt;
  const bool program_ran = board_.running();
  const Cycles deadline = board_.now() + ToCycles(timeout);
  std::size_t count = board_.TakeReceived(buffer);
  while (count < buffer.size() && board_.now() < deadline) {
    board_.RunUntilArrival(deadline);
    if (!Usable()) return std::nullopt;
    count += board_.TakeReceived(buffer.subspan(count));
  }
  Settle(program_ran);
  return count;
}

std::int64_t SimulatedTarget::NowMs() {
  return std::chrono::floor<milliseconds>(Now()).count();
}

Nanoseconds SimulatedTarget::Now() const {
  return ToTime(pace_ == Pace::Instant ? board_.now() : real_time_.Now());
}

void SimulatedTarget::SpinUntil(std::int64_t deadline_ms) {
  const Nanoseconds deadline = milliseconds(deadline_ms);
  for (Nanoseconds now = Now(); now < deadline; now = Now()) Pass(deadline - now);
}

void SimulatedTarget::Sleep(milliseconds time) {
  Pass(time);
}

}  // namespace brevant::simulator
