// SPDX-License-Identifier: MIT
#include "gui/report_dialog.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>

#include "gui/dialog_buttons.h"

namespace brevant::gui {

std::optional<link::Secrets> AskForReport(QWidget* parent) {
  QDialog dialog(parent);
  dialog.setObjectName("REPORT");
  dialog.setWindowTitle("Save a report");
  auto* const rows = new QVBoxLayout(&dialog);
  auto* const what = new QLabel(
      "The report holds the versions, the settings and the last of what has passed between this\n"
      "program and the target, as text. Look at it before you give it away: what was read from or\n"
      "written to the target's memory stands in it.");
  rows->addWidget(what);
  auto* const codes = new QCheckBox("Include the &security codes that were sent and stored");
  codes->setObjectName("codes");
  rows->addWidget(codes);
  AddOkAndCancel(dialog, *rows, [&dialog] { dialog.accept(); });
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return codes->isChecked() ? link::Secrets::Show : link::Secrets::Hide;
}

}  // namespace brevant::gui
