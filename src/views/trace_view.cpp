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

void TraceView::Scroll(ScrollCode code, int position) {
  switch (code) {
    case ScrollCode::LineUp:
      top_ = std::max(top_ - 1, 0);
      break;
    case ScrollCode::LineDown:
      top_ = std::min(top_ + 1, lines_);
      break;
    case ScrollCode::PageUp:
      top_ = std::max(top_ - rows_, 0);
      break;
    case ScrollCode::PageDown:
      top_ = std::min(top_ + rows_, lines_);
      break;
    case ScrollCode::ThumbTrack:
      top_ = std::clamp(position, 0, lines_);
      break;
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
  Request();
}

void TraceView::Pull(const base::Generations&, const base::Generations&) {
  if (log_ != trace_.logs() && trace_.written_log()) {
    log_ = trace_.logs();
    index_ = SourceIndex(trace_.written_log()->path);
    lines_ = index_.ok() ? std::min(trace_.written_log()->lines, index_.line_count()) : 0;
    top_ = 0;
  }
  ReadLines();
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
