// SPDX-License-Identifier: MIT
#include "symbols/sdcc_lines.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace brevant::symbols {
namespace {

class LineBuilder {
 public:
  LineBuilder(SdccLineRecords records, SdccSources& sources, ParsedProgram& program)
      : records_(std::move(records)), sources_(sources), program_(program) {
    for (const auto& line : records_.assembler_lines)
      module_at_.try_emplace(line.address, line.name);
  }
  void Build();

 private:
  std::uint32_t FileIndex(std::string path);
  std::string_view ModuleAt(base::Address address) const;
  void DropClosingLine(Function& function);
  void DropLinesWithoutCode();
  void AddListedLines();
  void AddCLines();
  void AddFunctionStarts();
  void AddAssemblerLines();
  void OrderEntries();
  bool InsideC(base::Address address) const;

  SdccLineRecords records_;
  SdccSources& sources_;
  ParsedProgram& program_;
  std::map<std::string, std::uint32_t> file_indexes_;
  // Each instruction is a line of its module's assembler source.
  std::unordered_map<base::Address, std::string_view> module_at_;
  std::set<std::string_view> listed_modules_;  // those with a listing of this build
  std::vector<Function> c_functions_;          // ascending; those with lines of C
};

std::uint32_t LineBuilder::FileIndex(std::string path) {
  const auto next = static_cast<std::uint32_t>(program_.files.size());
  const auto [place, is_new] = file_indexes_.try_emplace(path, next);
  if (is_new) program_.files.push_back(std::move(path));
  return place->second;
}

// Empty where no instruction is known.
std::string_view LineBuilder::ModuleAt(base::Address address) const {
  const auto found = module_at_.find(address);
  return found == module_at_.end() ? std::string_view() : found->second;
}

// A function without a return (__naked) is marked as ending where the next one starts, and so is
// its closing line: the lowest one of its file there.
void LineBuilder::DropClosingLine(Function& function) {
  std::vector<SdccLineRecords::Line>& lines = records_.c_lines;
  const auto own = std::ranges::find(lines, function.first, &SdccLineRecords::Line::address);
  if (own == lines.end()) return;
  const std::string file = own->name;
  std::uint32_t closing = 0;
  for (const auto& line : lines) {
    const bool candidate = line.address == function.last && line.name == file;
    if (candidate && (closing == 0 || line.line < closing)) closing = line.line;
  }
  std::erase_if(lines, [&](const SdccLineRecords::Line& line) {
    return line.address == function.last && line.name == file && line.line == closing;
  });
  --function.last;
}

void LineBuilder::DropLinesWithoutCode() {
  std::set<base::Address> starts;
  for (const auto& function : records_.functions) starts.insert(function.first);
  for (auto& function : records_.functions) {
    if (function.module.empty()) function.module = ModuleAt(function.first);
    const bool beyond =
        starts.contains(function.last) || ModuleAt(function.last) != ModuleAt(function.first);
    if (beyond && function.last > function.first) DropClosingLine(function);
  }
}

void LineBuilder::AddListedLines() {
  std::set<std::string_view> modules;
  for (const auto& line : records_.assembler_lines) modules.insert(line.name);
  for (const std::string_view module : modules) {
    const SdccListing* listing = ListingOfBuild(module, records_, sources_);
    if (listing == nullptr) continue;
    listed_modules_.insert(module);
    std::vector<std::uint32_t> files;
    for (const std::string& path : listing->paths) {
      files.push_back(FileIndex(sources_.ListedSource(path)));
    }
    for (const auto& line : listing->c_lines) {
      program_.lines.push_back({line.address, line.line, files[line.path]});
    }
  }
}

void LineBuilder::AddCLines() {
  // The module tells files of the same name apart.
  std::map<std::string_view, std::set<std::string_view>> modules_of_name;
  for (const auto& line : records_.c_lines) {
    modules_of_name[line.name].insert(ModuleAt(line.address));
  }
  // A listing has no second comment where the same line goes on behind a jump, as at the end of a
  // function on one line.
  std::set<base::Address> listed;
  for (const LineEntry& entry : program_.lines) listed.insert(entry.address);

  std::map<std::pair<std::string_view, std::string_view>, std::uint32_t> known;
  for (const auto& line : records_.c_lines) {
    const std::pair key{std::string_view(line.name), ModuleAt(line.address)};
    if (listed.contains(line.address)) continue;
    auto found = known.find(key);
    if (found == known.end()) {
      const bool ambiguous =
          modules_of_name[line.name].size() > 1 || listed_modules_.contains(key.second);
      const auto index = FileIndex(sources_.CSource(key.first, key.second, ambiguous));
      found = known.emplace(key, index).first;
    }
    program_.lines.push_back({line.address, line.line, found->second});
  }
}

void LineBuilder::AddFunctionStarts() {
  std::ranges::stable_sort(program_.lines, {}, &LineEntry::address);
  std::ranges::sort(records_.functions, {}, &Function::first);
  std::vector<LineEntry> starts;
  for (const auto& function : records_.functions) {
    const auto inside =
        std::ranges::lower_bound(program_.lines, function.first, {}, &LineEntry::address);
    if (inside == program_.lines.end() || inside->address > function.last) continue;
    c_functions_.push_back(function);
    if (inside->address == function.first) continue;
    starts.push_back({function.first, inside->line, inside->file});
  }
  program_.lines.insert(program_.lines.end(), starts.begin(), starts.end());
}

bool LineBuilder::InsideC(base::Address address) const {
  const auto after = std::ranges::upper_bound(c_functions_, address, {}, &Function::first);
  return after != c_functions_.begin() && address <= std::prev(after)->last;
}

void LineBuilder::AddAssemblerLines() {
  std::set<base::Address> has_c;
  for (const LineEntry& entry : program_.lines) has_c.insert(entry.address);
  std::unordered_map<std::string_view, std::uint32_t> files;
  for (const auto& line : records_.assembler_lines) {
    if (InsideC(line.address) || has_c.contains(line.address)) continue;
    auto found = files.find(line.name);
    if (found == files.end()) {
      const auto index = FileIndex(sources_.AssemblerSource(line.name));
      found = files.emplace(line.name, index).first;
    }
    program_.lines.push_back({line.address, line.line, found->second});
  }
}

void LineBuilder::OrderEntries() {
  std::vector<LineEntry>& lines = program_.lines;
  std::ranges::stable_sort(lines, {}, &LineEntry::address);
  const auto same = [](const LineEntry& a, const LineEntry& b) {
    return a.address == b.address && a.line == b.line && a.file == b.file;
  };
  lines.erase(std::unique(lines.begin(), lines.end(), same), lines.end());
  // The lookup for a PC takes the second of several lines at one address; the last one is what runs
  // there, so it stands in both places.
  std::vector<LineEntry> ordered;
  ordered.reserve(lines.size());
  for (auto group = lines.begin(); group != lines.end();) {
    const auto end = std::find_if(group, lines.end(), [&](const LineEntry& entry) {
      return entry.address != group->address;
    });
    ordered.push_back(*group);
    if (end - group > 2) ordered.push_back(*std::prev(end));
    ordered.insert(ordered.end(), std::next(group), end);
    group = end;
  }
  lines = std::move(ordered);
}

void LineBuilder::Build() {
  DropLinesWithoutCode();
  AddListedLines();
  AddCLines();
  AddFunctionStarts();
  AddAssemblerLines();
  OrderEntries();
  program_.functions = std::move(records_.functions);
}

}  // namespace

const SdccListing* ListingOfBuild(std::string_view module, const SdccLineRecords& records,
                                  SdccSources& sources) {
  const SdccListing* listing = sources.Listing(module);
  if (listing == nullptr) return nullptr;
  const bool agrees =
      std::ranges::all_of(records.assembler_lines, [&](const SdccLineRecords::Line& line) {
        if (line.name != module) return true;
        const auto found = listing->instructions.find(line.address);
        return found != listing->instructions.end() && found->second == line.line;
      });
  return agrees ? listing : nullptr;
}

void BuildSdccLines(SdccLineRecords records, SdccSources& sources, ParsedProgram& program) {
  LineBuilder(std::move(records), sources, program).Build();
}

}  // namespace brevant::symbols
