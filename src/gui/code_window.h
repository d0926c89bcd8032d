// SPDX-License-Identifier: MIT
// What the windows that show code have in common: how the lines of PC, of the cursor and of
// breakpoints look in each theme.
#pragma once

#include <string>

#include "gui/scrolling_view.h"

namespace brevant::gui {

struct LineMarks {
  bool is_pc = false;
  bool is_cursor = false;
  bool has_breakpoint = false;
};

class CodeWindow : public ScrollingView {
 public:
  using ScrollingView::ScrollingView;

  // The name or number that is shown there, in pixels of the viewport; empty when there is none.
  virtual std::string WordAt(QPoint at) const = 0;

 protected:
  bool viewportEvent(QEvent* event) override;
  // Of any row; while a program runs no line is PC's.
  template <typename Row>
  LineMarks MarksOf(const Row& row) const {
    return {row.is_pc && !running(), row.is_cursor, row.has_breakpoint};
  }
  // Of the marks left of the text.
  int GutterColumns() const;
  TextColours LineColours(const LineMarks& marks) const;
  // In the gutter, or else PC's in that column behind it, and a breakpoint's over the first so
  // many.
  void PaintMarks(QPainter& painter, int row, const LineMarks& marks, int pc_column,
                  int breakpoint_columns) const;
};

// What is said of the marks to whoever cannot see them.
QString SpokenMarks(const LineMarks& marks);

}  // namespace brevant::gui
