// SPDX-License-Identifier: MIT
// Texts that people type, paste and keep in files. The first byte chooses who reads it. What is
// read from a file and written again is read alike.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "base/settings_keys.h"
#include "cli/arguments.h"
#include "cli/command_table.h"
#include "cli/command_words.h"
#include "control/number_file.h"
#include "frontend/typed_numbers.h"
#include "fuzz/engine.h"
#include "guide/topics.h"
#include "link/replay_target.h"
#include "views/clipboard_text.h"
#include "views/watch_file.h"

using namespace brevant;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// A file of this process in memory, where there is such a folder.
std::string FileWith(std::string_view text) {
  static const std::string path = (std::filesystem::exists("/dev/shm") ? "/dev/shm/" : "/tmp/") +
                                  std::string("brevant_fuzz_") + std::to_string(getpid()) + ".ini";
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
  return path;
}

void Settings(std::string_view text) {
  base::SettingsFile settings(FileWith(text));
  for (const base::SettingsKey& row : base::AllSettingsKeys()) {
    settings.Integer(row);
    settings.String(row);
  }
  const std::string before = settings.String(base::keys::kPort);
  Require(settings.Store(base::keys::kTabSize, 5L));
  Require(settings.Integer(base::keys::kTabSize) == 5);
  Require(settings.String(base::keys::kPort) == before);
}

void WatchList(std::string_view text) {
  const std::string path = FileWith(text);
  const views::WatchFile file = views::LoadWatchFile(path, {});
  Require(file.items.size() <= views::WatchTable::kMost);
  Require(views::SaveWatchFile(path, file.items));
  const views::WatchFile again = views::LoadWatchFile(path, {});
  Require(again.items.size() == file.items.size());
  for (std::size_t n = 0; n < file.items.size(); ++n) {
    Require(again.items[n].address == file.items[n].address);
    Require(again.items[n].display == file.items[n].display);
  }
}

void Clipboard(std::string_view text) {
  for (const auto ends : {views::LineEnds::TwoCharacters, views::LineEnds::LineFeeds}) {
    const views::ClipboardWords words = views::ParseClipboardText(text, ends);
    Require(words.bytes.size() % 2 == 0);
    const auto again = views::ParseClipboardText(views::ClipboardText(words.bytes),
                                                 views::LineEnds::TwoCharacters);
    Require(!again.wrong_line && again.bytes == words.bytes);
  }
}

void Typed(std::string_view text) {
  cli::SplitWords(text);
  Require(frontend::ParseAddress(text).value <= base::kLastAddress);
  Require(frontend::ParseHexNumber(text, 0xFF, "byte").value <= 0xFF);
  Require(frontend::ParseCount(text, 100).value <= 100);
  control::ParseNumberLine(text);
}

void Numbers(std::string_view text) {
  control::NumberInput input;
  Require(input.Open(FileWith(text)).empty());
  while (input.Next() == control::NumberInput::Found::Number) continue;
}

void Page(std::string_view text) {
  guide::ParseTopic({"page.md", text});
}

// Lines of a script for the console, up to where they would act.
void Script(std::string_view text) {
  const symbols::DebugInfo none;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const auto words = cli::SplitWords(line);
    if (!words.ok() || words.value.empty()) continue;
    const auto command = cli::FindCommand(words.value.front());
    if (!command) continue;
    cli::ParseArguments(command->name, command->arguments, std::span(words.value).subspan(1), none);
  }
}

// A recording played back: whatever it says, the engine comes to an end with it.
void Replay(std::string_view text) {
  link::ReplayTarget target(link::ParseRecording(text), "a file");
  Engine engine(target, target);
  if (!debugger::IsConnected(engine.debugger.Start())) return;
  engine.debugger.run_control.StepCommand(control::Calls::Follow);
  engine.debugger.run_control.Stop();
}

constexpr void (*kReaders[])(std::string_view) = {Settings, WatchList, Clipboard, Typed,
                                                  Numbers,  Page,      Script,    Replay};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  kReaders[data[0] % std::size(kReaders)]({reinterpret_cast<const char*>(data) + 1, size - 1});
  return 0;
}
