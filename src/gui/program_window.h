// SPDX-License-Identifier: MIT
// A window onto the code in the target. It paints what its program view holds and hands the view
// what the user does; what that means is the view's to say.
#pragma once

#include "gui/gate.h"
#include "gui/text_view.h"
#include "gui/window_kinds.h"
#include "views/program_views.h"

namespace brevant::gui {

class ProgramWindow final : public TextView {
 public:
  ProgramWindow(views::ProgramViews& views, Gate& gate, FrameLinks links, const QFont& font);
  ~ProgramWindow() override;

  views::ProgramView& view() { return view_; }
  // Carries out what was requested of the view since the last time.
  void UpdateIfNeeded() override;
  void Activated() override { views_.Activate(view_); }

  QSize sizeHint() const override;

 protected:
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void OnScrollBar(int action);
  void ShowPosition();
  void MoveCursor(int by);
  void PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const;

  views::ProgramViews& views_;
  Gate& gate_;
  FrameLinks links_;
  views::ProgramView& view_;
  bool needs_update_ = true;
  int wheel_rest_ = 0;
};

}  // namespace brevant::gui
