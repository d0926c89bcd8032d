// SPDX-License-Identifier: MIT
#include "gui/address_prompts.h"

#include "gui/edit_dialogs.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "views/breakpoint_list.h"

namespace brevant::gui {
namespace {

// What the prompt accepts; nothing when it was cancelled.
template <typename Prompt>
std::optional<base::Address> Ask(const CommandContext& context, Prompt& prompt,
                                 EditRequest request) {
  request.title = prompt.title();
  request.name = "CBDlgEdit";
  request.max_length = Prompt::kMaxLength;
  request.choices = prompt.Choices();
  std::optional<base::Address> address;
  AskForText(&context.window, context.window.view_font(), request, [&](std::string_view text) {
    address = prompt.Accept(text);
    return address ? std::string() : prompt.refusal();
  });
  return address;
}

}  // namespace

std::optional<base::Address> AskForSymbol(const CommandContext& context, const char* title) {
  Session& session = context.session;
  views::SymbolPrompt prompt(title, session.debugger.debug_info, session.ui);
  return Ask(context, prompt, {});
}

std::optional<base::Address> AskForAddress(const CommandContext& context, const char* title) {
  views::AddressPrompt prompt(title, context.session.addresses, context.session.ui);
  return Ask(context, prompt, {.text = prompt.InitialText()});
}

std::optional<base::Address> AskForBreakpoint(const CommandContext& context) {
  Session& session = context.session;
  debugger::Debugger& debugger = session.debugger;
  views::BreakpointList list(debugger.memory, debugger.breakpoints, debugger.debug_info,
                             debugger.operand_names, debugger.SourceFolders(), session.ui);
  return ShowBreakpointList(&context.window, context.window.view_font(), list);
}

}  // namespace brevant::gui
