// SPDX-License-Identifier: MIT
// One window onto the variables of the stopped program: parameters and locals of the function at
// PC, the statics of its module, and the globals. What the compiler keeps elsewhere is said to be
// so, never shown as a number. Rests on evaluation.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/activity.h"
#include "control/register_frame.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/open_views.h"
#include "views/scroll_code.h"
#include "views/value_rows.h"

namespace brevant::views {

// Borrowed.
struct VariablesSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  const control::Activity& activity;
};

class VariablesView final : public View {
 public:
  VariablesView(OpenViews& open, const VariablesSources& sources) : View(open), sources_(sources) {}

  // As of the last Follow; all of them, those in sight from top on.
  const std::vector<ValueRow>& rows() const { return values_.rows(); }
  int top() const { return top_; }
  int cursor() const { return cursor_; }  // a row of all
  int lines() const { return lines_; }    // that fit in the window
  int last_position() const;

  void Resize(int client_height, int line_height);
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int row);
  // The parts of the value under the cursor appear below it, or go.
  void Unfold(bool unfolded);
  // The same where its mark stands at the column; false elsewhere.
  bool ToggleAt(int row, int column);
  // Asks the target for everything, whatever is kept of it.
  void Refresh();
  // Of the row under the cursor: its type and where it lies.
  std::string Explain() const;

  // The row under the cursor, where it has a value that can be changed; nullptr otherwise.
  const ValueRow* Editable() const;
  // Gives it the value of the text, an expression, and reads back. Empty, or what was wrong.
  std::string Assign(std::string_view text);

 protected:
  bool ReadsTarget() const override { return !sources_.activity.FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  void MakeRows(const eval::Context& context);
  void Show(int row);

  VariablesSources sources_;
  ValueRows values_;
  int top_ = 0, cursor_ = 0, lines_ = 0;
  bool on_request_ = false;
};

}  // namespace brevant::views
