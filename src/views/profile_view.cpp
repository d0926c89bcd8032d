// SPDX-License-Identifier: MIT
#include "views/profile_view.h"

#include <algorithm>

namespace brevant::views {
namespace {

std::vector<ProfileLine> LinesOf(const control::TraceProfile& profile) {
  if (profile.steps == 0) {
    return {{"Nothing has been traced: Trace in the toolbar begins, and ends it."}};
  }
  std::vector<ProfileLine> lines{{control::ProfileTotal(profile)}};
  const auto add = [&](const char* heading, const std::vector<control::ProfileRow>& rows) {
    lines.push_back({});
    lines.push_back({control::ProfileHeading(heading)});
    for (const control::ProfileRow& row : rows) {
      lines.push_back(
          {control::ProfileRowText(row, profile), control::ShareOf(row, profile), row.address});
    }
  };
  add("Functions", profile.functions);
  add("Lines", profile.lines);
  return lines;
}

}  // namespace

const ProfileLine* ProfileView::UnderCursor() const {
  const auto line = static_cast<std::size_t>(cursor_);
  return line < lines_.size() ? &lines_[line] : nullptr;
}

void ProfileView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  rows_ = std::max(client_height, 0) / line_height;
  ToTop(top_);
}

void ProfileView::ToTop(int top) {
  top_ = std::clamp(top, 0, std::max(static_cast<int>(lines_.size()) - 1, 0));
  Repaint();
}

void ProfileView::MoveCursor(int line) {
  cursor_ = std::clamp(line, 0, std::max(static_cast<int>(lines_.size()) - 1, 0));
  ToTop(std::clamp(top_, std::max(cursor_ - std::max(rows_, 1) + 1, 0), cursor_));
}

void ProfileView::Scroll(ScrollCode code, int position) {
  switch (code) {
    case ScrollCode::LineUp:
      return MoveCursor(cursor_ - 1);
    case ScrollCode::LineDown:
      return MoveCursor(cursor_ + 1);
    case ScrollCode::PageUp:
      ToTop(top_ - rows_);
      return MoveCursor(cursor_ - rows_);
    case ScrollCode::PageDown:
      ToTop(top_ + rows_);
      return MoveCursor(cursor_ + rows_);
    case ScrollCode::ThumbTrack:
      return ToTop(position);
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

void ProfileView::Pull(const base::Generations& before, const base::Generations& now) {
  if (log_ == trace_.logs() && before.symbols == now.symbols) return;
  log_ = trace_.logs();
  lines_ = LinesOf(control::ProfileOf(trace_.ring(), info_));
  MoveCursor(0);
}

}  // namespace brevant::views
