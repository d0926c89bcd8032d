// SPDX-License-Identifier: MIT
// Commands of the popup menus of the watch window and of the variables window, and the
// configuration file that follows the program.
#include "base/files.h"
#include "control/program_context.h"
#include "gui/command_actions.h"
#include "gui/data_window.h"
#include "gui/edit_dialogs.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/program_window.h"
#include "gui/session.h"
#include "gui/variables_window.h"
#include "gui/watch_dialog.h"
#include "gui/watch_window.h"
#include "views/messages.h"
#include "views/watch_editor.h"
#include "views/watch_file.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kInMemoryOnly = "No program loaded yet: the list is kept in memory only.";
constexpr const char* kNotWritten = "%s cannot be written: the list is kept in memory only.";
constexpr const char* kPartNotEditable = "This part has no value of its own that can be changed.";
constexpr const char* kPartNotDeleted =
    "A part goes with its variable: go to that line to delete it from the list.";
constexpr int kMostTyped = 80;
constexpr const char* kLargerThanAsked =
    "%s is larger than what is watched of it: watch one of its parts, or change it in the "
    "variables window (Alt+V).";
constexpr const char* kNoList = "%s holds no watched variables.";
constexpr const char* kWatched = "%s is watched.";

bool IsActive(const CommandContext& context) {
  return dynamic_cast<WatchWindow*>(context.window.active_view()) != nullptr;
}

// Every change of the list goes to the file of the program at once.
void Keep(const CommandContext& context) {
  const Session& session = context.session;
  const std::string path = views::WatchFilePath(session.recent_files.current());
  if (path.empty()) {
    context.window.status().ShowNotice(kInMemoryOnly);
  } else if (!views::SaveWatchFile(path, session.watch.items())) {
    context.window.status().ShowNotice(base::Format(kNotWritten, path));
  }
}

std::optional<views::WatchItem> Ask(const CommandContext& context, const views::WatchForm& form) {
  Session& session = context.session;
  std::optional<views::WatchItem> item;
  session.gate.OpenDuring([&] {
    debugger::Debugger& debugger = session.debugger;
    const eval::Context program = control::ContextOf(debugger.memory, debugger.debug_info,
                                                     debugger.frame, eval::Reading::Sparing);
    const bool can_ask = debugger.MonitorListens() && !debugger.activity.FileIoActive();
    item = AskForWatch(&context.window, context.window.view_font(), form,
                       {debugger.debug_info, can_ask ? &program : nullptr}, session.ui);
  });
  return item;
}

void EditPart(const CommandContext& context, const views::WatchView& view) {
  const views::ValueRow* const part = view.EditablePart();
  if (part == nullptr) return context.window.status().ShowNotice(kPartNotEditable);
  const EditRequest request{
      .title = "EDIT: " + part->path.substr(1), .text = part->text, .max_length = kMostTyped};
  AskForText(&context.window, context.window.view_font(), request,
             [&](std::string_view typed) { return view.AssignPart(typed); });
}

void Edit(const CommandContext& context) {
  Session& session = context.session;
  const views::WatchItem* const item = session.watch.Highlighted();
  auto* const window = dynamic_cast<WatchWindow*>(context.window.active_view());
  if (window == nullptr || item == nullptr) return;
  if (session.watch.HighlightedPlace()->below > 0) return EditPart(context, window->view());
  if (item->is_larger) {
    context.window.status().ShowNotice(base::Format(kLargerThanAsked, item->name));
    return;
  }
  const bool is_string = item->IsString();
  views::WatchEditor editor(*item, session.debugger.memory, session.ui);
  if (!editor.Open()) return;
  // A byte of a string is a character of Latin-1.
  const std::string text = editor.InitialText();
  const EditRequest request{.title = editor.Title(),
                            .text = Bytes(QString::fromLatin1(text.data(), std::ssize(text))),
                            .max_length = editor.max_length()};
  AskForText(&context.window, context.window.view_font(), request, [&](std::string_view typed) {
    const QString characters = Text(typed);
    const QByteArray bytes = characters.toLatin1();
    if (QString::fromLatin1(bytes) != characters) return std::string(views::messages::kOneByteEach);
    const std::string_view accepted(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return editor.Accept(accepted) || is_string ? std::string()
                                                : std::string(views::messages::kExpectHex);
  });
}

bool TellWhenFull(Session& session) {
  if (session.watch.full()) session.ui.ShowMessage(base::ToMessage(views::messages::kWatchFull));
  return session.watch.full();
}

void Add(const CommandContext& context) {
  Session& session = context.session;
  if (!IsActive(context) || TellWhenFull(session)) return;
  const auto item = Ask(context, views::WatchForm::ToAdd());
  if (item && session.watch.Insert(*item)) Keep(context);
}

void Modify(const CommandContext& context) {
  views::WatchTable& table = context.session.watch;
  if (!IsActive(context) || table.Highlighted() == nullptr) return;
  const std::uint8_t reserved = table.Highlighted()->reserved;
  auto item = Ask(context, views::WatchForm::ToModify(*table.Highlighted()));
  if (!item) return;
  item->reserved = reserved;
  table.Replace(std::move(*item));
  Keep(context);
}

template <void (views::WatchTable::*kChange)()>
void Change(const CommandContext& context) {
  views::WatchTable& table = context.session.watch;
  if (!IsActive(context) || table.count() == 0) return;
  (table.*kChange)();
  Keep(context);
}

void Delete(const CommandContext& context) {
  const auto place = context.session.watch.HighlightedPlace();
  if (place && place->below > 0) return context.window.status().ShowNotice(kPartNotDeleted);
  Change<&views::WatchTable::Delete>(context);
}

std::optional<std::string> Choose(const CommandContext& context, workspace::Chooser chooser) {
  const Session& session = context.session;
  return ChooseFile(
      &context.window, context.session.ui,
      workspace::PrepareChooser(chooser, views::WatchFilePath(session.recent_files.current()),
                                session.debugger.debug_info.tool_chain, base::WorkingDirectory()));
}

void OpenConfig(const CommandContext& context) {
  if (!IsActive(context)) return;
  const auto path = Choose(context, workspace::Chooser::WatchOpen);
  if (!path) return;
  Session& session = context.session;
  views::WatchFile file = views::LoadWatchFile(*path, session.debugger.debug_info);
  if (!file.problem.empty()) {
    session.ui.ShowMessage(base::ToMessage(views::messages::kWatchNotLoaded, file.problem));
    return;
  }
  if (file.items.empty()) context.window.status().ShowNotice(base::Format(kNoList, *path));
  session.watch.Assign(std::move(file.items));
}

void SaveConfig(const CommandContext& context) {
  if (!IsActive(context)) return;
  const auto path = Choose(context, workspace::Chooser::WatchSave);
  if (!path || views::SaveWatchFile(*path, context.session.watch.items())) return;
  context.session.ui.ShowMessage(base::ToMessage(views::messages::kWatchNotSaved, *path));
}

// What lies under the cursor of a program or data window.
std::optional<views::WatchItem> ItemUnderCursor(const CommandContext& context) {
  const symbols::DebugInfo& info = context.session.debugger.debug_info;
  TextView* const view = context.window.active_view();
  views::WatchForm form = views::WatchForm::ToAdd();
  base::Address address = 0;
  if (auto* const data = dynamic_cast<DataWindow*>(view)) {
    address = data->view().CursorCellAddress();
    const bool bytes = data->view().settings().unit == views::DataUnit::Bytes;
    form.width = bytes ? views::watch_codes::kByte : views::watch_codes::kWord;
  } else if (auto* const program = dynamic_cast<ProgramWindow*>(view)) {
    const auto line = program->view().CursorLine();
    if (!line) return std::nullopt;
    address = line->address;
  } else {
    return std::nullopt;
  }
  form.address = base::Format("%x", address);
  form.symbol = std::string(info.SymbolTable.FindSymbolName(address).value_or(""));
  return form.Item(info);
}

void AddToWatch(const CommandContext& context) {
  Session& session = context.session;
  const auto item = ItemUnderCursor(context);
  if (!item || TellWhenFull(session)) return;
  if (context.window.Children(kWatchKind).empty()) {
    // Opening the window starts a new list; this is to be added to the one that is there.
    std::vector<views::WatchItem> items = session.watch.items();
    context.window.Open(kWatchKind);
    session.watch.Assign(std::move(items));
  }
  session.watch.Insert(*item);
  context.window.status().ShowNotice(base::Format(kWatched, item->name));
  Keep(context);
}

void ToggleAsC(const CommandContext& context) {
  auto* const window = dynamic_cast<WatchWindow*>(context.window.active_view());
  if (window == nullptr) return;
  Session& session = context.session;
  const bool wanted = !window->view().as_c();
  window->view().ShowAsC(wanted);
  if (session.settings.Store(base::keys::kWatchAsC, wanted ? 1L : 0L)) return;
  session.ui.ShowMessage(
      base::ToMessage(messages::kSettingsNotStored, session.settings.path().string()));
}

void EditVariable(const CommandContext& context) {
  auto* const window = dynamic_cast<VariablesWindow*>(context.window.active_view());
  if (window != nullptr) window->EditValue();
}

constexpr CommandAction kActions[] = {
    {commands::kWatchEdit, Edit},
    {commands::kWatchAdd, Add},
    {commands::kWatchModify, Modify},
    {commands::kWatchMoveUp, Change<&views::WatchTable::MoveUp>},
    {commands::kWatchMoveDown, Change<&views::WatchTable::MoveDown>},
    {commands::kWatchDelete, Delete},
    {commands::kWatchOpen, OpenConfig},
    {commands::kWatchSave, SaveConfig},
    {commands::kAddToWatch, AddToWatch},
    {commands::kWatchAsC, ToggleAsC},
    {commands::kVariablesEdit, EditVariable},
};

}  // namespace

std::span<const CommandAction> WatchActions() {
  return kActions;
}

void LoadWatchList(const CommandContext& context, const std::string& image_path) {
  Session& session = context.session;
  views::WatchFile file =
      views::LoadWatchFile(views::WatchFilePath(image_path), session.debugger.debug_info);
  if (!file.problem.empty()) context.window.status().ShowNotice(file.problem);
  session.watch.Assign(std::move(file.items));
}

}  // namespace brevant::gui
