// SPDX-License-Identifier: MIT
// brevant: the debugger in windows.
#include <QApplication>

#include "gui/application.h"
#include "gui/icons.h"
#include "gui/options.h"

int main(int argc, char** argv) {
  const brevant::gui::ParsedOptions parsed =
      brevant::gui::ParseOptions(argc, argv, BREVANT_VERSION);
  if (parsed.leave_with) return *parsed.leave_with;

  QApplication desktop(argc, argv);
  QApplication::setApplicationName("brevant");
  QApplication::setApplicationDisplayName("");
  QApplication::setApplicationVersion(BREVANT_VERSION);
  QApplication::setDesktopFileName(BREVANT_APP_ID);
  QApplication::setWindowIcon(brevant::gui::ProductIcon());
  // Closing a dialog before the frame is there must not end the program.
  QApplication::setQuitOnLastWindowClosed(false);

  brevant::gui::Application application(parsed.options);
  if (!application.Start()) return 0;
  return QApplication::exec();
}
