// SPDX-License-Identifier: MIT
// Filling and moving blocks of memory from the popup menu of a data window.
#include "gui/block_progress.h"
#include "gui/command_actions.h"
#include "gui/data_window.h"
#include "gui/fields_dialog.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "views/block_form.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;
using Kind = views::BlockForm::Kind;

template <Kind kKind>
void Start(const CommandContext& context) {
  auto* const data = dynamic_cast<DataWindow*>(context.window.active_view());
  if (data == nullptr) return;
  Session& session = context.session;
  views::BlockForm form(kKind, session.debugger.memory, session.ui);
  std::optional<views::BlockOperation> operation;
  session.gate.OpenDuring([&] {
    AskForFields(&context.window, context.window.view_font(), form.dialog(),
                 form.InitialTexts(data->view().CursorCellAddress()),
                 [&](std::span<const std::string> texts) {
                   operation = form.Accept(texts);
                   return operation ? std::nullopt : std::optional(form.refusal());
                 });
  });
  if (!operation || !session.debugger.block.Start(*operation)) return;
  (new BlockProgress(context))->show();
}

constexpr CommandAction kActions[] = {
    {commands::kDataFill, Start<Kind::Fill>},
    {commands::kDataMove, Start<Kind::Move>},
};

}  // namespace

std::span<const CommandAction> BlockActions() {
  return kActions;
}

}  // namespace brevant::gui
