// SPDX-License-Identifier: MIT
#include "link/replay_target.h"

#include <algorithm>
#include <utility>

namespace brevant::link {
namespace {

// "4a", "rts high", "the end of a connection" ...
std::string Expected(const WireEvent& event, std::size_t taken) {
  switch (event.kind) {
    case WireKind::Sent:
      return ByteText(event.bytes[taken]);
    case WireKind::Received:
      return "that " + ByteText(event.bytes[taken]) + " is read";
    case WireKind::Dtr:
    case WireKind::Rts:
      return std::string(WordOf(event.kind)) + (event.on ? " high" : " low");
    case WireKind::Break:
      return event.on ? "a break" : "the end of the break";
    case WireKind::Open:
      return "that the port is opened";
    case WireKind::Settings:
      return "line settings";
    case WireKind::Close:
      return "that the port is closed";
    case WireKind::Nothing:
    case WireKind::Failed:
    case WireKind::Gone:
      break;
  }
  return "nothing";
}

}  // namespace

ReplayTarget::ReplayTarget(Recording recording, std::string file)
    : events_(std::move(recording.events)), file_(std::move(file)) {
  if (!recording.error.empty()) {
    difference_ = file_ + " is no recording that can be played back: " + recording.error + ".";
  }
  if (!events_.empty()) now_ms_ = events_.front().at_ms;
}

const WireEvent* ReplayTarget::Next() const {
  return next_ < events_.size() ? &events_[next_] : nullptr;
}

void ReplayTarget::PassNothings() {
  while (next_ < events_.size() &&
         (events_[next_].kind == WireKind::Nothing || events_[next_].kind == WireKind::Gone)) {
    ++next_;
    taken_ = 0;
  }
}

void ReplayTarget::TakeTime(const WireEvent& event) {
  now_ms_ = std::max(now_ms_, event.at_ms);
}

bool ReplayTarget::Done() {
  TakeTime(events_[next_]);
  ++next_;
  taken_ = 0;
  const WireEvent* const after = Next();
  if (after == nullptr || after->kind != WireKind::Failed) return true;
  error_ = after->text;
  ++next_;
  return false;
}

bool ReplayTarget::Differ(const std::string& did) {
  const std::string number = std::to_string(next_ + 1);
  const WireEvent* const event = Next();
  difference_ = event == nullptr
                    ? "The recording ends after event " + std::to_string(next_) + ", " + did + "."
                    : "The recording expects " + Expected(*event, taken_) + " at event " + number +
                          ", " + did + ".";
  error_ = difference_;
  return false;
}

bool ReplayTarget::Open(const std::string&) {
  error_ = difference_;
  if (!error_.empty()) return false;
  PassNothings();
  const WireEvent* const event = Next();
  if (event == nullptr || event->kind != WireKind::Open) return Differ("the port was opened");
  return Done();
}

void ReplayTarget::Close() {
  error_ = difference_;
  if (!error_.empty()) return;
  PassNothings();
  // Whoever leaves before the end makes no difference.
  if (const WireEvent* const event = Next(); event != nullptr && event->kind == WireKind::Close) {
    Done();
  }
}

bool ReplayTarget::Configure(const base::LineSettings& settings) {
  error_ = difference_;
  if (!error_.empty()) return false;
  PassNothings();
  const std::string text = std::to_string(settings.baud) + " 8N1";
  const WireEvent* const event = Next();
  if (event == nullptr || event->kind != WireKind::Settings || event->text != text) {
    return Differ("the line was set to " + text);
  }
  return Done();
}

bool ReplayTarget::SetQueueSizes(int, int) {
  error_ = difference_;
  return error_.empty();
}

bool ReplayTarget::Switch(WireKind kind, bool on, const char* did) {
  error_ = difference_;
  if (!error_.empty()) return false;
  PassNothings();
  const WireEvent* const event = Next();
  if (event == nullptr || event->kind != kind || event->on != on) return Differ(did);
  return Done();
}

bool ReplayTarget::SetDtr(bool high) {
  return Switch(WireKind::Dtr, high, high ? "DTR was set high" : "DTR was set low");
}

bool ReplayTarget::SetRts(bool high) {
  return Switch(WireKind::Rts, high, high ? "RTS was set high" : "RTS was set low");
}

bool ReplayTarget::SetBreak(bool on) {
  return Switch(WireKind::Break, on, on ? "a break was begun" : "a break was ended");
}

bool ReplayTarget::SendByte(std::uint8_t byte) {
  if (!difference_.empty()) return false;
  PassNothings();
  const WireEvent* const event = Next();
  const bool same =
      event != nullptr && event->kind == WireKind::Sent &&
      (event->bytes[taken_].form != WireByte::Form::Plain || event->bytes[taken_].value == byte);
  if (!same) return Differ(ByteText({WireByte::Form::Plain, byte}) + " was sent");
  last_sent_ = byte;
  return ++taken_ < event->bytes.size() || Done();
}

bool ReplayTarget::Write(base::Bytes bytes) {
  error_ = difference_;
  return std::ranges::all_of(bytes, [this](std::uint8_t byte) { return SendByte(byte); });
}

std::uint8_t ReplayTarget::ByteOf(const WireByte& byte) const {
  switch (byte.form) {
    case WireByte::Form::Hidden:
      return last_sent_;
    case WireByte::Form::HiddenOther:
      return static_cast<std::uint8_t>(~last_sent_);
    case WireByte::Form::Plain:
      break;
  }
  return byte.value;
}

std::optional<std::size_t> ReplayTarget::Read(std::span<std::uint8_t> buffer,
                                              std::chrono::milliseconds timeout) {
  error_ = difference_;
  if (!error_.empty()) return std::nullopt;
  const WireEvent* const event = Next();
  if (event != nullptr && event->kind == WireKind::Gone) {
    error_ = event->text;
    return std::nullopt;
  }
  if (event != nullptr && event->kind == WireKind::Received) {
    const std::size_t count = std::min(buffer.size(), event->bytes.size() - taken_);
    for (std::size_t i = 0; i < count; ++i) buffer[i] = ByteOf(event->bytes[taken_ + i]);
    TakeTime(*event);
    taken_ += count;
    if (taken_ == event->bytes.size()) {
      ++next_;
      taken_ = 0;
    }
    return count;
  }
  now_ms_ += timeout.count();
  if (event != nullptr && event->kind == WireKind::Nothing &&
      static_cast<long>(++taken_) == event->count) {
    TakeTime(*event);
    ++next_;
    taken_ = 0;
  }
  return 0;
}

void ReplayTarget::SpinUntil(std::int64_t deadline_ms) {
  now_ms_ = std::max(now_ms_, deadline_ms);
}

}  // namespace brevant::link
