// SPDX-License-Identifier: MIT
// A row of a message table: what is said to the user, with its % conversions.
#pragma once

#include "base/text_format.h"
#include "base/user_interface.h"

namespace brevant::base {

// The captions that message boxes bear.
namespace captions {
inline constexpr const char* kError = "Error Message";
inline constexpr const char* kInformation = "Information";
inline constexpr const char* kForYourInformation = "For your information";
}  // namespace captions

struct MessageText {
  const char* id;
  Severity severity;
  const char* text;
  const char* caption;
  Icon icon;
  Buttons buttons = Buttons::Ok;
  bool enter_declines = false;
};

template <typename... Args>
Message ToMessage(const MessageText& row, const Args&... args) {
  return {row.id,   row.severity, Format(row.text, args...), row.caption,
          row.icon, row.buttons,  row.enter_declines};
}

}  // namespace brevant::base
