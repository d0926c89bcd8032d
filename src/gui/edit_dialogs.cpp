// SPDX-License-Identifier: MIT
#include "gui/edit_dialogs.h"

#include <QComboBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/dialog_buttons.h"
#include "gui/qt_user_interface.h"
#include "views/program_view.h"

namespace brevant::gui {
namespace {

constexpr int kEditCharacters = 32;
constexpr int kListWidth = 640;
constexpr int kListHeight = 320;

QPushButton* AddButton(QBoxLayout* layout, const QString& text, const QString& name) {
  auto* const button = new QPushButton(text);
  button->setObjectName(name);
  layout->addWidget(button);
  return button;
}

QComboBox* MakeCombo(const QFont& font, const std::vector<std::string>& choices) {
  auto* const combo = new QComboBox;
  combo->setObjectName("choices");
  combo->setEditable(true);
  combo->setInsertPolicy(QComboBox::NoInsert);
  combo->setCompleter(nullptr);
  combo->setFont(font);
  for (const std::string& choice : choices) combo->addItem(Text(choice));
  return combo;
}

}  // namespace

bool AskForText(QWidget* parent, const QFont& font, const EditRequest& request, AcceptText accept) {
  QDialog dialog(parent);
  dialog.setObjectName(request.name);
  dialog.setWindowTitle(Text(request.title));
  auto* const layout = new QVBoxLayout(&dialog);
  QComboBox* const combo = request.choices ? MakeCombo(font, *request.choices) : nullptr;
  QLineEdit* const field = combo != nullptr ? combo->lineEdit() : new QLineEdit;
  QWidget* const shown = combo != nullptr ? static_cast<QWidget*>(combo) : field;
  field->setObjectName("text");
  field->setFont(font);
  field->setMaxLength(request.max_length);
  field->setText(Text(request.text));
  shown->setMinimumWidth(field->fontMetrics().averageCharWidth() * kEditCharacters);
  if (!request.label.empty()) layout->addWidget(new QLabel(Text(request.label)));
  layout->addWidget(shown);
  auto* const refusal = new QLabel;
  refusal->setObjectName("refusal");
  refusal->hide();
  layout->addWidget(refusal);

  AddOkAndCancel(dialog, *layout, [&] {
    const std::string refused = accept(Bytes(field->text()));
    if (refused.empty()) return dialog.accept();
    refusal->setText(Text(refused));
    refusal->show();
    field->setFocus();
  });

  field->setFocus();
  if (request.typing_continues) {
    // Getting the focus selects everything; undone once the dialog has it.
    QTimer::singleShot(0, field, [field] {
      field->deselect();
      field->end(false);
    });
  } else {
    field->selectAll();
  }
  return dialog.exec() == QDialog::Accepted;
}

std::optional<base::Address> ShowBreakpointList(QWidget* parent, const QFont& font,
                                                views::BreakpointList& list) {
  QDialog dialog(parent);
  dialog.setObjectName("BKPTDLG");
  dialog.setWindowTitle(views::BreakpointList::kTitle);
  auto* const layout = new QHBoxLayout(&dialog);
  auto* const lines = new QListWidget;
  lines->setObjectName("breakpoints");
  lines->setFont(font);
  for (const std::string& line : list.lines()) lines->addItem(Text(views::ExpandTabs(line)));
  layout->addWidget(lines, 1);
  auto* const buttons = new QVBoxLayout;
  QPushButton* const go_to = AddButton(buttons, "&Go to", "goto");
  QPushButton* const remove = AddButton(buttons, "&Delete", "delete");
  QPushButton* const close = AddButton(buttons, "&Close", "close");
  buttons->addStretch(1);
  layout->addLayout(buttons);

  const auto selection = [lines]() -> std::optional<int> {
    if (lines->selectedItems().isEmpty()) return std::nullopt;
    return lines->currentRow();
  };
  std::optional<base::Address> chosen;
  const auto go = [&] {
    chosen = list.GoTo(selection());
    if (chosen) dialog.accept();
  };
  QObject::connect(go_to, &QPushButton::clicked, &dialog, go);
  QObject::connect(lines, &QListWidget::itemDoubleClicked, &dialog, go);
  QObject::connect(remove, &QPushButton::clicked, &dialog, [&] {
    const auto row = selection();
    if (list.Delete(row)) delete lines->takeItem(*row);
  });
  QObject::connect(close, &QPushButton::clicked, &dialog, &QDialog::reject);
  dialog.resize(kListWidth, kListHeight);
  dialog.exec();
  return chosen;
}

}  // namespace brevant::gui
