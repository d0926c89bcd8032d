// SPDX-License-Identifier: MIT
// What the views tell the user.
#pragma once

#include "base/user_interface.h"

namespace brevant::views::messages {

inline const base::Message kStackPointerNotSet{
    "The target did not take the new stack pointer.\n"
    "It is set by a few instructions that run from $0080; \"Reset\" starts afresh.",
    "Error Message", base::Icon::Warning};

}  // namespace brevant::views::messages
