// SPDX-License-Identifier: MIT
// The text of a recording of the wire: one event a line, as docs/recording.md describes it. Pure
// text, used by who writes a recording and by who plays it back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brevant::link {

// The first line of each recording begins like this.
inline constexpr std::string_view kRecordingMark = "brevant recording 1";

enum class WireKind {
  Open,      // text: the name that was opened
  Settings,  // text: "9600 8N1"
  Dtr,       // on: high
  Rts,
  Break,     // on: held
  Sent,      // bytes, host to target
  Received,  // bytes, target to host: what one read has found
  Nothing,   // count reads in a row that found nothing, the last one at this time
  Failed,    // the call in the line above failed; text: why
  Gone,      // a read failed; text: why
  Close,
};

// How one byte stands in a recording. A hidden byte belongs to the exchange of a security code: of
// what was sent nothing is known, of what was received whether it was the byte sent last.
struct WireByte {
  enum class Form { Plain, Hidden, HiddenOther };
  Form form = Form::Plain;
  std::uint8_t value = 0;  // of a plain byte
};

struct WireEvent {
  std::int64_t at_ms = 0;
  WireKind kind = WireKind::Nothing;
  bool on = false;
  long count = 0;
  std::vector<WireByte> bytes = {};
  std::string text = {};
};

struct Recording {
  std::string heading;  // the first line
  std::vector<WireEvent> events;
  std::string error;  // empty, or why the text is no recording: "line 12: ..."
};
Recording ParseRecording(std::string_view text);

// The word of a kind at the start of its event: "open", "rts", ">" for Sent ...
std::string_view WordOf(WireKind kind);
// "4a", "--", "!!"
std::string ByteText(const WireByte& byte);

// Lines are made with the bytes of security codes marked in them, so that it can be decided later
// what is shown of them.
enum class Secrets { Hide, Show };
// " {c3}"; differs: a received byte that is not the one sent last.
void AppendSecretByte(std::string& line, std::uint8_t byte, bool differs);
std::string WithSecrets(std::string_view marked, Secrets secrets);

}  // namespace brevant::link
