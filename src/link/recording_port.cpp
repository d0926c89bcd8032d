// SPDX-License-Identifier: MIT
#include "link/recording_port.h"

#include <algorithm>
#include <utility>

namespace brevant::link {
namespace {

// A reason may have several lines, an event has one; braces mark the bytes of security codes.
std::string InOneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  std::ranges::replace(line, '{', '(');
  std::ranges::replace(line, '}', ')');
  return line;
}

}  // namespace

RecordingPort::RecordingPort(base::SerialPort& port, base::Clock& clock,
                             std::function<void(std::string_view)> sink)
    : port_(port), clock_(clock), sink_(std::move(sink)) {}

void RecordingPort::TellNothings() {
  if (nothings_ == 0) return;
  line_ = std::to_string(last_nothing_ms_);
  line_ += ' ';
  line_ += WordOf(WireKind::Nothing);
  line_ += ' ' + std::to_string(std::exchange(nothings_, 0)) + '\n';
  sink_(line_);
}

std::int64_t RecordingPort::Now() {
  const std::int64_t now = clock_.NowMs();
  return now - start_ms_.emplace(start_ms_.value_or(now));
}

void RecordingPort::Begin(WireKind kind) {
  TellNothings();
  line_ = std::to_string(Now());
  line_ += ' ';
  line_ += WordOf(kind);
}

void RecordingPort::TellText(WireKind kind, std::string_view text) {
  Begin(kind);
  if (!text.empty()) line_ += ' ' + InOneLine(text);
  line_ += '\n';
  sink_(line_);
}

void RecordingPort::TellBytes(WireKind kind, base::Bytes bytes) {
  Begin(kind);
  for (const std::uint8_t byte : bytes) {
    if (secret_) {
      AppendSecretByte(line_, byte, kind == WireKind::Received && byte != last_sent_);
    } else {
      line_ += ' ' + ByteText({WireByte::Form::Plain, byte});
    }
  }
  line_ += '\n';
  sink_(line_);
}

bool RecordingPort::Told(WireKind kind, std::string_view text, bool done) {
  if (!open_) return done;
  TellText(kind, text);
  if (!done) TellText(WireKind::Failed, port_.LastError());
  return done;
}

bool RecordingPort::Open(const std::string& device) {
  Close();
  open_ = true;
  gone_ = false;
  open_ = Told(WireKind::Open, device, port_.Open(device));
  return open_;
}

void RecordingPort::Close() {
  port_.Close();
  if (std::exchange(open_, false)) TellText(WireKind::Close, {});
}

bool RecordingPort::Configure(const base::LineSettings& settings) {
  return Told(WireKind::Settings, std::to_string(settings.baud) + " 8N1",
              port_.Configure(settings));
}

bool RecordingPort::SetQueueSizes(int receive_bytes, int transmit_bytes) {
  return port_.SetQueueSizes(receive_bytes, transmit_bytes);
}

bool RecordingPort::SetDtr(bool high) {
  return Told(WireKind::Dtr, high ? "high" : "low", port_.SetDtr(high));
}

bool RecordingPort::SetRts(bool high) {
  return Told(WireKind::Rts, high ? "high" : "low", port_.SetRts(high));
}

bool RecordingPort::SetBreak(bool on) {
  return Told(WireKind::Break, on ? "on" : "off", port_.SetBreak(on));
}

bool RecordingPort::Write(base::Bytes bytes) {
  const bool done = port_.Write(bytes);
  if (!open_ || bytes.empty()) return done;
  TellBytes(WireKind::Sent, bytes);
  last_sent_ = bytes.back();
  if (!done) TellText(WireKind::Failed, port_.LastError());
  return done;
}

std::optional<std::size_t> RecordingPort::Read(std::span<std::uint8_t> buffer,
                                               std::chrono::milliseconds timeout) {
  const auto count = port_.Read(buffer, timeout);
  if (!open_ || buffer.empty()) return count;
  if (!count) {
    if (!std::exchange(gone_, true)) TellText(WireKind::Gone, port_.LastError());
  } else if (*count > 0) {
    TellBytes(WireKind::Received, buffer.first(*count));
  } else {
    ++nothings_;
    last_nothing_ms_ = Now();
  }
  return count;
}

}  // namespace brevant::link
