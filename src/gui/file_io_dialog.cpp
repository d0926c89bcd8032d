// SPDX-License-Identifier: MIT
#include "gui/file_io_dialog.h"

#include <QCheckBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/dialog_buttons.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kMaxLength = 254;
constexpr int kNameCharacters = 48;

}  // namespace

bool AskForFileIo(
    QWidget* parent, control::FileIoForm form,
    const std::function<std::optional<std::string>(QWidget*, const std::string&)>& browse,
    const std::function<bool(const control::FileIoForm&)>& accept) {
  QDialog dialog(parent);
  dialog.setObjectName("FILEIODLG");
  dialog.setWindowTitle(control::RowOf(form.side).title);
  auto* const layout = new QVBoxLayout(&dialog);
  layout->addWidget(new QLabel(QString("File of the %1 slot at %2")
                                   .arg(control::RowOf(form.side).word)
                                   .arg(form.binding.address, 4, 16, QChar('0'))));
  auto* const row = new QHBoxLayout;
  auto* const name = new QLineEdit(Text(form.binding.file_name));
  name->setObjectName("fileName");
  name->setAccessibleName("File name");
  name->setMaxLength(kMaxLength);
  name->setMinimumWidth(name->fontMetrics().averageCharWidth() * kNameCharacters);
  row->addWidget(name, 1);
  auto* const choose = new QPushButton("&Browse");
  choose->setObjectName("browse");
  choose->setAutoDefault(false);
  row->addWidget(choose);
  layout->addLayout(row);
  auto* const enabled = new QCheckBox("&Take part in file I/O");
  enabled->setObjectName("enabled");
  enabled->setChecked(form.binding.enabled);
  layout->addWidget(enabled);
  if (const std::string note = form.Note(); !note.empty()) {
    auto* const label = new QLabel(Text(note));
    label->setObjectName("note");
    layout->addWidget(label);
  }
  QObject::connect(enabled, &QCheckBox::clicked, &dialog, [&] { form.ClickEnabled(); });
  QObject::connect(choose, &QPushButton::clicked, &dialog, [&] {
    if (const auto chosen = browse(&dialog, form.binding.file_name)) name->setText(Text(*chosen));
  });
  AddOkAndCancel(dialog, *layout, [&] {
    form.binding.file_name = Bytes(name->text());
    if (accept(form)) return dialog.accept();
    name->setFocus();
  });
  name->setFocus();
  name->selectAll();
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace brevant::gui
