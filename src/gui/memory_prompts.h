// SPDX-License-Identifier: MIT
// What the commands that read a stretch of memory ask first, and what they tell when it could not
// be read.
#pragma once

#include <optional>

#include "gui/command_actions.h"
#include "load/confirmed_read.h"
#include "views/range_form.h"

namespace brevant::gui {

// The address of the cell under the cursor of the active data window, or none.
std::vector<std::string> CursorText(const CommandContext& context);
std::optional<memory::Range> AskForRange(const CommandContext& context,
                                         const views::HexDialog& dialog);
// read bytes of the range were confirmed, then the target did not answer any more. outcome: what
// has not come about for that.
void TellLinkLost(const CommandContext& context, const memory::Range& range, std::size_t read,
                  const char* outcome);

}  // namespace brevant::gui
