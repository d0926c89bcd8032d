// SPDX-License-Identifier: MIT
// Commands of the popup menu of the window onto the MCU's registers.
#include "gui/chip_window.h"
#include "gui/command_actions.h"
#include "gui/main_window.h"
#include "gui/window_kinds.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

ChipWindow* Active(const CommandContext& context) {
  return dynamic_cast<ChipWindow*>(context.window.active_view());
}

void Edit(const CommandContext& context) {
  if (ChipWindow* const window = Active(context)) window->EditValue();
}

void ReadNow(const CommandContext& context) {
  if (ChipWindow* const window = Active(context)) window->ReadNow();
}

constexpr CommandAction kActions[] = {
    {commands::kChipEdit, Edit},
    {commands::kChipReadNow, ReadNow},
};

}  // namespace

std::span<const CommandAction> ChipActions() {
  return kActions;
}

}  // namespace brevant::gui
