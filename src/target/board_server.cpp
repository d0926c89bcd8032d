// SPDX-License-Identifier: MIT
#include "target/board_server.h"

#include <poll.h>

#include <algorithm>
#include <array>

namespace brevant::target {

using simulator::Cycles;
using simulator::ToCycles;
using simulator::ToTime;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

namespace {

// How often the client's line settings are looked at.
constexpr nanoseconds kLinePoll = microseconds(900);
// While a program runs, what it does to the wire is not known in advance.
constexpr nanoseconds kProgramPoll = microseconds(200);
constexpr nanoseconds kIdlePoll = milliseconds(20);
// A wait ends this early and the rest is spun away, since a sleeper wakes up late.
constexpr nanoseconds kSpin = microseconds(80);
constexpr Cycles kLongestCatchUp = 2 * simulator::Mcu::kBusHz;

bool Readable(int descriptor) {
  pollfd watched{descriptor, POLLIN, 0};
  return poll(&watched, 1, 0) > 0;
}

}  // namespace

void BoardServer::Serve(int stop) {
  bool had_client = false;
  while (!Readable(stop)) {
    CatchUp();
    const bool has_client = terminal_.HasClient();
    if (has_client) {
      FollowLines();
      TakeHostBytes();
      GiveReceived();
      WaitWithClient(stop);
    } else {
      if (had_client) ClientLeft();
      terminal_.Wait(stop, kIdlePoll, false);
    }
    had_client = has_client;
  }
}

void BoardServer::CatchUp() {
  const Cycles now = real_time_.Now();
  if (now > board_.now() + kLongestCatchUp) real_time_.Skip(now - board_.now() - kLongestCatchUp);
  board_.RunUntil(real_time_.Now());
}

void BoardServer::ClientLeft() {
  TakeHostBytes();
  board_.SetHostBreak(false);
  terminal_.Flush();
}

void BoardServer::FollowLines() {
  const Clock::time_point now = Clock::now();
  if (now - lines_read_ < kLinePoll) return;
  lines_read_ = now;
  const LineState lines = terminal_.ReadLineState();
  board_.SetPower(!lines.rts);
  board_.SetHostBreak(lines.break_held);
}

void BoardServer::TakeHostBytes() {
  std::array<std::uint8_t, 256> buffer{};
  for (;;) {
    const std::size_t count = terminal_.Read(buffer);
    if (count == 0) return;
    CatchUp();
    for (const std::uint8_t byte : std::span(buffer).first(count)) board_.SendFromHost(byte);
    CatchUp();
  }
}

void BoardServer::GiveReceived() {
  std::array<std::uint8_t, 256> buffer{};
  while (const std::size_t count = board_.TakeReceived(buffer)) {
    terminal_.Write(std::span(buffer).first(count));
  }
}

void BoardServer::WaitWithClient(int stop) {
  const Cycles now = real_time_.Now();
  const Cycles due = board_.NextWireEvent();
  if (due <= now) return;
  const nanoseconds longest = board_.running() ? kProgramPoll : kLinePoll;
  const nanoseconds until_due =
      due - now < ToCycles(longest + kSpin) ? ToTime(due - now) : longest + kSpin;
  if (until_due > kSpin) {
    terminal_.Wait(stop, until_due - kSpin, true);
  } else {
    real_time_.WaitUntil(due);
  }
}

}  // namespace brevant::target
