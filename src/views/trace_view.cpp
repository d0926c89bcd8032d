// SPDX-License-Identifier: MIT
#include "views/trace_view.h"

#include <algorithm>

#include "base/text_format.h"

namespace brevant::views {
namespace {

constexpr int kMostCharacters = 500;
constexpr std::size_t kTabWidth = 8;

std::string Expanded(const std::string& text) {
  std::string expanded;
  for (const char c : text) {
    if (c == '\t') {
      expanded.resize((expanded.size() / kTabWidth + 1) * kTabWidth, ' ');
    } else {
      expanded += c;
    }
  }
  return expanded;
}

}  // namespace

void TraceView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  rows_ = std::max(client_height, 0) / line_height;
  Request();
}

const control::TraceRecord* TraceView::UnderCursor() const {
  const auto record = static_cast<std::size_t>(cursor_ / control::kTraceLinesPerRecord);
  return record < records_.size() ? &records_[record] : nullptr;
}

void TraceView::Scroll(ScrollCode code, int position) {
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

void TraceView::ToTop(int top) {
  top_ = std::clamp(top, 0, lines_);
  Request();
}

void TraceView::MoveCursor(int line) {
  cursor_ = std::clamp(line, 0, std::max(lines_ - 1, 0));
  ToTop(std::clamp(top_, std::max(cursor_ - std::max(rows_, 1) + 1, 0), cursor_));
}

void TraceView::SetSearch(std::string_view text, bool match_case) {
  search_text_ = text;
  match_case_ = match_case;
}

TraceView::Found TraceView::Search() {
  if (!index_.Current()) return Found::NotReadable;
  const auto at = [this](int first) { return index_.Find(search_text_, first, match_case_); };
  auto line = at(cursor_ + 1);
  const bool behind = line && *line < lines_;
  if (!behind) line = at(0);
  if (search_text_.empty() || !line || *line >= lines_) return Found::Nowhere;
  MoveCursor(*line);
  return behind ? Found::Behind : Found::FromTheTop;
}

void TraceView::Pull(const base::Generations&, const base::Generations&) {
  if (log_ != trace_.logs() && trace_.written_log()) TakeLog();
  ReadLines();
}

void TraceView::TakeLog() {
  log_ = trace_.logs();
  index_ = SourceIndex(trace_.written_log()->path);
  lines_ = index_.ok() ? std::min(trace_.written_log()->lines, index_.line_count()) : 0;
  top_ = cursor_ = 0;
  records_.clear();
  const control::TraceRing& ring = trace_.ring();
  for (int n = control::FirstLogRecord(ring); n < ring.size(); ++n) records_.push_back(ring.At(n));
}

void TraceView::ReadLines() {
  shown_.clear();
  if (log_ == 0) {
    shown_.emplace_back("Nothing has been traced: Trace in the toolbar begins, and ends it.");
  } else if (const auto lines =
                 index_.Read(top_, std::min(rows_, lines_ - top_), kMostCharacters)) {
    for (const SourceIndex::Line& line : *lines) shown_.push_back(Expanded(line.text));
  } else {
    shown_.push_back(base::Format("%s cannot be read any more", index_.path()));
  }
  Repaint();
}

}  // namespace brevant::views
