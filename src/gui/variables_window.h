// SPDX-License-Identifier: MIT
// The window onto the variables of the stopped program. It paints what its view holds.
#pragma once

#include "gui/scrolling_view.h"
#include "views/variables_view.h"

namespace brevant::gui {

class VariablesWindow final : public ScrollingView {
 public:
  VariablesWindow(Session& session, FrameLinks links, const QFont& font,
                  const workspace::WindowAttributes& starting);

  const views::VariablesView& view() const { return view_; }
  // Opens the editor of the value under the cursor. From within a command.
  void EditValue();
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QStringList TextLines() const override;
  int TextCursorLine() const override { return view_.cursor(); }
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;
  QSize sizeHint() const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  QPoint PopupPlace() const override;
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Session& session_;
  views::VariablesView view_;
};

}  // namespace brevant::gui
