// SPDX-License-Identifier: MIT
// What the choices of the workspace ask the user.
#pragma once

#include "base/message_text.h"

namespace brevant::workspace::messages {

inline constexpr base::MessageText kChangeToolChain{
    "configure.change-tool-chain",
    base::Severity::Warning,
    "The Compiler page opens on the %s, and nothing was chosen there.\n"
    "The tool chain in force is: %s.\n\nChange it to the %s?",
    base::captions::kForYourInformation,
    base::Icon::Question,
    base::Buttons::YesNo,
    true};

inline constexpr const base::MessageText* kAll[] = {&kChangeToolChain};

}  // namespace brevant::workspace::messages
