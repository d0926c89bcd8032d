// SPDX-License-Identifier: MIT
// The window onto the registers of the MCU.
#pragma once

#include "gui/rows_window.h"
#include "views/chip_view.h"
#include "workspace/command_rows.h"

namespace brevant::gui {

class ChipWindow final : public RowsWindow {
 public:
  ChipWindow(Session& session, FrameLinks links, const QFont& font,
             const workspace::WindowAttributes& starting);

  const views::ChipView& view() const { return view_; }
  // Opens the editor of the register or field under the cursor. From within a command.
  void EditValue();
  // Reads the register under the cursor, whatever reading does.
  void ReadNow() { view_.ReadNow(); }
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;

 protected:
  views::RowsView& rows() override { return view_; }
  const views::RowsView& rows() const override { return view_; }
  int EditCommand() const override { return workspace::commands::kChipEdit; }

 private:
  Session& session_;
  views::ChipView view_;
};

}  // namespace brevant::gui
