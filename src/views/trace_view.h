// SPDX-License-Identifier: MIT
// The log of the last trace, line by line, as it stands in its file. Rests on the index of the
// file's lines; the target is never read.
#pragma once

#include <string>
#include <vector>

#include "control/trace.h"
#include "views/open_views.h"
#include "views/scroll_code.h"
#include "views/source_index.h"

namespace brevant::views {

class TraceView final : public View {
 public:
  TraceView(OpenViews& open, const control::Trace& trace) : View(open), trace_(trace) {}

  int top() const { return top_; }
  int line_count() const { return lines_; }
  int rows() const { return rows_; }
  const std::string& path() const { return index_.path(); }
  // The lines in sight, tabs expanded; why there are none in their place.
  const std::vector<std::string>& lines() const { return shown_; }

  // Whole lines alone count.
  void Resize(int client_height, int line_height);
  void Scroll(ScrollCode code, int position = 0);

 protected:
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  void ReadLines();

  const control::Trace& trace_;
  SourceIndex index_;
  long log_ = 0;  // whose lines are held
  int lines_ = 0, top_ = 0, rows_ = 0;
  std::vector<std::string> shown_;
};

}  // namespace brevant::views
