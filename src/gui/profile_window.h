// SPDX-License-Identifier: MIT
// The window of where the cycles of the last trace went, with a bar a row. It paints what its
// profile view holds.
#pragma once

#include "gui/scrolling_view.h"
#include "views/profile_view.h"

namespace brevant::gui {

class ProfileWindow final : public ScrollingView {
 public:
  ProfileWindow(Session& session, FrameLinks links, const QFont& font,
                const workspace::WindowAttributes& starting);

  views::ProfileView& view() { return view_; }
  QStringList TextLines() const override;
  int TextCursorLine() const override { return view_.cursor() - view_.top(); }
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
  views::ProfileView view_;
};

}  // namespace brevant::gui
