// SPDX-License-Identifier: MIT
#include "symbols/sdcc_sources.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/file_names.h"
#include "base/files.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

namespace fs = std::filesystem;

// How far above the image's folder the compiler may have been started.
constexpr int kParents = 3;

std::string Spelt(std::string_view name) {
  std::string spelt(name);
  for (char& c : spelt) {
    const bool kept = IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_';
    if (!kept) c = '_';
  }
  return spelt;
}

std::string LastPart(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

// The path of a listing's comment "   12 ;src/main.c:34: text"; empty when the line is none.
std::string_view PathOfComment(std::string_view line) {
  const std::size_t start = line.find(';');
  if (start == std::string_view::npos) return {};
  const std::string_view comment = line.substr(start + 1);
  for (std::size_t colon = comment.find(':'); colon != std::string_view::npos;
       colon = comment.find(':', colon + 1)) {
    const std::size_t digits_end = comment.find_first_not_of("0123456789", colon + 1);
    if (digits_end == std::string_view::npos || digits_end == colon + 1) continue;
    if (comment[digits_end] == ':') return comment.substr(0, colon);
  }
  return {};
}

}  // namespace

SdccSources::SdccSources(const std::string& image_directory)
    : has_directory_(true), directory_(image_directory) {
  std::error_code error;
  const fs::path directory = directory_.empty() ? fs::path(".") : fs::path(directory_);
  for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    // A file that is spelt just so comes before one that only reads like it.
    if (Spelt(name) == name) {
      by_name_[name] = name;
    } else {
      by_name_.try_emplace(Spelt(name), name);
    }
  }
}

const std::vector<std::string>& SdccSources::ListedPaths(std::string_view module) {
  const auto [place, is_new] = listed_.try_emplace(std::string(module));
  const auto file = by_name_.find(Spelt(module) + ".rst");
  if (!is_new || file == by_name_.end()) return place->second;
  const base::FileText listing = base::ReadFile(base::JoinPath(directory_, file->second));
  std::vector<std::string>& paths = place->second;
  LineReader reader(listing.text);
  while (const auto line = reader.Next()) {
    const std::string_view path = PathOfComment(*line);
    if (!path.empty() && std::ranges::find(paths, path) == paths.end()) paths.emplace_back(path);
  }
  return paths;
}

std::string SdccSources::AtOrAbove(const fs::path& path) const {
  fs::path above;
  for (int i = 0; i <= kParents; ++i, above /= "..") {
    const fs::path candidate = (above / path).lexically_normal();
    std::error_code error;
    if (fs::is_regular_file(fs::path(directory_) / candidate, error)) {
      return candidate.generic_string();
    }
  }
  return {};
}

std::string SdccSources::FromListing(std::string_view name, std::string_view module) {
  for (const std::string& listed : ListedPaths(module)) {
    if (Spelt(LastPart(listed)) != name) continue;
    const fs::path path(listed);
    if (path.is_absolute()) continue;
    std::string found = AtOrAbove(path);
    if (!found.empty()) return found;
  }
  return {};
}

std::string SdccSources::CSource(std::string_view name, std::string_view module, bool ambiguous) {
  const auto beside = by_name_.find(name);
  if (beside != by_name_.end() && !ambiguous) return beside->second;
  std::string listed = FromListing(name, module);
  if (!listed.empty()) return listed;
  return beside != by_name_.end() ? beside->second : std::string(name);
}

std::string SdccSources::AssemblerSource(std::string_view module) const {
  for (const char* extension : {".asm", ".s", ".S", ".src"}) {
    const auto file = by_name_.find(Spelt(module) + extension);
    if (file != by_name_.end()) return file->second;
  }
  const std::string name = std::string(module) + ".asm";
  const std::string above = has_directory_ ? AtOrAbove(name) : std::string();
  return above.empty() ? name : above;
}

}  // namespace brevant::symbols
