// SPDX-License-Identifier: MIT
// Commands of the popup menus of data windows and of the stack window. They act on the active one;
// how bytes are displayed holds for all data windows.
#include "gui/address_prompts.h"
#include "gui/call_stack_window.h"
#include "gui/command_actions.h"
#include "gui/data_window.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "gui/stack_window.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

DataWindow* ActiveWindow(const CommandContext& context) {
  return dynamic_cast<DataWindow*>(context.window.active_view());
}

void Edit(const CommandContext& context) {
  if (DataWindow* const window = ActiveWindow(context)) window->EditCell(0);
}

void GoToAddress(const CommandContext& context) {
  DataWindow* const window = ActiveWindow(context);
  if (window == nullptr) return;
  const auto address = AskForAddress(context, views::prompt_titles::kGoToAddress);
  if (address) window->view().GoToDataAddress(*address);
}

void GoToSymbol(const CommandContext& context) {
  DataWindow* const window = ActiveWindow(context);
  if (window == nullptr) return;
  const auto address = AskForSymbol(context, views::prompt_titles::kDataGoToSymbol);
  if (address) window->view().GoToDataAddress(*address);
}

void GoToPc(const CommandContext& context) {
  DataWindow* const window = ActiveWindow(context);
  if (window != nullptr) window->view().GoToDataAddress(context.session.debugger.frame.PC);
}

template <typename Toggle>
void Display(const CommandContext& context, const Toggle& toggle) {
  Session& session = context.session;
  views::DataSettings wanted = session.data_settings();
  toggle(wanted);
  session.SetDataSettings(wanted);
  if (!views::StoreDataSettings(wanted, session.settings)) {
    session.ui.ShowMessage(
        base::ToMessage(messages::kSettingsNotStored, session.settings.path().string()));
  }
}

void TogglePerLine(const CommandContext& context) {
  Display(context,
          [](auto& wanted) { wanted.bytes_per_line = wanted.bytes_per_line == 16 ? 8 : 16; });
}

void ToggleUnit(const CommandContext& context) {
  Display(context, [](auto& wanted) {
    wanted.unit =
        wanted.unit == views::DataUnit::Bytes ? views::DataUnit::Words : views::DataUnit::Bytes;
  });
}

void ToggleCharacters(const CommandContext& context) {
  Display(context, [](auto& wanted) { wanted.characters = !wanted.characters; });
}

void StackGoToCode(const CommandContext& context) {
  auto* const window = dynamic_cast<StackWindow*>(context.window.active_view());
  const auto address = window != nullptr ? window->view().CodeUnderCursor() : std::nullopt;
  if (!address) return;
  views::ProgramViews& programs = context.session.program_views;
  if (programs.main() == nullptr) context.window.Open(kProgramKind);
  programs.main()->GoToAddress(*address);
}

void CallGoTo(const CommandContext& context) {
  auto* const window = dynamic_cast<CallStackWindow*>(context.window.active_view());
  const frames::Frame* const frame = window != nullptr ? window->view().UnderCursor() : nullptr;
  if (frame != nullptr) ShowCode(context, frame->call);
}

constexpr CommandAction kActions[] = {
    {commands::kDataEdit, Edit},
    {commands::kDataGoToAddress, GoToAddress},
    {commands::kDataGoToSymbol, GoToSymbol},
    {commands::kDataGoToPc, GoToPc},
    {commands::kDataPerLine, TogglePerLine},
    {commands::kDataUnit, ToggleUnit},
    {commands::kDataAscii, ToggleCharacters},
    {commands::kStackGoToCode, StackGoToCode},
    {commands::kCallGoTo, CallGoTo},
};

}  // namespace

std::span<const CommandAction> DataActions() {
  return kActions;
}

}  // namespace brevant::gui
