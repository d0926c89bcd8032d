// SPDX-License-Identifier: MIT
#include "views/watch_editor.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"
#include "views/writable.h"

namespace brevant::views {
namespace {

constexpr int kDigitsAByte = 2;

}  // namespace

bool WatchEditor::Open() {
  const auto refuse = [this](const std::string& why) {
    ui_.ShowMessage(base::ToMessage(messages::kWatchNotEdited, item_.name, why));
    return false;
  };
  if (item_.computed) return refuse(messages::kNoBytesOfItsOwn);
  if (item_.held != Held::Current && !item_.problem.empty()) return refuse(item_.problem);
  const auto count = static_cast<base::Address>(item_.bytes());
  if (count == 0) return refuse(messages::kNoBytesShown);
  if (const auto refused = WhyNotWritable(memory_, {item_.address, count})) {
    return refuse(refused->why);
  }
  bytes_.resize(count);
  if (item_.IsString() && item_.held == Held::Current) {
    std::ranges::copy(item_.lastString, bytes_.begin());
  } else {
    memory_.TakeDamage();  // of what came before
    memory_.AskBytes(bytes_, item_.address);
    if (memory_.LinkError()) return refuse(messages::kNotAnswering);
    if (memory_.TakeDamage()) return refuse(messages::kLineDamagesReading);
  }
  return true;
}

std::string WatchEditor::Title() const {
  return base::Format("EDIT: %s", item_.name);
}

int WatchEditor::max_length() const {
  return item_.bytes() * (item_.IsString() ? 1 : kDigitsAByte);
}

std::string WatchEditor::InitialText() const {
  if (item_.IsString()) return ShownString(std::string(bytes_.begin(), bytes_.end()));
  std::string text;
  for (const std::uint8_t byte : bytes_) text += base::Format("%02x", byte);
  return text;
}

std::vector<std::uint8_t> WatchEditor::BytesOf(std::string_view text) const {
  std::vector<std::uint8_t> bytes = bytes_;
  if (!item_.IsString()) {
    std::uint32_t value = base::ParseHex(text);
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte, value >>= 8) {
      *byte = base::LowByte(value);
    }
    return bytes;
  }
  for (std::size_t i = 0; i < bytes.size() && i < text.size(); ++i) {
    const bool still_zero = text[i] == kShownZero && bytes[i] == 0;
    if (!still_zero) bytes[i] = static_cast<std::uint8_t>(text[i]);
  }
  // A text that was shortened ends with a zero; what stands behind it stays.
  if (text.size() < bytes.size()) bytes[text.size()] = 0;
  return bytes;
}

bool WatchEditor::Accept(std::string_view text) {
  if (!item_.IsString() && !base::IsHexField(text)) {
    ui_.Beep();
    return false;
  }
  memory_.TakeDamage();  // of what came before
  const auto difference = memory_.WriteAndLook(item_.address, BytesOf(text));
  if (memory_.LinkError()) {
    ui_.ShowMessage(
        base::ToMessage(messages::kWatchNotLookedAt, item_.name, messages::kNotAnswering));
  } else if (memory_.TakeDamage()) {
    ui_.ShowMessage(
        base::ToMessage(messages::kWatchNotLookedAt, item_.name, messages::kLineDamagesReading));
  } else if (difference) {
    ui_.ShowMessage(base::ToMessage(messages::kLocationNotTaken, difference->address,
                                    difference->found, difference->expected));
  }
  return true;
}

}  // namespace brevant::views
