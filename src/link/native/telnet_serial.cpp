// SPDX-License-Identifier: MIT
#include "link/native/telnet_serial.h"

#include <algorithm>

namespace brevant::link {
namespace {

enum Telnet : std::uint8_t {
  kSubEnd = 240,
  kSub = 250,
  kWill = 251,
  kWont = 252,
  kDo = 253,
  kDont = 254,
  kIac = 255,
};
enum Option : std::uint8_t { kBinary = 0, kNoGoAhead = 3, kComPort = 44 };

constexpr std::uint8_t kServerOffset = 100;
// No answer is longer than a few bytes; a server that never ends one must not fill the memory.
constexpr std::size_t kLongestSub = 256;
constexpr std::size_t kMostAnswers = 64;

}  // namespace

TelnetSerial::Data TelnetSerial::Greeting() {
  return {kIac,       kWill, kBinary, kIac,       kDo,  kBinary, kIac,    kWill,
          kNoGoAhead, kIac,  kDo,     kNoGoAhead, kIac, kWill,   kComPort};
}

TelnetSerial::Data TelnetSerial::Escaped(base::Bytes bytes) {
  Data escaped;
  for (const std::uint8_t byte : bytes) {
    escaped.push_back(byte);
    if (byte == kIac) escaped.push_back(kIac);
  }
  return escaped;
}

TelnetSerial::Data TelnetSerial::Command(LineCommand command, base::Bytes value) {
  Data bytes{kIac, kSub, kComPort, static_cast<std::uint8_t>(command)};
  const Data escaped = Escaped(value);
  bytes.insert(bytes.end(), escaped.begin(), escaped.end());
  bytes.insert(bytes.end(), {kIac, kSubEnd});
  return bytes;
}

TelnetSerial::Data TelnetSerial::Command(LineCommand command, std::uint8_t value) {
  return Command(command, base::Bytes(&value, 1));
}

void TelnetSerial::Take(base::Bytes arrived, Data& line, Data& answer) {
  for (const std::uint8_t byte : arrived) {
    switch (state_) {
      case State::Line:
        if (byte == kIac) {
          state_ = State::Command;
        } else {
          line.push_back(byte);
        }
        break;
      case State::Command:
        verb_ = byte;
        state_ = State::Line;
        if (byte == kIac) line.push_back(byte);
        if (byte >= kWill && byte <= kDont) state_ = State::Option;
        if (byte == kSub) {
          sub_.clear();
          state_ = State::Sub;
        }
        break;
      case State::Option:
        TakeOption(byte, answer);
        state_ = State::Line;
        break;
      case State::Sub:
        if (byte == kIac) {
          state_ = State::SubCommand;
        } else if (sub_.size() < kLongestSub) {
          sub_.push_back(byte);
        }
        break;
      case State::SubCommand:
        state_ = State::Sub;
        if (byte == kIac) {
          sub_.push_back(byte);
        } else if (byte == kSubEnd) {
          EndSub();
          state_ = State::Line;
        }
        break;
    }
  }
}

// The greeting has asked for all that is wanted, so agreement needs no answer; whatever else the
// server asks for is refused.
void TelnetSerial::TakeOption(std::uint8_t option, Data& answer) {
  const bool asked = option == kBinary || option == kNoGoAhead || option == kComPort;
  if (option == kComPort && (verb_ == kDo || verb_ == kDont)) sets_line_ = verb_ == kDo;
  if (asked) return;
  if (verb_ == kDo) answer.insert(answer.end(), {kIac, kWont, option});
  if (verb_ == kWill) answer.insert(answer.end(), {kIac, kDont, option});
}

void TelnetSerial::EndSub() {
  if (sub_.size() < 2 || sub_[0] != kComPort || sub_[1] < kServerOffset) return;
  if (answers_.size() >= kMostAnswers) answers_.erase(answers_.begin());
  answers_.push_back(
      {static_cast<std::uint8_t>(sub_[1] - kServerOffset), Data(sub_.begin() + 2, sub_.end())});
}

std::optional<TelnetSerial::Data> TelnetSerial::TakeAnswer(LineCommand command) {
  const auto found =
      std::ranges::find(answers_, static_cast<std::uint8_t>(command), &Answer::command);
  if (found == answers_.end()) return std::nullopt;
  Data value = found->value;
  answers_.erase(found);
  return value;
}

}  // namespace brevant::link
