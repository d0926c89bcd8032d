// SPDX-License-Identifier: MIT
#include "gui/source_dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/dialog_buttons.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kFieldWidth = 280;

}  // namespace

std::optional<FindRequest> AskForFind(QWidget* parent, const FindRequest& initial, int max_length) {
  QDialog dialog(parent);
  dialog.setObjectName("FindDlg");
  dialog.setWindowTitle("Find");
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const rows = new QFormLayout;
  auto* const field = new QLineEdit(Text(initial.text));
  field->setObjectName("text");
  field->setMaxLength(max_length);
  field->setMinimumWidth(kFieldWidth);
  field->selectAll();
  rows->addRow("Fi&nd what", field);
  auto* const match_case = new QCheckBox("Match &case");
  match_case->setObjectName("matchCase");
  match_case->setChecked(initial.match_case);
  layout->addLayout(rows);
  layout->addWidget(match_case);
  QPushButton* const ok = AddOkAndCancel(dialog, *layout, [&dialog] { dialog.accept(); });
  const auto update = [=] { ok->setEnabled(!field->text().isEmpty()); };
  QObject::connect(field, &QLineEdit::textChanged, ok, update);
  update();
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return FindRequest{Bytes(field->text()), match_case->isChecked()};
}

std::optional<int> ChooseName(QWidget* parent, const QFont& font, const QString& title,
                              const std::vector<std::string>& names, int current) {
  QDialog dialog(parent);
  dialog.setObjectName("CBDlgList");
  dialog.setWindowTitle(title);
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const list = new QComboBox;
  list->setObjectName("names");
  list->setFont(font);
  list->setMinimumWidth(kFieldWidth);
  for (const std::string& name : names) list->addItem(Text(name));
  list->setCurrentIndex(current);
  layout->addWidget(list);
  QPushButton* const ok = AddOkAndCancel(dialog, *layout, [&dialog] { dialog.accept(); });
  ok->setEnabled(!names.empty());
  list->setFocus();
  if (dialog.exec() != QDialog::Accepted || list->currentIndex() < 0) return std::nullopt;
  return list->currentIndex();
}

}  // namespace brevant::gui
