// SPDX-License-Identifier: MIT
#include "views/program_view.h"

#include <algorithm>

#include "symbols/places.h"
#include "views/program_views.h"
#include "views/source_characters.h"

namespace brevant::views {

namespace {

// Of one instruction; more would hide the code.
constexpr int kMostSourceRows = 4;

}  // namespace

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

ProgramView::ProgramView(OpenViews& open, const ProgramSources& sources, ProgramViews& siblings,
                         base::Address first)
    : View(open),
      sources_(sources),
      siblings_(siblings),
      lines_(sources.memory, sources.debug_info, sources.settings) {
  state_.top = first;
  siblings_.Enter(*this);
}

ProgramView::~ProgramView() {
  siblings_.Leave(*this);
}

int ProgramView::ScrollPosition() const {
  return siblings_.range().Position(state_.top);
}

bool ProgramView::Running() const {
  return sources_.activity.WaitingForBreak();
}

void ProgramView::Resize(int client_height, int line_height) {
  if (line_height <= 0) return;
  state_.lineCount = std::max(client_height + line_height / 2, 0) / line_height;
  Request();
}

void ProgramView::Scroll(ScrollCode code, int position) {
  if (FileIoActive() || Running()) return;
  if (code == ScrollCode::RedrawFromTop) redraw_ = true;
  scroll_ = code;
  thumb_ = position;
  Request();
}

void ProgramView::GoToAddress(base::Address address) {
  state_.top = address;
  RequestRedraw();
}

void ProgramView::RequestRedraw() {
  redraw_ = true;
  scroll_ = ScrollCode::RepaintOnly;
  Request();
}

void ProgramView::Refresh() {
  sources_.memory.Drop({lines_.top(), lines_.bottom() - lines_.top()});
  RequestRedraw();
}

bool ProgramView::Shows(base::Address address) const {
  const auto& lines = lines_.lines();
  return !lines.empty() && lines.front().address <= address && address <= lines.back().address;
}

void ProgramView::Redraw() {
  lines_.FillFrom(std::min(state_.top, siblings_.range().LastTop()), state_.lineCount);
}

bool ProgramView::Outdated(const base::Generations& before, const base::Generations& now) const {
  if (before.settings != now.settings || before.symbols != now.symbols) return true;
  const base::Address extent = lines_.bottom() > lines_.top() ? lines_.bottom() - lines_.top() : 0;
  return sources_.memory.WrittenAt(lines_.top(), extent) > drawn_from_;
}

void ProgramView::Pull(const base::Generations& before, const base::Generations& now) {
  lines_.SetReadsTarget(!FileIoActive());
  const base::Address pc = sources_.frame.PC;
  const bool stopped = siblings_.main() == this && before.stops != now.stops;
  if (stopped && !Shows(pc)) {
    state_.top = pc;
    redraw_ = true;
    scroll_ = ScrollCode::RepaintOnly;
  }
  if (Outdated(before, now)) {
    lines_.Forget();
    redraw_ = true;
  }
  if (redraw_ || lines_.lines().empty()) {
    Redraw();
  } else if (!ShowsSource()) {
    lines_.Resize(state_.lineCount);
  }
  lines_.RecomputeLines(scroll_, thumb_, siblings_.range());
  FitSource(scroll_);
  if (!lines_.lines().empty()) {
    // What has been read may have moved PC out of sight.
    if (stopped && !Shows(pc)) {
      state_.top = pc;
      Redraw();
      FitSource(ScrollCode::RedrawFromTop);
    }
    state_.top = lines_.top();
    redraw_ = false;
    scroll_ = ScrollCode::RepaintOnly;
    drawn_from_ = sources_.memory.generation();
  }
  MoveCursor(state_.cursorLine);
}

bool ProgramView::ShowsSource() const {
  return siblings_.shows_source() && sources_.source_files != nullptr &&
         sources_.debug_info.DebugInfoLoaded && !FileIoActive();
}

std::vector<std::string> ProgramView::SourceAbove(base::Address address) const {
  std::vector<std::string> above;
  for (const symbols::SourceLine& line : sources_.debug_info.LineTable.LinesAt(address)) {
    if (static_cast<int>(above.size()) >= std::min(kMostSourceRows, state_.lineCount - 1)) break;
    std::string text = symbols::LineName(line, sources_.debug_info.LineTable);
    const auto source = sources_.source_files->Text(line).value_or(std::string());
    const std::size_t first = source.find_first_not_of(" \t");
    if (first != std::string::npos) {
      text += "  " + ExpandSourceTabs(std::string_view(source).substr(first), 1, kDrawnCharacters);
    }
    above.push_back(std::move(text));
  }
  return above;
}

void ProgramView::FitSource(ScrollCode scrolled) {
  source_.clear();
  if (!ShowsSource()) return;
  const auto rows_of = [this](const CodeLine& line) {
    return static_cast<int>(SourceAbove(line.address).size()) + 1;
  };
  if (scrolled == ScrollCode::PageUp && lines_.top() != 0) {
    int room = state_.lineCount;
    std::size_t first = lines_.lines().size();
    while (first > 0 && (room -= rows_of(lines_.lines()[first - 1])) >= 0) --first;
    if (first > 0 && first < lines_.lines().size()) {
      lines_.FillFrom(lines_.lines()[first].address, state_.lineCount);
    }
  }
  lines_.Resize(state_.lineCount);
  int rows = 0;
  for (const CodeLine& line : lines_.lines()) {
    std::vector<std::string> above = SourceAbove(line.address);
    rows += static_cast<int>(above.size()) + 1;
    if (rows > state_.lineCount && !source_.empty()) break;
    source_.push_back(std::move(above));
  }
  lines_.Resize(static_cast<int>(source_.size()));
}

int ProgramView::RowOfLine(int line) const {
  int row = line;
  for (std::size_t above = 0; above < source_.size() && static_cast<int>(above) <= line; ++above) {
    row += static_cast<int>(source_[above].size());
  }
  return row;
}

std::optional<int> ProgramView::LineAtRow(int row) const {
  for (int line = 0; line < DrawableCount(); ++line) {
    if (RowOfLine(line) == row) return line;
  }
  return std::nullopt;
}

int ProgramView::DrawableCount() const {
  const auto& lines = lines_.lines();
  const auto beyond = std::find_if(lines.begin(), lines.end(), [this](const CodeLine& line) {
    return line.address > siblings_.range().end;
  });
  return static_cast<int>(beyond - lines.begin());
}

std::vector<ProgramLine> ProgramView::Lines() const {
  std::vector<ProgramLine> drawable;
  const int count = DrawableCount();
  for (int i = 0; i < count; ++i) {
    const CodeLine& line = lines_.lines()[static_cast<std::size_t>(i)];
    drawable.push_back({line.text, line.address, line.length, line.address == sources_.frame.PC,
                        i == state_.cursorLine, sources_.breakpoints.Has(line.address)});
    if (!source_.empty()) drawable.back().source = source_[static_cast<std::size_t>(i)];
  }
  return drawable;
}

void ProgramView::MoveCursor(int line) {
  state_.cursorLine = std::clamp(line, 0, std::max(DrawableCount() - 1, 0));
  Repaint();
}

std::optional<CodeLine> ProgramView::CursorLine() const {
  if (state_.cursorLine >= DrawableCount()) return std::nullopt;
  return lines_.lines()[static_cast<std::size_t>(state_.cursorLine)];
}

ClickMeaning ProgramView::HitTest(int x, int y, CellSize cell) const {
  const auto hit = y >= 0 ? LineAtRow(y / cell.height) : std::nullopt;
  if (!hit) return {};
  const int line = *hit;
  const base::Address address = lines_.lines()[static_cast<std::size_t>(line)].address;
  if (x < kAddressColumns * cell.width) {
    return {ClickMeaning::Kind::ToggleBreakpoint, line, address};
  }
  // The gap behind the address belongs to neither.
  if (x <= kHighlightColumn * cell.width) return {};
  return {ClickMeaning::Kind::MoveCursor, line, address};
}

void ProgramView::PlaceCursor(int row) {
  if (FileIoActive()) return;
  if (const auto line = LineAtRow(row)) MoveCursor(*line);
}

void ProgramView::Click(int x, int y, CellSize cell) {
  if (FileIoActive()) return;
  const ClickMeaning meaning = HitTest(x, y, cell);
  switch (meaning.kind) {
    case ClickMeaning::Kind::Nothing:
      return;
    case ClickMeaning::Kind::MoveCursor:
      MoveCursor(meaning.line);
      return;
    case ClickMeaning::Kind::ToggleBreakpoint:
      ToggleBreakpoint(meaning.address);
      return;
  }
}

Toggled ProgramView::ToggleBreakpoint(base::Address address) {
  return views::ToggleBreakpoint(address, {sources_.memory, sources_.breakpoints, sources_.activity,
                                           sources_.settings, sources_.ui});
}

}  // namespace brevant::views
