// SPDX-License-Identifier: MIT
#include "link/recording_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace brevant::link {
namespace {

enum class Content { None, Text, High, Held, Bytes, Count };

struct KindRow {
  WireKind kind;
  std::string_view word;
  Content content;
};
constexpr std::array<KindRow, 11> kKinds{{
    {WireKind::Open, "open", Content::Text},
    {WireKind::Settings, "line", Content::Text},
    {WireKind::Dtr, "dtr", Content::High},
    {WireKind::Rts, "rts", Content::High},
    {WireKind::Break, "break", Content::Held},
    {WireKind::Sent, ">", Content::Bytes},
    {WireKind::Received, "<", Content::Bytes},
    {WireKind::Nothing, "nothing", Content::Count},
    {WireKind::Failed, "failed", Content::Text},
    {WireKind::Gone, "gone", Content::Text},
    {WireKind::Close, "close", Content::None},
}};

constexpr std::string_view kHidden = "--";
constexpr std::string_view kHiddenOther = "!!";
constexpr std::string_view kDigits = "0123456789abcdef";

template <typename Number>
std::optional<Number> NumberOf(std::string_view text, int base) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// Takes the text up to the next blank off the front.
std::string_view TakeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(word.size());
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return word;
}

std::optional<bool> SwitchOf(std::string_view text, std::string_view on, std::string_view off) {
  if (text == on) return true;
  return text == off ? std::optional(false) : std::nullopt;
}

std::optional<WireByte> ByteOf(std::string_view word) {
  if (word == kHidden) return WireByte{WireByte::Form::Hidden};
  if (word == kHiddenOther) return WireByte{WireByte::Form::HiddenOther};
  const auto value = word.size() == 2 ? NumberOf<std::uint8_t>(word, 16) : std::nullopt;
  return value ? std::optional(WireByte{WireByte::Form::Plain, *value}) : std::nullopt;
}

bool ParseBytes(std::string_view text, std::vector<WireByte>& bytes) {
  while (!text.empty()) {
    const auto byte = ByteOf(TakeWord(text));
    if (!byte) return false;
    bytes.push_back(*byte);
  }
  return !bytes.empty();
}

bool ParseSwitch(std::optional<bool> on, WireEvent& event) {
  event.on = on.value_or(false);
  return on.has_value();
}

bool ParseContent(Content content, std::string_view text, WireEvent& event) {
  switch (content) {
    case Content::None:
      return text.empty();
    case Content::Text:
      event.text = text;
      return true;
    case Content::High:
      return ParseSwitch(SwitchOf(text, "high", "low"), event);
    case Content::Held:
      return ParseSwitch(SwitchOf(text, "on", "off"), event);
    case Content::Bytes:
      return ParseBytes(text, event.bytes);
    case Content::Count:
      event.count = NumberOf<long>(text, 10).value_or(0);
      return event.count > 0;
  }
  return false;
}

std::optional<WireEvent> ParseEvent(std::string_view line) {
  const auto at = NumberOf<std::int64_t>(TakeWord(line), 10);
  const auto row = std::ranges::find(kKinds, TakeWord(line), &KindRow::word);
  if (!at || row == kKinds.end()) return std::nullopt;
  WireEvent event{.at_ms = *at, .kind = row->kind};
  return ParseContent(row->content, line, event) ? std::optional(std::move(event)) : std::nullopt;
}

std::string_view TakeLine(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

Recording ParseRecording(std::string_view text) {
  Recording recording;
  recording.heading = TakeLine(text);
  if (!recording.heading.starts_with(kRecordingMark)) {
    recording.error = "it does not begin with \"" + std::string(kRecordingMark) + "\"";
    return recording;
  }
  for (int number = 2; !text.empty(); ++number) {
    const bool whole = text.find('\n') != std::string_view::npos;
    const std::string_view line = TakeLine(text);
    if (line.empty() || line.starts_with('#')) continue;
    auto event = ParseEvent(line);
    if (event && whole) {
      recording.events.push_back(std::move(*event));
    } else if (whole) {
      // What a crash has cut off is the last line, without its end; anything else is damage.
      recording.error = "line " + std::to_string(number) + ": \"" +
                        std::string(line.substr(0, 40)) + "\" is no event";
      return recording;
    }
  }
  if (recording.events.empty()) recording.error = "it holds no events";
  return recording;
}

std::string_view WordOf(WireKind kind) {
  return std::ranges::find(kKinds, kind, &KindRow::kind)->word;
}

std::string ByteText(const WireByte& byte) {
  switch (byte.form) {
    case WireByte::Form::Hidden:
      return std::string(kHidden);
    case WireByte::Form::HiddenOther:
      return std::string(kHiddenOther);
    case WireByte::Form::Plain:
      break;
  }
  return {kDigits[byte.value >> 4], kDigits[byte.value & 0xF]};
}

void AppendSecretByte(std::string& line, std::uint8_t byte, bool differs) {
  line += differs ? " {!" : " {";
  line += ByteText({WireByte::Form::Plain, byte});
  line += '}';
}

std::string WithSecrets(std::string_view marked, Secrets secrets) {
  std::string text;
  text.reserve(marked.size());
  for (;;) {
    const std::size_t open = marked.find('{');
    const std::size_t close = marked.find('}', std::min(open, marked.size()));
    text += marked.substr(0, open);
    if (close == std::string_view::npos) return text;
    const bool differs = marked[open + 1] == '!';
    if (secrets == Secrets::Show) {
      text += marked.substr(close - 2, 2);
    } else {
      text += differs ? kHiddenOther : kHidden;
    }
    marked.remove_prefix(close + 1);
  }
}

}  // namespace brevant::link
