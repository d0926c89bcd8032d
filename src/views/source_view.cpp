// SPDX-License-Identifier: MIT
#include "views/source_view.h"

#include <algorithm>
#include <filesystem>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "frames/source_line.h"
#include "symbols/places.h"
#include "views/messages.h"
#include "views/source_characters.h"

namespace brevant::views {
namespace {

namespace keys = base::keys;

constexpr int kLeastNumberColumns = 5;
constexpr int kFarthestLeft = 10000;  // characters

int TabSizeOf(int stored) {
  return stored >= 1 && stored <= SourceView::kMostTabSize ? stored : SourceView::kMostTabSize;
}

}  // namespace

SourceView::SourceView(OpenViews& open, const SourceSources& sources)
    : View(open), sources_(sources) {
  state_.matchCase = sources_.places.settings.Integer(keys::kMatchCase) != 0;
  state_.tabSize = TabSizeOf(sources_.places.settings.Integer(keys::kTabSize));
}

int SourceView::MarkColumn() const {
  const auto digits = static_cast<int>(std::to_string(state_.lineCount).size());
  return std::max(digits, kLeastNumberColumns);
}

void SourceView::Resize(int client_width, int client_height, CellSize cell) {
  state_.rows = std::max(client_height + cell.height / 2, 0) / cell.height;
  state_.columns = client_width / cell.width + 1;
  Request();
}

void SourceView::Pull(const base::Generations& before, const base::Generations& now) {
  if (!info().DebugInfoLoaded) {
    state_.loaded = false;
    state_.path.clear();
    state_.lineCount = state_.paintedRows = state_.top = state_.cursor = 0;
    lines_.clear();
    problem_.clear();
    newer_.clear();
    synchronised_ = false;
    return;
  }
  const base::Address pc = sources_.frame.PC;
  const bool stopped = before.stops != now.stops;
  const auto& stop = sources_.run_control.last_stop();
  const bool reset = stopped && stop && stop->reason == base::StopReason::Reset;
  if (!synchronised_ || before.symbols != now.symbols || reset) {
    Synchronise();
  } else if (stopped || pc != pc_) {
    ShowPcLine();
  }
  pc_ = pc;
  ReadRows();
  pc_line_ = PcLine();
}

std::optional<symbols::SourceLine> SourceView::PcLine() const {
  const symbols::LineTable& table = info().LineTable;
  const auto line = frames::LineAt(sources_.frame.PC, info());
  // A compiler's start-up code comes from an assembler source that it does not leave.
  const bool left_out = line && line->file < table.files().size() &&
                        LanguageOf(table.files()[line->file]) == SourceLanguage::Assembler &&
                        !sources_.files.Get(line->file).place.found;
  return left_out ? std::nullopt : line;
}

std::uint32_t SourceView::FirstFile() const {
  const auto count = static_cast<std::uint32_t>(info().LineTable.files().size());
  for (std::uint32_t file = 0; file < count; ++file) {
    if (sources_.files.Get(file).place.found) return file;
  }
  return 0;
}

void SourceView::Load(std::uint32_t file) {
  if (file != state_.currentFile) lines_.clear();
  state_.currentFile = file;
  const SourceFiles::File& found = sources_.files.Get(file);
  of_file_ = sources_.files.generation();
  state_.path = found.place.path;
  state_.loaded = found.why().empty();
  state_.lineCount = state_.loaded ? found.index.line_count() : 0;
  language_ = found.index.language();
  problem_ = state_.loaded ? std::vector<std::string>() : Problem(found);
  newer_ = state_.loaded ? NewerThanImage() : std::string();
  ShowTop(state_.top);
}

std::vector<std::string> SourceView::Problem(const SourceFiles::File& file) const {
  if (FileName().empty()) return {};
  if (file.place.found) return {base::Format(messages::kSourceNotRead, state_.path, file.why())};
  std::vector<std::string> lines{base::Format(messages::kSourceNotFound, FileName())};
  for (const auto& folder : symbols::FoldersLookedIn(info(), sources_.files.folders())) {
    lines.push_back("  " + folder);
  }
  lines.emplace_back(messages::kSourceFindIt);
  return lines;
}

std::string SourceView::NewerThanImage() const {
  const std::string image = sources_.image();
  const auto of_image = base::ModificationTime(image);
  const auto of_source = base::ModificationTime(state_.path);
  if (!of_image || !of_source || *of_source <= *of_image) return {};
  return base::Format(messages::kSourceNewer, std::string(base::LastPart(state_.path)),
                      std::string(base::LastPart(image)));
}

void SourceView::ReadRows() {
  // One that has changed meanwhile has other lines.
  const SourceFiles::File& file = sources_.files.Get(state_.currentFile);
  if (of_file_ != sources_.files.generation()) Load(state_.currentFile);
  const auto lines = file.index.Read(state_.top, state_.rows, state_.left + state_.columns);
  lines_.clear();
  lines_from_ = state_.top;
  if (lines) {
    lines_ = *lines;
  } else if (state_.loaded) {
    // It has changed just now.
    Request();
  }
  state_.paintedRows = static_cast<int>(lines_.size());
}

void SourceView::Synchronise() {
  synchronised_ = true;
  sources_.files.Forget();
  if (const auto line = PcLine()) {
    Load(line->file);
    ShowTop(static_cast<int>(line->line) - 1);
  } else {
    Load(FirstFile());
    ShowTop(0);
  }
}

bool SourceView::ShowPcLine() {
  const auto line = PcLine();
  if (!line) return false;
  if (!state_.loaded || line->file != state_.currentFile) Load(line->file);
  const auto number = static_cast<int>(line->line);
  if (number <= state_.top || number > state_.top + state_.rows) ShowTop(number - 1);
  Request();
  return true;
}

// The last line stays in sight: an empty window would look like an empty file.
void SourceView::ShowTop(int top) {
  state_.top = std::clamp(top, 0, std::max(state_.lineCount - 1, 0));
  state_.cursor = std::clamp(state_.cursor, 0, std::max(state_.lineCount - 1 - state_.top, 0));
  Request();
}

void SourceView::Scroll(ScrollCode code, int position) {
  const int top = state_.top;
  switch (code) {
    case ScrollCode::LineUp:
      ShowTop(top - 1);
      break;
    case ScrollCode::LineDown:
      if (top < state_.lineCount - 1) ShowTop(top + 1);
      break;
    case ScrollCode::PageUp:
      ShowTop(top - state_.rows);
      break;
    case ScrollCode::PageDown:
      ShowTop(top + state_.rows);
      break;
    case ScrollCode::ThumbTrack:
      ShowTop(std::min(position, state_.lineCount - 1));
      break;
    case ScrollCode::RedrawFromTop:
    case ScrollCode::RepaintOnly:
      return;
  }
  state_.searchLine = state_.top + state_.cursor;
}

void SourceView::ScrollSideways(int characters) {
  state_.left = std::clamp(state_.left + characters, 0, kFarthestLeft);
  Request();
}

void SourceView::MoveCursor(int row) {
  if (row < 0 || row >= state_.rows) {
    Scroll(row < 0 ? ScrollCode::LineUp : ScrollCode::LineDown);
    return;
  }
  if (state_.top + row >= state_.lineCount) return;
  state_.cursor = row;
  Repaint();
}

void SourceView::CheckFile() {
  if (info().DebugInfoLoaded != synchronised_) return Request();
  if (!synchronised_) return;
  const bool found = sources_.files.Get(state_.currentFile).place.found;
  if (!found && symbols::FindSource(info(), state_.currentFile, sources_.files.folders()).found) {
    return Refresh();
  }
  if (of_file_ != sources_.files.generation()) Request();
}

void SourceView::Refresh() {
  sources_.files.Forget();
  of_file_ = -1;
  Request();
}

std::optional<base::Address> SourceView::AddressOfLine(int number) const {
  const auto line = static_cast<std::uint32_t>(number);
  const auto first = info().LineTable.AddressForLine(line, state_.currentFile);
  const control::BreakpointTable& table = sources_.places.breakpoints;
  if (!first || table.Has(*first)) return first;
  // A line may have made code in several places.
  for (const control::Breakpoint& entry : table.entries()) {
    if (!entry.in_use) continue;
    const auto exact = info().LineTable.LineForExactAddress(entry.address);
    if (exact && exact->line == line && exact->file == state_.currentFile) return entry.address;
  }
  return first;
}

bool SourceView::HasBreakpoint(int number) const {
  const auto address = AddressOfLine(number);
  return address && sources_.places.breakpoints.Has(*address);
}

std::vector<SourceRow> SourceView::Rows() const {
  std::vector<SourceRow> rows;
  const int characters = state_.left + state_.columns;
  for (const SourceIndex::Line& line : lines_) {
    const auto row = static_cast<int>(rows.size());
    const int number = lines_from_ + row + 1;
    std::string text = ExpandSourceTabs(line.text, state_.tabSize, characters);
    std::vector<TextSpan> spans = ColourSpans(text, language_, line.begins_in_comment);
    rows.push_back({.number = number,
                    .text = std::move(text),
                    .spans = std::move(spans),
                    .is_pc = pc_line_ && pc_line_->file == state_.currentFile &&
                             pc_line_->line == static_cast<std::uint32_t>(number),
                    .is_cursor = row == state_.cursor,
                    .has_code = AddressOfLine(number).has_value(),
                    .has_breakpoint = HasBreakpoint(number)});
  }
  return rows;
}

std::string SourceView::Explain() const {
  if (!info().DebugInfoLoaded || FileName().empty()) return messages::kNoSourceLines;
  if (!state_.loaded) return {};
  const auto number = static_cast<std::uint32_t>(state_.top + state_.cursor + 1);
  const std::string name = symbols::LineName({number, state_.currentFile}, info().LineTable);
  const auto address = AddressOfLine(static_cast<int>(number));
  const std::string text = address ? base::Format("%s is at %04x", name, *address)
                                   : base::Format(messages::kNoCodeInLine, name);
  return newer_.empty() ? text : text + "; " + newer_;
}

void SourceView::Click(int x, int y, CellSize cell) {
  if (sources_.places.activity.FileIoActive()) return;
  if (y < 0 || y >= state_.rows * cell.height) return;
  const int row = y / cell.height;
  if (x > TextColumn() * cell.width) return MoveCursor(row);
  if (x >= MarkColumn() * cell.width || !state_.loaded) return;
  if (const auto address = AddressOfLine(state_.top + row + 1)) {
    views::ToggleBreakpoint(*address, sources_.places);
  }
}

std::optional<Toggled> SourceView::ToggleBreakpoint() {
  const auto address = state_.loaded ? AddressOfLine(state_.top + state_.cursor + 1) : std::nullopt;
  if (!address) return std::nullopt;
  return views::ToggleBreakpoint(*address, sources_.places);
}

std::optional<base::Address> SourceView::CursorAddress() const {
  if (!state_.loaded) return std::nullopt;
  return info().LineTable.AddressForLine(static_cast<std::uint32_t>(state_.top + state_.cursor + 1),
                                         state_.currentFile);
}

bool SourceView::GoToCode(base::Address address) {
  const auto line = info().LineTable.LineForExactAddress(address);
  if (!line) return false;
  if (line->file != state_.currentFile || !state_.loaded) Load(line->file);
  ShowTop(static_cast<int>(line->line) - 1);
  return true;
}

void SourceView::GoToLine(int number) {
  Show(std::clamp(number, 1, std::max(state_.lineCount, 1)) - 1);
  state_.searchLine = state_.top + state_.cursor;
}

void SourceView::OpenFile(std::uint32_t file) {
  state_.top = 0;
  state_.left = 0;
  Load(file);
}

std::string SourceView::FileName() const {
  const auto& files = info().LineTable.files();
  return state_.currentFile < files.size() ? files[state_.currentFile] : std::string();
}

FileUse SourceView::UseFile(const std::string& chosen) {
  const auto folder = symbols::FolderOfSource(chosen, FileName());
  if (!folder) return FileUse::OtherName;
  const std::string image = sources_.files.folders().image;
  if (!symbols::RememberSourceFolder(sources_.places.settings, image, *folder)) {
    return FileUse::NotStored;
  }
  Refresh();
  std::error_code error;
  const std::string& path = sources_.files.Get(state_.currentFile).place.path;
  return std::filesystem::equivalent(path, chosen, error) ? FileUse::Used : FileUse::OtherFound;
}

void SourceView::SetSearch(std::string_view text, bool match_case) {
  state_.searchText = text;
  state_.matchCase = match_case;
  state_.searchLine = state_.top + state_.cursor;
  sources_.places.settings.Store(keys::kMatchCase, long{match_case});
}

bool SourceView::Search() {
  if (!state_.loaded || state_.searchText.empty()) return false;
  const SourceFiles::File& file = sources_.files.Get(state_.currentFile);
  if (!file.why().empty()) {
    // It is gone, which is told in place of its lines.
    Request();
    return false;
  }
  const auto found = file.index.Find(state_.searchText, state_.searchLine, state_.matchCase);
  if (!found) {
    sources_.places.ui.ShowMessage(
        base::ToMessage(messages::kSourceTextNotFound, state_.searchText));
    state_.searchLine = 0;
    return true;
  }
  Show(*found);
  state_.searchLine = *found + 1;
  return true;
}

// The line, from 0, becomes the cursor's.
void SourceView::Show(int line) {
  const bool visible = line >= state_.top && line - state_.top < state_.paintedRows;
  state_.cursor = visible ? line - state_.top : 0;
  ShowTop(visible ? state_.top : line);
}

bool SourceView::SetTabSize(std::string_view text) {
  if (text.empty() || text.front() < '0' || text.front() > '9') return false;
  state_.tabSize = TabSizeOf(text.front() - '0');
  sources_.places.settings.Store(keys::kTabSize, long{state_.tabSize});
  Request();
  return true;
}

std::string SourceView::WordAt(int x, int y, CellSize cell) const {
  const int row = y / cell.height;
  const int column = x / cell.width - TextColumn() + state_.left;
  if (y < 0 || x < TextColumn() * cell.width || row >= static_cast<int>(lines_.size())) return {};
  const std::string text = ExpandSourceTabs(lines_[static_cast<std::size_t>(row)].text,
                                            state_.tabSize, state_.left + state_.columns);
  return WordAround(text, column);
}

}  // namespace brevant::views
