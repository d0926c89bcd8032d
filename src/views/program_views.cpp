// SPDX-License-Identifier: MIT
#include "views/program_views.h"

namespace brevant::views {

ProgramView& ProgramViews::Open(base::Address first) {
  views_.push_back(std::make_unique<ProgramView>(sources_, conditions_, first));
  main_ = views_.back().get();
  return *main_;
}

void ProgramViews::Close(const ProgramView& view) {
  const bool was_main = main_ == &view;
  std::erase_if(views_, [&view](const auto& open) { return open.get() == &view; });
  if (was_main) main_ = views_.empty() ? nullptr : views_.front().get();
}

void ProgramViews::Activate(ProgramView& view) {
  if (main_ == &view) return;
  main_ = &view;
  view.RequestRedraw();
}

void ProgramViews::RefreshProgramWindows() {
  for (const auto& view : views_) view->RequestRedraw();
}

void ProgramViews::RepaintProgramWindows() {
  for (const auto& view : views_) view->RequestRepaint();
}

void ProgramViews::ShowPc() {
  if (main_ == nullptr) return;
  // The others show where PC is too, if they can.
  RepaintProgramWindows();
  main_->ShowPc();
}

void ProgramViews::SetRange(const ScrollRange& range) {
  conditions_.range = range;
  RefreshProgramWindows();
}

void ProgramViews::ReadRange(const base::SettingsFile& settings) {
  SetRange(ProgramScrollRange(settings.String(base::keys::kProgramRange)));
}

void ProgramViews::SetFileIoActive(bool active) {
  conditions_.fileIoActive = active;
  RefreshProgramWindows();
}

}  // namespace brevant::views
