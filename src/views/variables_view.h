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
#include "views/rows_view.h"
#include "views/value_rows.h"

namespace brevant::views {

// Borrowed.
struct VariablesSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  const control::Activity& activity;
};

class VariablesView final : public RowsView {
 public:
  VariablesView(OpenViews& open, const VariablesSources& sources)
      : RowsView(open), sources_(sources) {}

  const std::vector<ValueRow>& rows() const { return values_.rows(); }
  int count() const override { return static_cast<int>(rows().size()); }
  FoldedRow At(int row) const override;

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
  bool UnfoldPath(const std::string& path, bool unfolded) override {
    return values_.Unfold(path, unfolded);
  }

 private:
  void MakeRows(const eval::Context& context);

  VariablesSources sources_;
  ValueRows values_;
  bool on_request_ = false;
};

}  // namespace brevant::views
