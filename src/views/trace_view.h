// SPDX-License-Identifier: MIT
// The log of the last trace, line by line, as it stands in its file, with a cursor on one of the
// lines. Rests on the index of the file's lines; the target is never read.
#pragma once

#include <string>
#include <string_view>
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
  int cursor() const { return cursor_; }
  int line_count() const { return lines_; }
  int rows() const { return rows_; }
  const std::string& path() const { return index_.path(); }
  // The lines in sight, tabs expanded; why there are none in their place.
  const std::vector<std::string>& lines() const { return shown_; }
  // The record to which the cursor's line belongs; nullptr when there is none.
  const control::TraceRecord* UnderCursor() const;

  // Whole lines alone count.
  void Resize(int client_height, int line_height);
  // A line moves the cursor, a page both.
  void Scroll(ScrollCode code, int position = 0);
  // Cut to the lines that there are, and brought into sight.
  void MoveCursor(int line);

  // From the line behind the cursor on, and round to it again. Letters of ASCII count in either
  // case unless match_case.
  enum class Found { Behind, FromTheTop, Nowhere, NotReadable };
  void SetSearch(std::string_view text, bool match_case);
  Found Search();
  const std::string& search_text() const { return search_text_; }

 protected:
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  void TakeLog();
  void ReadLines();
  void ToTop(int top);

  const control::Trace& trace_;
  SourceIndex index_;
  std::vector<control::TraceRecord> records_;
  long log_ = 0;  // whose lines are held
  int lines_ = 0, top_ = 0, rows_ = 0, cursor_ = 0;
  std::string search_text_;
  bool match_case_ = false;
  std::vector<std::string> shown_;
};

}  // namespace brevant::views
