// SPDX-License-Identifier: MIT
// Commands of the Window and Help menus, and the end of the program.
#include <QMdiArea>
#include <QMessageBox>
#include <QTimer>

#include "base/files.h"
#include "gui/command_actions.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/report_dialog.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

// A source window is to stay as wide as its lines are.
constexpr const char* kNotTiled = "The source window is open: windows are tiled only without it.";

void Tile(const CommandContext& context) {
  if (!context.window.Children(kSourceKind).empty()) {
    return context.window.status().ShowNotice(kNotTiled);
  }
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
              "mode.<br><br>MIT licence.<br>Built with Qt %2 (LGPL), fmt and CLI11.")
          .arg(Text(context.session.options.version), qVersion()),
      QMessageBox::Ok, &context.window);
  box->setObjectName("AboutBox");
  box->setAttribute(Qt::WA_DeleteOnClose);
  // Not waited for: a running target is looked after meanwhile.
  box->open();
}

void SaveReport(const CommandContext& context) {
  Session& session = context.session;
  std::optional<std::string> path;
  std::optional<link::Secrets> secrets;
  session.gate.OpenDuring([&] {
    secrets = AskForReport(&context.window);
    if (!secrets) return;
    path = ChooseFile(&context.window, session.ui,
                      workspace::PrepareChooser(workspace::Chooser::Report, "",
                                                session.debugger.debug_info.tool_chain,
                                                base::WorkingDirectory()));
  });
  if (!path) return;
  const std::string error = session.WriteReport(*path, *secrets);
  if (!error.empty()) {
    session.ui.ShowMessage(base::ToMessage(messages::kFileNotWritten, *path, error));
    return;
  }
  context.window.status().ShowNotice("The report was saved as " + *path);
}

void ShowHelpContents(const CommandContext& context) {
  context.window.help().ShowContents();
}

void ShowHelpSearch(const CommandContext& context) {
  context.window.help().ShowSearch();
}

void ShowHelpOnHelp(const CommandContext& context) {
  context.window.help().ShowCommand(commands::kHelpOnHelp);
}

void Exit(const CommandContext& context) {
  // Closing is refused while a command is under way, and this is one.
  QTimer::singleShot(0, &context.window, &QWidget::close);
}

constexpr CommandAction kActions[] = {
    {commands::kTile, Tile},
    {commands::kCascade, Cascade},
    {commands::kArrangeIcons, ArrangeIcons},
    {commands::kRefresh, Refresh},
    {commands::kHelpContents, ShowHelpContents},
    {commands::kHelpSearch, ShowHelpSearch},
    {commands::kHelpOnHelp, ShowHelpOnHelp},
    {commands::kSaveReport, SaveReport},
    {commands::kAbout, About},
    {commands::kExit, Exit},
};

}  // namespace

std::span<const CommandAction> WindowActions() {
  return kActions;
}

}  // namespace brevant::gui
