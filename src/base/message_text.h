// SPDX-License-Identifier: MIT
// A row of a message table: what is said to the user, with its % conversions.
#pragma once

#include "base/text_format.h"
#include "base/user_interface.h"

namespace brevant::base {

struct MessageText {
  const char* id;
  Severity severity;
  const char* text;
  const char* caption;
  Icon icon;
  Buttons buttons = Buttons::Ok;
};

template <typename... Args>
Message ToMessage(const MessageText& row, const Args&... args) {
  return {row.id, row.severity, Format(row.text, args...), row.caption, row.icon, row.buttons};
}

}  // namespace brevant::base
