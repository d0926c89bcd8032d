// SPDX-License-Identifier: MIT
// The base of windows onto long contents: scroll bar, wheel and keys become the requests of their
// view, and what the view has changed is painted.
#pragma once

#include "gui/gate.h"
#include "gui/text_view.h"
#include "gui/window_kinds.h"
#include "views/open_views.h"
#include "views/scroll_code.h"

namespace brevant::gui {

class ScrollingView : public TextView {
 public:
  ScrollingView(Gate& gate, FrameLinks links, const QFont& font);

  void ShowChanges() override;

 protected:
  struct ScrollBarState {
    int maximum = 0;
    int page = 1;
    int position = 0;
  };
  virtual const views::View& shown() const = 0;
  virtual ScrollBarState BarState() const = 0;
  virtual void Scroll(views::ScrollCode code, int position) = 0;

  // Arrows and page keys. False for any other key.
  bool ScrollByKey(int key);
  // Shift with an arrow. False for anything else.
  bool ScrollSideways(const QKeyEvent& event);
  // Where the keyboard opens the popup menu, in pixels of the viewport.
  virtual QPoint PopupPlace() const = 0;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

  Gate& gate_;
  FrameLinks links_;

 private:
  void OnScrollBar(int action);

  long painted_ = -1;  // version of the view
  int wheel_rest_ = 0;
};

}  // namespace brevant::gui
