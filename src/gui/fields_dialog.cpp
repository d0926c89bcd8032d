// SPDX-License-Identifier: MIT
#include "gui/fields_dialog.h"

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/dialog_buttons.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kFieldCharacters = 12;
constexpr int kRefusalWidth = 320;

QLineEdit* MakeField(const QFont& font, const views::HexField& row) {
  auto* const field = new QLineEdit;
  field->setObjectName(row.name);
  field->setFont(font);
  field->setMaxLength(row.max_length);
  field->setMinimumWidth(field->fontMetrics().averageCharWidth() * kFieldCharacters);
  return field;
}

}  // namespace

bool AskForFields(QWidget* parent, const QFont& font, const views::HexDialog& request,
                  const std::vector<std::string>& initial, AcceptTexts accept) {
  QDialog dialog(parent);
  dialog.setObjectName(request.name);
  dialog.setWindowTitle(request.caption);
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const rows = new QFormLayout;
  std::vector<QLineEdit*> fields;
  for (const views::HexField& row : request.fields) {
    fields.push_back(MakeField(font, row));
    if (fields.size() <= initial.size()) fields.back()->setText(Text(initial[fields.size() - 1]));
    rows->addRow(row.label, fields.back());
  }
  layout->addLayout(rows);
  auto* const refusal = new QLabel;
  refusal->setObjectName("refusal");
  refusal->setWordWrap(true);
  refusal->setMinimumWidth(kRefusalWidth);
  refusal->hide();
  layout->addWidget(refusal);

  AddOkAndCancel(dialog, *layout, [&] {
    std::vector<std::string> texts;
    texts.reserve(fields.size());
    for (const QLineEdit* const field : fields) texts.push_back(Bytes(field->text()));
    const auto refused = accept(texts);
    if (!refused) return dialog.accept();
    refusal->setText(Text(refused->why));
    refusal->show();
    // A text that wraps needs room which no layout asks for by itself.
    layout->activate();
    const int width = std::max(dialog.width(), layout->sizeHint().width());
    dialog.resize(width, layout->totalHeightForWidth(width));
    fields[refused->field]->setFocus();
    fields[refused->field]->selectAll();
  });
  fields.front()->setFocus();
  fields.front()->selectAll();
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace brevant::gui
