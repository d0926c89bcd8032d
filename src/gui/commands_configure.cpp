// SPDX-License-Identifier: MIT
// Commands of the Configure menu.
#include <QMdiArea>

#include "base/files.h"
#include "gui/command_actions.h"
#include "gui/configure_dialog.h"
#include "gui/edit_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "gui/window_layout.h"
#include "views/messages.h"
#include "views/scroll_range.h"
#include "workspace/command_rows.h"
#include "workspace/configuration.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kBreakpointsCleared =
    "The breakpoints were cleared. Loading the image again offers them.";
constexpr const char* kEmptyString = "Type the line that the symbols of a listing follow.";

// Both states of a checked menu item as the settings keep them.
constexpr int kChecked = 8;

void TellNotStored(Session& session) {
  session.ui.ShowMessage(
      base::ToMessage(messages::kSettingsNotStored, session.settings.path().string()));
}

void ToggleFlag(const CommandContext& context, const base::SettingsKey& key, int command) {
  Session& session = context.session;
  const int toggled = session.settings.Integer(key) ^ kChecked;
  if (!session.settings.Store(key, long{toggled})) TellNotStored(session);
  context.window.menus().SetChecked(command, session.settings.Integer(key) > 0);
}

void ToggleRunToMain(const CommandContext& context) {
  ToggleFlag(context, base::keys::kRunToMain, commands::kRunToMain);
}

void ToggleSaveOnExit(const CommandContext& context) {
  ToggleFlag(context, base::keys::kSaveOnExit, commands::kSaveOnExit);
}

// Nothing when the dialog was cancelled.
template <typename Form>
auto AskForScrollRange(const CommandContext& context, Form form) {
  Session& session = context.session;
  const EditRequest request{.title = Form::kTitle,
                            .name = "PROGRANGE",
                            .label = Form::kLabel,
                            .text = form.InitialText(),
                            .max_length = Form::kMaxLength};
  decltype(form.Accept("")) range;
  session.gate.OpenDuring([&] {
    AskForText(&context.window, context.window.view_font(), request, [&](std::string_view text) {
      range = form.Accept(text);
      return range ? std::string() : views::messages::kExpectHex;
    });
  });
  if (range && !form.stored()) TellNotStored(session);
  return range;
}

void SetProgramRange(const CommandContext& context) {
  Session& session = context.session;
  const auto range =
      AskForScrollRange(context, views::ProgramRangeForm(session.settings, session.ui));
  if (range) session.program_views.SetRange(*range);
}

void SetDataRange(const CommandContext& context) {
  Session& session = context.session;
  views::DataSettings wanted = session.data_settings();
  const auto range =
      AskForScrollRange(context, views::DataRangeForm(wanted.range, session.settings, session.ui));
  if (!range) return;
  wanted.range = *range;
  session.SetDataSettings(wanted);
}

void Configure(const CommandContext& context) {
  Session& session = context.session;
  const int font = session.settings.Integer(base::keys::kFont);
  const bool had_breakpoints = session.debugger.breakpoints.count() > 0;
  bool stored = true;
  session.gate.OpenDuring([&] {
    stored = ShowConfiguration({&context.window, session.settings, session.ui,
                                session.debugger.debug_info.tool_chain, base::WorkingDirectory()});
  });
  if (!stored) TellNotStored(session);
  session.ui.SetBusyCursor(true);
  session.debugger.Reconfigure();
  session.ui.SetBusyCursor(false);
  // They are forgotten, but not those that the image had.
  session.KeepRememberedBreakpoints();
  if (had_breakpoints) context.window.status().ShowNotice(kBreakpointsCleared);
  if (session.settings.Integer(base::keys::kFont) != font) context.window.ApplyFont();
}

void SetSymbolTableStart(const CommandContext& context) {
  Session& session = context.session;
  workspace::SymbolTableForm form(session.settings, session.ui);
  const EditRequest request{.title = "Symbol table",
                            .name = workspace::SymbolTableForm::kTemplate,
                            .label = workspace::SymbolTableForm::kText,
                            .text = form.InitialText(),
                            .max_length = workspace::SymbolTableForm::kMaxLength};
  bool accepted = false;
  session.gate.OpenDuring([&] {
    accepted = AskForText(&context.window, context.window.view_font(), request,
                          [&](std::string_view text) -> std::string {
                            return form.Accept(text) ? "" : kEmptyString;
                          });
  });
  if (accepted && !form.stored()) TellNotStored(session);
}

void SaveSettings(const CommandContext& context) {
  if (!StoreLayout(context.window, context.session.settings)) TellNotStored(context.session);
}

template <int kCommand>
void ChooseColours(const CommandContext& context) {
  Session& session = context.session;
  if (!session.settings.Store(base::keys::kTheme, ThemeChosenBy(kCommand)->name)) {
    TellNotStored(session);
  }
  context.window.ApplyTheme();
}

template <int kPoints>
void Zoom(const CommandContext& context) {
  context.window.Zoom(kPoints);
}

constexpr CommandAction kActions[] = {
    {commands::kConfigure, Configure},
    {commands::kRunToMain, ToggleRunToMain},
    {commands::kSymbolTableStart, SetSymbolTableStart},
    {commands::kProgramRange, SetProgramRange},
    {commands::kDataRange, SetDataRange},
    {commands::kClassicColours, ChooseColours<commands::kClassicColours>},
    {commands::kQuietColours, ChooseColours<commands::kQuietColours>},
    {commands::kLargerText, Zoom<1>},
    {commands::kSmallerText, Zoom<-1>},
    {commands::kSaveSettings, SaveSettings},
    {commands::kSaveOnExit, ToggleSaveOnExit},
};

}  // namespace

std::span<const CommandAction> ConfigureActions() {
  return kActions;
}

}  // namespace brevant::gui
