// SPDX-License-Identifier: MIT
#include "views/rows_view.h"

#include <algorithm>

namespace brevant::views {

int RowsView::last_position() const {
  return std::max(count() - lines_, 0);
}

void RowsView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  lines_ = client_height / line_height;
  Show(cursor_);
}

void RowsView::Show(int row) {
  cursor_ = std::clamp(row, 0, std::max(count() - 1, 0));
  if (cursor_ >= top_ + lines_) top_ = cursor_ - lines_ + 1;
  top_ = std::clamp(std::min(top_, cursor_), 0, last_position());
  Moved();
  Repaint();
}

void RowsView::MoveCursor(int row) {
  Show(row);
}

void RowsView::Scroll(ScrollCode code, int position) {
  const auto to = [this](int top) {
    top_ = std::clamp(top, 0, last_position());
    Moved();
    Repaint();
  };
  switch (code) {
    case ScrollCode::LineUp:
      return to(top_ - 1);
    case ScrollCode::LineDown:
      return to(top_ + 1);
    case ScrollCode::PageUp:
      return Show(cursor_ - std::max(lines_, 1));
    case ScrollCode::PageDown:
      return Show(cursor_ + std::max(lines_, 1));
    case ScrollCode::ThumbTrack:
      return to(position);
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

void RowsView::Unfold(bool unfolded) {
  if (cursor_ >= count()) return;
  const FoldedRow row = At(cursor_);
  if (row.mark_column >= 0 && UnfoldPath(row.path, unfolded)) Request();
}

bool RowsView::ToggleAt(int row, int column) {
  const int n = top_ + row;
  if (row < 0 || n >= count()) return false;
  const FoldedRow shown = At(n);
  if (shown.mark_column < 0 || shown.mark_column != column) return false;
  Show(n);
  Unfold(!shown.unfolded);
  return true;
}

void RowsView::KeepInSight() {
  cursor_ = std::clamp(cursor_, 0, std::max(count() - 1, 0));
  top_ = std::clamp(top_, 0, last_position());
}

}  // namespace brevant::views
