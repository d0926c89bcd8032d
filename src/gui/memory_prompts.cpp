// SPDX-License-Identifier: MIT
#include "gui/memory_prompts.h"

#include "gui/data_window.h"
#include "gui/fields_dialog.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"

namespace brevant::gui {

std::vector<std::string> CursorText(const CommandContext& context) {
  auto* const data = dynamic_cast<DataWindow*>(context.window.active_view());
  if (data == nullptr) return {};
  return {base::Format("%04x", data->view().CursorCellAddress())};
}

std::optional<memory::Range> AskForRange(const CommandContext& context,
                                         const views::HexDialog& dialog) {
  Session& session = context.session;
  views::RangeForm form(dialog, session.debugger.memory, session.debugger.security.passed(),
                        session.ui);
  std::optional<memory::Range> range;
  session.gate.OpenDuring([&] {
    AskForFields(&context.window, context.window.view_font(), form.dialog(), CursorText(context),
                 [&](std::span<const std::string> texts) {
                   range = form.Accept(texts);
                   return range ? std::nullopt : std::optional(form.refusal());
                 });
  });
  return range;
}

void TellLinkLost(const CommandContext& context, const memory::Range& range, std::size_t read,
                  const char* outcome) {
  const auto last = range.first + static_cast<base::Address>(read) - 1;
  const std::string done =
      read == 0 ? "Nothing was read"
                : base::Format("%04x to %04x were read and confirmed", range.first, last);
  context.session.ui.ShowMessage(base::ToMessage(messages::kReadLinkLost, done, outcome));
}

}  // namespace brevant::gui
