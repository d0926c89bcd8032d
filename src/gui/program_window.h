// SPDX-License-Identifier: MIT
// A window onto the code in the target. It paints what its program view holds and hands the view
// what the user does; what that means is the view's to say.
#pragma once

#include <memory>

#include "gui/code_window.h"
#include "views/program_views.h"

namespace brevant::gui {

class ProgramWindow final : public CodeWindow {
 public:
  ProgramWindow(Session& session, FrameLinks links, const QFont& font,
                const workspace::WindowAttributes& starting);

  views::ProgramView& view() { return *view_; }
  void Activated() override { views_.Activate(*view_); }
  void RefreshFromTarget() override { view_->Refresh(); }

  QStringList TextLines() const override;
  int TextCursorLine() const override { return view_->RowOfLine(view_->state().cursorLine); }
  std::optional<PopupItem> ItemOf(int command) const override;
  QSize sizeHint() const override;
  std::string WordAt(QPoint at) const override;

 protected:
  const views::View& shown() const override { return *view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_->Scroll(code, position); }

  QPoint PopupPlace() const override;
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MoveCursor(int by);
  QString LineText(const views::ProgramLine& line) const;
  void PaintLine(QPainter& painter, int row, const views::ProgramLine& line) const;

  views::ProgramViews& views_;
  std::unique_ptr<views::ProgramView> view_;
};

}  // namespace brevant::gui
