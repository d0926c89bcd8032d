// SPDX-License-Identifier: MIT
// The prompts for an address, for a symbol and for one of the breakpoints as dialogs of the frame.
// Nothing: cancelled.
#pragma once

#include <optional>

#include "base/address.h"
#include "gui/command_actions.h"

namespace brevant::gui {

std::optional<base::Address> AskForSymbol(const CommandContext& context, const char* title);
std::optional<base::Address> AskForAddress(const CommandContext& context, const char* title);
// Breakpoints can be deleted there, too.
std::optional<base::Address> AskForBreakpoint(const CommandContext& context);

}  // namespace brevant::gui
