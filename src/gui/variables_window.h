// SPDX-License-Identifier: MIT
// The window onto the variables of the stopped program.
#pragma once

#include "gui/rows_window.h"
#include "views/variables_view.h"
#include "workspace/command_rows.h"

namespace brevant::gui {

class VariablesWindow final : public RowsWindow {
 public:
  VariablesWindow(Session& session, FrameLinks links, const QFont& font,
                  const workspace::WindowAttributes& starting);

  const views::VariablesView& view() const { return view_; }
  // Opens the editor of the value under the cursor. From within a command.
  void EditValue();
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;

 protected:
  views::RowsView& rows() override { return view_; }
  const views::RowsView& rows() const override { return view_; }
  int EditCommand() const override { return workspace::commands::kVariablesEdit; }

 private:
  views::VariablesView view_;
};

}  // namespace brevant::gui
