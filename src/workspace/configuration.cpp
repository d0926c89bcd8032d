// SPDX-License-Identifier: MIT
#include "workspace/configuration.h"

#include "symbols/importers.h"
#include "workspace/messages.h"

namespace brevant::workspace {
namespace {

namespace keys = base::keys;

std::string NameOf(symbols::ToolChain tool_chain) {
  const symbols::ToolChainRow* const row = symbols::FindToolChain(tool_chain);
  return std::string(row == nullptr ? "none" : row->display_name);
}

}  // namespace

void CompilerPage::Choose(symbols::ToolChain tool_chain) {
  selected_ = tool_chain;
  chosen_ = true;
}

std::string CompilerPage::InForceText() const {
  return "In force: " + NameOf(in_force_);
}

bool CompilerPage::Commit(base::SettingsFile& settings, base::UserInterface& ui) {
  if (!chosen_ && in_force_ != selected_) {
    const std::string opened = NameOf(selected_);
    const base::Message question =
        base::ToMessage(messages::kChangeToolChain, opened, NameOf(in_force_), opened);
    if (ui.ShowMessage(question) != base::Answer::Yes) return true;
  }
  in_force_ = selected_;
  return settings.Store(keys::kCompiler, static_cast<long>(selected_));
}

MiscPage MiscPage::Open(const base::SettingsFile& settings) {
  return {settings.Integer(keys::kHardwareBreak) == 1};
}

bool MiscPage::Commit(base::SettingsFile& settings) const {
  return settings.Store(keys::kHardwareBreak, hardware_breakpoints ? 1L : 0L);
}

FontPage FontPage::Open(const base::SettingsFile& settings) {
  return {DecodeViewFont(settings.Integer(keys::kFont))};
}

bool FontPage::Commit(base::SettingsFile& settings) const {
  return settings.Store(keys::kFont, long{EncodeViewFont(font)});
}

std::string IntrolDialog::InitialText(const base::SettingsFile& settings) {
  return settings.String(keys::kIntrolLibDir);
}

bool IntrolDialog::Commit(base::SettingsFile& settings, std::string_view directory) {
  return settings.Store(keys::kIntrolLibDir, directory.substr(0, kMaxLength));
}

std::string SymbolTableForm::InitialText() const {
  return settings_.String(keys::kSymbolTableStart);
}

bool SymbolTableForm::Accept(std::string_view text) {
  if (text.empty()) {
    ui_.Beep();
    return false;
  }
  stored_ = settings_.Store(keys::kSymbolTableStart, text.substr(0, kMaxLength));
  return true;
}

}  // namespace brevant::workspace
