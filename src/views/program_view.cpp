// SPDX-License-Identifier: MIT
#include "views/program_view.h"

#include <algorithm>

#include "control/messages.h"

namespace brevant::views {

std::string ExpandTabs(std::string_view text) {
  std::string expanded;
  for (const char c : text) {
    if (c != '\t') {
      expanded += c;
      continue;
    }
    const auto column = static_cast<int>(expanded.size());
    const auto* const stop = std::find_if(std::begin(kTabStops), std::end(kTabStops),
                                          [column](int tab_stop) { return tab_stop > column; });
    const int to = stop == std::end(kTabStops) ? column + 1 : *stop;
    expanded.resize(static_cast<std::size_t>(to), ' ');
  }
  return expanded;
}

ProgramView::ProgramView(const ProgramSources& sources, const ProgramConditions& conditions,
                         base::Address first)
    : sources_(sources),
      conditions_(conditions),
      lines_(sources.memory, sources.debug_info.SymbolTable) {
  state_.top = first;
}

bool ProgramView::Running() const {
  return sources_.activity.WaitingForBreak();
}

void ProgramView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  state_.lineCount = std::max(client_height + line_height / 2, 0) / line_height;
  Invalidate();
}

void ProgramView::Scroll(ScrollCode code, int position) {
  if (conditions_.fileIoActive || Running()) return;
  if (code == ScrollCode::RedrawFromTop) redraw_ = true;
  scroll_ = code;
  thumb_ = position;
  Invalidate();
}

void ProgramView::GoToAddress(base::Address address) {
  state_.top = address;
  RequestRedraw();
}

void ProgramView::RequestRedraw() {
  redraw_ = true;
  scroll_ = ScrollCode::RepaintOnly;
  Invalidate();
}

void ProgramView::Invalidate() {
  if (invalidate_) invalidate_();
}

bool ProgramView::Shows(base::Address address) const {
  const auto& lines = lines_.lines();
  return !lines.empty() && lines.front().address <= address && address <= lines.back().address;
}

void ProgramView::ShowPc() {
  if (!Shows(sources_.frame.PC)) {
    GoToAddress(sources_.frame.PC);
    return;
  }
  // What is still to be read may move PC out of sight; Update sees to that.
  follow_pc_ = true;
  Invalidate();
}

void ProgramView::Redraw() {
  lines_.FillFrom(std::min(state_.top, conditions_.range.LastTop()), state_.lineCount);
}

void ProgramView::Update() {
  // During file I/O nothing is read from the target. With the link lost nothing could be: what was
  // read last stays, and requests wait for a new connection.
  if (!conditions_.fileIoActive && (Running() || sources_.memory.LinkError())) return;
  lines_.SetReadsTarget(!conditions_.fileIoActive);
  if (redraw_ || lines_.lines().empty()) {
    Redraw();
  } else {
    lines_.Resize(state_.lineCount);
  }
  lines_.RecomputeLines(scroll_, thumb_, conditions_.range);
  if (!lines_.lines().empty()) {
    if (follow_pc_ && !Shows(sources_.frame.PC)) {
      state_.top = sources_.frame.PC;
      Redraw();
    }
    state_.top = lines_.top();
    redraw_ = false;
    scroll_ = ScrollCode::RepaintOnly;
  }
  follow_pc_ = false;
  MoveCursor(state_.cursorLine);
}

int ProgramView::DrawableCount() const {
  const auto& lines = lines_.lines();
  const auto beyond = std::find_if(lines.begin(), lines.end(), [this](const CodeLine& line) {
    return line.address > conditions_.range.end;
  });
  return static_cast<int>(beyond - lines.begin());
}

std::vector<ProgramLine> ProgramView::Lines() const {
  std::vector<ProgramLine> drawable;
  const int count = DrawableCount();
  for (int i = 0; i < count; ++i) {
    const CodeLine& line = lines_.lines()[static_cast<std::size_t>(i)];
    drawable.push_back({line.text, line.address, line.address == sources_.frame.PC,
                        i == state_.cursorLine, sources_.breakpoints.Has(line.address)});
  }
  return drawable;
}

void ProgramView::MoveCursor(int line) {
  state_.cursorLine = std::clamp(line, 0, std::max(DrawableCount() - 1, 0));
}

std::optional<CodeLine> ProgramView::CursorLine() const {
  if (state_.cursorLine >= DrawableCount()) return std::nullopt;
  return lines_.lines()[static_cast<std::size_t>(state_.cursorLine)];
}

ClickMeaning ProgramView::HitTest(int x, int y, CellSize cell) const {
  if (y < 0 || y >= DrawableCount() * cell.height) return {};
  const int line = y / cell.height;
  const base::Address address = lines_.lines()[static_cast<std::size_t>(line)].address;
  if (x < kAddressColumns * cell.width) {
    return {ClickMeaning::Kind::ToggleBreakpoint, line, address};
  }
  // The gap behind the address belongs to neither.
  if (x <= kHighlightColumn * cell.width) return {};
  return {ClickMeaning::Kind::MoveCursor, line, address};
}

bool ProgramView::Click(int x, int y, CellSize cell) {
  if (conditions_.fileIoActive) return false;
  const ClickMeaning meaning = HitTest(x, y, cell);
  switch (meaning.kind) {
    case ClickMeaning::Kind::Nothing:
      return false;
    case ClickMeaning::Kind::MoveCursor:
      MoveCursor(meaning.line);
      Invalidate();
      return false;
    case ClickMeaning::Kind::ToggleBreakpoint:
      return ToggleBreakpoint(meaning.address) != Toggled::Refused;
  }
  return false;
}

Toggled ProgramView::ToggleBreakpoint(base::Address address) {
  if (!sources_.breakpoints.HardwareBreakMode() && Running()) {
    // The table says where code bytes are to be restored when the program stops.
    sources_.ui.Beep();
    return Toggled::Refused;
  }
  const bool present = sources_.breakpoints.Has(address);
  if (present) {
    sources_.breakpoints.RemoveBreakpoint(address);
  } else {
    if (const auto refusal = control::BreakpointLimit(sources_.breakpoints)) {
      sources_.ui.ShowMessage(*refusal);
      return Toggled::Refused;
    }
    sources_.breakpoints.AddBreakpoint(address);
  }
  Invalidate();
  return present ? Toggled::Removed : Toggled::Added;
}

}  // namespace brevant::views
