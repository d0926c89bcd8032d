// SPDX-License-Identifier: MIT
#include "gui/chip_window.h"

#include "gui/edit_dialogs.h"
#include "gui/qt_user_interface.h"
#include "gui/session.h"
#include "views/messages.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kMostDigits = 2;

}  // namespace

ChipWindow::ChipWindow(Session& session, FrameLinks links, const QFont& font,
                       const workspace::WindowAttributes&)
    : RowsWindow(session.gate, std::move(links), font),
      session_(session),
      view_(session.views, session.debugger.memory, session.debugger.activity) {
  setObjectName("MDI_Chip");
  setAccessibleName("Chip");
}

std::optional<PopupItem> ChipWindow::ItemOf(int command) const {
  const bool edits = command == commands::kChipEdit;
  if (!edits && command != commands::kChipReadNow) return std::nullopt;
  return PopupItem{
      .text = Text(workspace::MenuText(*workspace::FindCommand(command), false)),
      .enabled = edits ? !view_.Editable().empty() : view_.RegisterAtCursor() != nullptr};
}

QString ChipWindow::CursorText() const {
  return Text(view_.Explain());
}

void ChipWindow::EditValue() {
  const std::string name = view_.Editable();
  if (name.empty()) return;
  const EditRequest request{
      .title = "EDIT: " + name, .text = view_.EditableText(), .max_length = kMostDigits};
  std::string remark;
  AskForText(window(), view_font(), request, [&](std::string_view text) {
    memory::RegisterWrite written = view_.Assign(text);
    remark = std::move(written.remark);
    return std::move(written.refused);
  });
  if (remark.empty()) return;
  session_.ui.ShowMessage(base::ToMessage(views::messages::kRegisterRemark, remark));
}

}  // namespace brevant::gui
