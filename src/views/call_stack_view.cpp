// SPDX-License-Identifier: MIT
#include "views/call_stack_view.h"

#include <algorithm>
#include <utility>

namespace brevant::views {
namespace {

// More than that is a recursion without an end.
constexpr int kMostFrames = 40;

}  // namespace

const frames::Frame* CallStackView::UnderCursor() const {
  const auto line = static_cast<std::size_t>(state_.cursorLine);
  return line < stack_.frames.size() ? &stack_.frames[line] : nullptr;
}

void CallStackView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  state_.lineCount = std::max(client_height + line_height / 2, 0) / line_height;
  ToTop(state_.top);
}

void CallStackView::ToTop(int top) {
  state_.top = std::clamp(top, 0, std::max(static_cast<int>(lines_.size()) - 1, 0));
  Repaint();
}

void CallStackView::Scroll(ScrollCode code, int position) {
  switch (code) {
    case ScrollCode::LineUp:
      return MoveCursor(state_.cursorLine - 1);
    case ScrollCode::LineDown:
      return MoveCursor(state_.cursorLine + 1);
    case ScrollCode::PageUp:
      return ToTop(state_.top - state_.lineCount);
    case ScrollCode::PageDown:
      return ToTop(state_.top + state_.lineCount);
    case ScrollCode::ThumbTrack:
      return ToTop(position);
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
}

void CallStackView::MoveCursor(int line) {
  state_.cursorLine = std::clamp(line, 0, std::max(last(), 0));
  const int shown = std::max(state_.lineCount, 1);
  ToTop(std::clamp(state_.top, std::max(state_.cursorLine - shown + 1, 0), state_.cursorLine));
}

void CallStackView::Refresh() {
  for (const frames::Frame& frame : stack_.frames) {
    if (frame.function == nullptr) continue;
    sources_.memory.Drop({frame.function->first, frame.function->last + 1 - frame.function->first});
  }
  for (const memory::Range& ram : sources_.memory.Ram()) sources_.memory.Drop(ram);
  Request();
}

void CallStackView::Pull(const base::Generations& before, const base::Generations& now) {
  if (sources_.activity.FileIoActive()) return;
  frames::CallStack stack =
      frames::FindCallStack(sources_.memory, sources_.debug_info, sources_.frame.PC,
                            sources_.frame.ProgramSP(), kMostFrames);
  // What was read last stays when the link is lost on the way.
  if (sources_.memory.LinkError()) return;
  stack_ = std::move(stack);
  lines_.clear();
  for (std::size_t n = 0; n < stack_.frames.size(); ++n) {
    lines_.push_back(frames::FrameText(n, stack_.frames[n], sources_.debug_info));
  }
  if (!stack_.end.empty()) lines_.push_back("   " + stack_.end);
  MoveCursor(before.stops != now.stops ? 0 : state_.cursorLine);
}

}  // namespace brevant::views
