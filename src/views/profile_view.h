// SPDX-License-Identifier: MIT
// Where the cycles of the last trace went: a row for each function and each line, most cycles
// first. Rests on the recorded steps; the target is never read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/trace.h"
#include "control/trace_rows.h"
#include "symbols/debug_info.h"
#include "views/open_views.h"
#include "views/scroll_code.h"

namespace brevant::views {

struct ProfileLine {
  std::string text;
  double share = 0;  // how long its bar is, 0 to 1
  // Of a function or line: the first of its instructions.
  std::optional<base::Address> address = {};
};

class ProfileView final : public View {
 public:
  ProfileView(OpenViews& open, const control::Trace& trace, const symbols::DebugInfo& info)
      : View(open), trace_(trace), info_(info) {}

  const std::vector<ProfileLine>& lines() const { return lines_; }
  int top() const { return top_; }
  int rows() const { return rows_; }
  int cursor() const { return cursor_; }
  const ProfileLine* UnderCursor() const;

  void Resize(int client_height, int line_height);
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int line);

 protected:
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  void ToTop(int top);

  const control::Trace& trace_;
  const symbols::DebugInfo& info_;
  std::vector<ProfileLine> lines_;
  std::optional<long> log_;  // whose steps are counted
  int top_ = 0, rows_ = 0, cursor_ = 0;
};

}  // namespace brevant::views
