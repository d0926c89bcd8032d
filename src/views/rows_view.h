// SPDX-License-Identifier: MIT
// A window onto rows of names and values, of which some unfold to further rows: its cursor, what is
// in sight, and the marks that a click unfolds. What the rows are is told by who derives from it.
#pragma once

#include <string>

#include "views/open_views.h"
#include "views/scroll_code.h"

namespace brevant::views {

struct FoldedRow {
  std::string left;      // what stands before the value, with the mark of a row that has parts
  std::string text;      // the value
  std::string path;      // tells the row from all others
  int mark_column = -1;  // in characters; -1: it has no parts
  bool unfolded = false;
  bool changed = false;     // since the stop before
  bool on_request = false;  // not read by itself
};

class RowsView : public View {
 public:
  using View::View;

  // As of the last Follow; all of them, those in sight from top on.
  virtual int count() const = 0;
  virtual FoldedRow At(int row) const = 0;

  int top() const { return top_; }
  int cursor() const { return cursor_; }  // a row of all
  int lines() const { return lines_; }    // that fit in the window
  int last_position() const;

  void Resize(int client_height, int line_height);
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int row);
  // The parts of the row under the cursor appear below it, or go.
  void Unfold(bool unfolded);
  // The same where its mark stands at the column; false elsewhere. row is one in sight.
  bool ToggleAt(int row, int column);

 protected:
  // To take effect when the rows are made anew. False where nothing changes.
  virtual bool UnfoldPath(const std::string& path, bool unfolded) = 0;
  // Other rows are in sight.
  virtual void Moved() {}
  // To be called when the rows are made anew: what is in sight stays, as far as it is there.
  void KeepInSight();

 private:
  void Show(int row);

  int top_ = 0, cursor_ = 0, lines_ = 0;
};

}  // namespace brevant::views
