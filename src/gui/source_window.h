// SPDX-License-Identifier: MIT
// The window onto a source file of the loaded program. It paints what its source view holds and
// hands the view what the user does; what that means is the view's to say.
#pragma once

#include "gui/code_window.h"
#include "views/source_view.h"

namespace brevant::gui {

class SourceWindow final : public CodeWindow {
 public:
  SourceWindow(Session& session, FrameLinks links, const QFont& font,
               const workspace::WindowAttributes& starting);
  ~SourceWindow() override;

  views::SourceView& view() { return view_; }
  void ShowChanges() override;
  QStringList TextLines() const override;
  int TextCursorLine() const override { return view_.state().cursor; }
  QString CursorText() const override;
  std::optional<PopupItem> ItemOf(int command) const override;
  QSize sizeHint() const override;
  std::string WordAt(QPoint at) const override;

 protected:
  const views::View& shown() const override { return view_; }
  ScrollBarState BarState() const override;
  void Scroll(views::ScrollCode code, int position) override { view_.Scroll(code, position); }

  QPoint PopupPlace() const override;
  void CellsChanged() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  // "12   ·": what stands before the text.
  QString NumberText(const views::SourceRow& row) const;
  void PaintRow(QPainter& painter, int row, const views::SourceRow& line) const;
  void PaintText(QPainter& painter, int row, const views::SourceRow& line) const;
  bool MissesItsFile() const { return !view_.problem().empty(); }

  control::RunControl& run_control_;
  views::SourceView view_;
};

}  // namespace brevant::gui
