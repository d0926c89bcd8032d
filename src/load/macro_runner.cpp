// SPDX-License-Identifier: MIT
#include "load/macro_runner.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/file_names.h"
#include "base/files.h"
#include "base/normalised_text.h"
#include "base/text_format.h"
#include "load/macro_page.h"
#include "load/messages.h"

namespace brevant::load {
namespace {

constexpr std::string_view kTitle = "Running macro";
constexpr std::string_view kDefaultMacro = "brevant.mac";
constexpr std::string_view kDefaultOnDemand = "ferrodex.mac";
constexpr std::string_view kDefaultResetMacro = "RESET.MAC";

// A file of anything else may hold what a terminal obeys.
std::string Printable(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < ' ' || c == 0x7F; }, '.');
  return text;
}

}  // namespace

std::string QualifyMacroName(std::string_view name, std::string_view start_up_directory) {
  const bool has_folder =
      !base::DirectoryOf(name).empty() || std::filesystem::path(name).is_absolute();
  return has_folder ? std::string(name) : base::JoinPath(start_up_directory, name);
}

MacroRunner::MacroRunner(memory::Memory& memory, control::RegisterFrame& frame, StartAddress& start,
                         base::SettingsFile& settings, base::UserInterface& ui,
                         std::string start_up_directory)
    : memory_(memory),
      frame_(frame),
      start_(start),
      settings_(settings),
      ui_(ui),
      start_up_directory_(std::move(start_up_directory)) {}

bool MacroRunner::RunMacroFile(std::string& name) {
  start_.PcFromMacro = false;
  if (name.empty()) name = base::JoinPath(base::WorkingDirectory(), kDefaultMacro);
  const base::FileText file = base::ReadFile(name);
  if (!file.ok()) {
    problem_ = name + " cannot be read: " + file.error;
    ui_.ShowMessage(ToMessage(messages::kMacroNotFound));
    return false;
  }
  problem_.clear();
  std::string_view text = file.text;
  const auto length = static_cast<long>(text.size());
  bool goes_on = true;
  ui_.BeginProgress(kTitle, name, true);
  for (int number = 1; goes_on && !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    if (const auto command = ParseMacroLine(line)) {
      Carry(*command);
    } else if (const std::string said = base::NormaliseText(line);
               !said.empty() && problem_.empty()) {
      problem_ = base::Format("%s, line %d was passed over: \"%s\" is no macro command.", name,
                              number, Printable(said));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
    goes_on = ui_.UpdateProgress(name, length - static_cast<long>(text.size()), length);
  }
  ui_.EndProgress();
  if (!text.empty()) ui_.ShowMessage(ToMessage(messages::kMacroCancelled, name));
  return true;
}

void MacroRunner::Carry(const MacroCommand& command) {
  switch (command.action) {
    case MacroAction::SetPc:
      frame_.SetPC(command.address);
      start_.PcFromMacro = true;
      start_.MacroPc = command.address;
      break;
    case MacroAction::WriteByte:
      memory_.WriteByte(command.address, command.value);
      break;
    case MacroAction::WriteWord:
      memory_.WriteWord(command.address, command.value);
      break;
  }
}

bool MacroRunner::RunOnDemand(std::string name) {
  if (!RunMacroFile(name)) return false;
  settings_.Store(base::keys::kMacroFile, name);
  return true;
}

std::string MacroRunner::LastMacroFile() const {
  const auto& key = base::keys::kMacroFile;
  if (settings_.Has(key.section, key.key)) return settings_.String(key);
  return base::JoinPath(start_up_directory_, kDefaultOnDemand);
}

void MacroRunner::RunBeforeLoadMacro() {
  MacroPage wanted = MacroPage::Open(settings_);
  if (wanted.before_load) RunMacroFile(wanted.before_load_file);
}

void MacroRunner::RunResetMacro() {
  const MacroPage wanted = MacroPage::Open(settings_);
  if (!wanted.after_reset) return;
  const std::string_view chosen = wanted.after_reset_file;
  std::string name =
      QualifyMacroName(chosen.empty() ? kDefaultResetMacro : chosen, start_up_directory_);
  settings_.Store(base::keys::kResetMacroFile, name);
  RunMacroFile(name);
}

}  // namespace brevant::load
