// SPDX-License-Identifier: MIT
#include "gui/command_dispatch.h"

#include "control/messages.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "gui/window_layout.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kStopFirst = "The target is running: press Break (F7) first.";
constexpr const char* kWaitFirst = "Memory is being written: wait or cancel.";

void Refuse(const CommandContext& context, const char* why) {
  context.session.ui.Beep();
  context.window.status().ShowNotice(why, NoticeEnds::WithTheState);
}

// Whether the command may be carried out now; the user has been told why not.
bool Allowed(const CommandContext& context, const workspace::CommandRow& command) {
  switch (workspace::Judge(command, context.window.Conditions())) {
    case workspace::Verdict::CarryOut:
      return true;
    case workspace::Verdict::Ignore:
      return false;
    case workspace::Verdict::StopFirst:
      Refuse(context, kStopFirst);
      return false;
    case workspace::Verdict::WaitFirst:
      Refuse(context, kWaitFirst);
      return false;
  }
  return false;
}

}  // namespace

template <typename Work>
void CommandDispatch::Enter(const Work& work) {
  const bool entered = context_.session.gate.Run([&] {
    context_.window.status().BeginCommand();
    work();
    const std::string problem = context_.session.debugger.macros.TakeProblem();
    if (!problem.empty()) context_.window.status().ShowNotice(problem);
    context_.window.UpdateViews();
  });
  if (entered) context_.window.Refresh();
}

void CommandDispatch::CarryOut(const std::function<void()>& work) {
  Enter(work);
}

void CommandDispatch::Send(int id) {
  Enter([this, id] { Carry(id); });
}

void CommandDispatch::LoadFile(const std::string& path) {
  Enter([&] {
    if (Allowed(context_, *workspace::FindCommand(commands::kLoadImage)))
      LoadImageFile(context_, path);
  });
}

void CommandDispatch::Carry(int id) {
  const workspace::CommandRow* const command = workspace::FindCommand(id);
  if (command == nullptr || !IsBuilt(id) || !Allowed(context_, *command)) return;
  if (const WindowKind* const kind = KindOpenedBy(id)) {
    const bool anew = context_.window.Children(*kind).empty();
    ChildWindow& child = context_.window.Open(*kind);
    child.setWindowTitle(kind->title_by_command);
    if (anew && kind->returns) ReturnToPlace(child, *kind, context_.session.settings);
  } else {
    const long before = context_.session.debugger.run_control.stops();
    FindAction(id)->run(context_);
    ExplainStopAfter(before);
  }
}

void CommandDispatch::ExplainStopAfter(long stops) {
  const control::RunControl& run = context_.session.debugger.run_control;
  if (run.stops() == stops) return;
  if (const auto message = control::StopMessage(*run.last_stop())) {
    context_.session.ui.ShowMessage(*message);
  }
}

}  // namespace brevant::gui
