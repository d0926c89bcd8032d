// SPDX-License-Identifier: MIT
#include "gui/variables_window.h"

#include "gui/edit_dialogs.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kMostTyped = 80;

}  // namespace

VariablesWindow::VariablesWindow(Session& session, FrameLinks links, const QFont& font,
                                 const workspace::WindowAttributes&)
    : RowsWindow(session.gate, std::move(links), font),
      view_(session.views, {session.debugger.memory, session.debugger.debug_info,
                            session.debugger.frame, session.debugger.activity}) {
  setObjectName("MDI_Vars");
  setAccessibleName("Variables");
}

std::optional<PopupItem> VariablesWindow::ItemOf(int command) const {
  if (command != commands::kVariablesEdit) return std::nullopt;
  return PopupItem{.text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
                   .enabled = view_.Editable() != nullptr};
}

QString VariablesWindow::CursorText() const {
  return Text(view_.Explain());
}

void VariablesWindow::EditValue() {
  const views::ValueRow* const row = view_.Editable();
  if (row == nullptr) return;
  const EditRequest request{
      .title = "EDIT: " + row->name, .text = row->text, .max_length = kMostTyped};
  AskForText(window(), view_font(), request,
             [this](std::string_view text) { return view_.Assign(text); });
}

}  // namespace brevant::gui
