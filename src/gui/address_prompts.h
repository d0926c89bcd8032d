// SPDX-License-Identifier: MIT
// The prompts for an address and for a symbol as dialogs of the frame. Nothing: cancelled.
#pragma once

#include <optional>

#include "base/address.h"
#include "gui/command_actions.h"

namespace brevant::gui {

std::optional<base::Address> AskForSymbol(const CommandContext& context, const char* title);
std::optional<base::Address> AskForAddress(const CommandContext& context, const char* title);

}  // namespace brevant::gui
