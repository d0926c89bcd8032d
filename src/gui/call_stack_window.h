// SPDX-License-Identifier: MIT
// The window of the functions that the stopped program is in. A click on one shows where it is.
#pragma once

#include "gui/scrolling_view.h"
#include "views/call_stack_view.h"

namespace brevant::gui {

class CallStackWindow final : public ScrollingView {
 public:
  CallStackWindow(Session& session, FrameLinks links, const QFont& font,
                  const workspace::WindowAttributes& starting);

  views::CallStackView& view() { return view_; }
  void RefreshFromTarget() override { view_.Refresh(); }
  bool OfTheMoment() const override { return true; }
  QStringList TextLines() const override;
  int LongestLine() const override;
  int TextCursorLine() const override { return view_.state().cursorLine - view_.state().top; }
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
  void keyPressEvent(QKeyEvent* event) override;

 private:
  views::CallStackView view_;
};

}  // namespace brevant::gui
