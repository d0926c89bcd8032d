// SPDX-License-Identifier: MIT
// Commands of the Configure, Window and Help menus, and the end of the program.
#include <QMdiArea>
#include <QMessageBox>
#include <QTimer>

#include "gui/command_actions.h"
#include "gui/edit_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "gui/window_layout.h"
#include "views/messages.h"
#include "views/scroll_range.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

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

void SaveSettings(const CommandContext& context) {
  if (!StoreLayout(context.window, context.session.settings)) TellNotStored(context.session);
}

void Tile(const CommandContext& context) {
  context.window.area().tileSubWindows();
}

void Cascade(const CommandContext& context) {
  context.window.area().cascadeSubWindows();
}

void Refresh(const CommandContext& context) {
  context.window.RefreshActive();
}

void ArrangeIcons(const CommandContext& context) {
  const QMdiArea& area = context.window.area();
  int x = 0;
  int bottom = area.viewport()->height();
  for (QMdiSubWindow* const child : area.subWindowList()) {
    if (!child->isMinimized()) continue;
    if (x > 0 && x + child->width() > area.viewport()->width()) {
      x = 0;
      bottom -= child->height();
    }
    child->move(x, bottom - child->height());
    x += child->width();
  }
}

void About(const CommandContext& context) {
  auto* const box = new QMessageBox(
      QMessageBox::Information, "About Brevant",
      QString("<b>Brevant %1</b><br>Debugger for MC68HC908 microcontrollers in ROM monitor "
              "mode.<br><br>MIT licence. Uses Qt %2.")
          .arg(Text(context.session.options.version), qVersion()),
      QMessageBox::Ok, &context.window);
  box->setObjectName("AboutBox");
  box->setAttribute(Qt::WA_DeleteOnClose);
  // Not waited for: a running target is looked after meanwhile.
  box->open();
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

void Exit(const CommandContext& context) {
  // Closing is refused while a command is under way, and this is one.
  QTimer::singleShot(0, &context.window, &QWidget::close);
}

constexpr CommandAction kActions[] = {
    {commands::kRunToMain, ToggleRunToMain},
    {commands::kProgramRange, SetProgramRange},
    {commands::kDataRange, SetDataRange},
    {commands::kSaveSettings, SaveSettings},
    {commands::kSaveOnExit, ToggleSaveOnExit},
    {commands::kTile, Tile},
    {commands::kCascade, Cascade},
    {commands::kArrangeIcons, ArrangeIcons},
    {commands::kRefresh, Refresh},
    {commands::kClassicColours, ChooseColours<commands::kClassicColours>},
    {commands::kQuietColours, ChooseColours<commands::kQuietColours>},
    {commands::kLargerText, Zoom<1>},
    {commands::kSmallerText, Zoom<-1>},
    {commands::kAbout, About},
    {commands::kExit, Exit},
};

}  // namespace

std::span<const CommandAction> WindowActions() {
  return kActions;
}

}  // namespace brevant::gui
