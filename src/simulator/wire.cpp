// SPDX-License-Identifier: MIT
#include "simulator/wire.h"

#include <algorithm>
#include <utility>

namespace brevant::simulator {

namespace {

// How late an answer is under FaultKind::DelayByte: 500 ms, which is longer than any
// read time-out of the link.
constexpr Cycles kDelay = 1'228'800;

}  // namespace

void Wire::SendFromHost(std::uint8_t byte, Cycles now) {
  host_log_.push_back(byte);
  host_queue_.push_back({byte, now, McuByte::Echo});
}

void Wire::SetHostBreak(bool on, Cycles now) {
  if (on) {
    if (!break_wanted_ && !break_since_) break_wanted_ = now;
    return;
  }
  break_wanted_.reset();
  if (break_since_ && !break_released_) break_released_ = std::max(now, *break_since_);
}

std::size_t Wire::TakeReceived(std::span<std::uint8_t> buffer) {
  const std::size_t count = std::min(buffer.size(), received_.size());
  const auto end = received_.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(received_.begin(), end, buffer.begin());
  received_.erase(received_.begin(), end);
  return count;
}

void Wire::SendFromMcu(McuByte what, std::uint8_t byte, Cycles earliest) {
  if (what == McuByte::Echo && faults_.delay) earliest += kDelay;
  mcu_queue_.push_back({byte, earliest, what});
}

void Wire::SilenceMcu() {
  mcu_queue_.clear();
  mcu_sending_.reset();
  host_held_ = false;
}

void Wire::Install(FaultPlan plan) {
  injector_.Install(std::move(plan));
  faults_ = {};
  cut_ = false;
}

void Wire::Receive(std::uint8_t byte) {
  received_.push_back(byte);
  ++received_count_;
}

Wire::Due Wire::NextDue() const {
  Due due;
  const auto consider = [&due](Cycles at, WireEvent (Wire::*step)(Cycles)) {
    if (at < due.at) due = {at, step};
  };
  if (cut_) return due;
  if (host_sending_) consider(host_sending_->ends, &Wire::EndHostByte);
  if (mcu_sending_) consider(mcu_sending_->ends, &Wire::EndMcuByte);
  if (break_since_ && !break_looped_back_) {
    const Cycles looped = *break_since_ + Bits(kByteBits);
    if (!break_released_ || looped <= *break_released_) consider(looped, &Wire::LoopBreakBack);
  }
  if (break_released_) consider(*break_released_, &Wire::EndBreak);
  if (LineTaken()) return due;
  if (break_wanted_) {
    consider(std::max(*break_wanted_, line_free_), &Wire::StartBreak);
  } else if (!mcu_queue_.empty()) {
    consider(std::max(mcu_queue_.front().earliest, line_free_), &Wire::StartMcuByte);
  } else if (!host_queue_.empty() && !host_held_) {
    consider(std::max(host_queue_.front().earliest, host_free_), &Wire::StartHostByte);
  }
  return due;
}

Cycles Wire::NextEvent() const {
  return NextDue().at;
}

WireEvent Wire::Step() {
  const Due due = NextDue();
  return due.step == nullptr ? WireEvent{} : (this->*due.step)(due.at);
}

WireEvent Wire::StartHostByte(Cycles at) {
  const std::uint8_t byte = host_queue_.front().byte;
  host_queue_.pop_front();
  faults_ = injector_.NextHostByte();
  if (faults_.cut) {
    cut_ = true;
    received_.clear();
    host_queue_.clear();
    return {};
  }
  if (faults_.extra) Receive(*faults_.extra);
  if (faults_.lose) {
    host_free_ = at + Bits(kByteBits);
    return {};
  }
  host_sending_ = Sending{byte, at + Bits(kByteBits), McuByte::Echo};
  const auto kind = faults_.reset ? WireEvent::Kind::PowerGlitch : WireEvent::Kind::HostByteStarts;
  return {.kind = kind, .byte = byte};
}

WireEvent Wire::EndHostByte(Cycles at) {
  const std::uint8_t byte = host_sending_->byte;
  host_sending_.reset();
  line_free_ = host_free_ = at;
  if (!faults_.drop_copy) Receive(byte);
  return {.kind = WireEvent::Kind::HostByteEnds,
          .byte = static_cast<std::uint8_t>(byte ^ faults_.flip)};
}

WireEvent Wire::StartMcuByte(Cycles at) {
  const Waiting next = mcu_queue_.front();
  mcu_queue_.pop_front();
  mcu_sending_ = Sending{next.byte, at + Bits(kByteBits), next.what};
  return {};
}

WireEvent Wire::EndMcuByte(Cycles at) {
  const Sending sent = *mcu_sending_;
  mcu_sending_.reset();
  line_free_ = host_free_ = at;
  if (sent.what == McuByte::Echo) {
    host_free_ += Bits(kNextByteBits);
    if (!faults_.drop_echo) Receive(static_cast<std::uint8_t>(sent.byte ^ faults_.flip_echo));
  } else {
    const ReplyFaults reply = injector_.NextReply();
    if (!reply.lose) Receive(static_cast<std::uint8_t>(sent.byte ^ reply.flip));
  }
  return {.kind = WireEvent::Kind::McuByteEnds, .byte = sent.byte, .what = sent.what};
}

WireEvent Wire::StartBreak(Cycles at) {
  break_wanted_.reset();
  break_since_ = at;
  break_looped_back_ = false;
  return {.kind = WireEvent::Kind::BreakStarts};
}

WireEvent Wire::LoopBreakBack(Cycles) {
  break_looped_back_ = true;
  Receive(0);
  return {};
}

WireEvent Wire::EndBreak(Cycles at) {
  break_since_.reset();
  break_released_.reset();
  line_free_ = host_free_ = at;
  return {.kind = WireEvent::Kind::BreakEnds, .long_enough = break_looped_back_};
}

}  // namespace brevant::simulator
