// SPDX-License-Identifier: MIT
#include "gui/flash_dialogs.h"

#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

#include "flash/messages.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr const char* kBackUpFirst = "&Back up first";
constexpr const char* kFlashImage = "&Flash image";
constexpr const char* kFlashImageTip =
    "Erases and programs only the pages that differ, puts back what else stands in them,\n"
    "verifies, resets and loads the names and lines of the image.";
constexpr const char* kBackUpTip =
    "Save what stands in flash as an image file before anything of it is erased or programmed.\n"
    "Takes a minute and a half for 32 KB at 9600 baud; Flash image puts it back.";

// Not offered where flash cannot be read.
QCheckBox* MakeBackUpBox(const FlashDialogLinks& links) {
  auto* const box = new QCheckBox(kBackUpFirst);
  box->setObjectName("backUp");
  box->setToolTip(kBackUpTip);
  box->setVisible(links.can_back_up);
  return box;
}

// Fields one below the other, a row of buttons under them.
class FormDialog final : public QDialog {
 public:
  FormDialog(const FlashDialogLinks& links, std::string_view name, std::string_view caption)
      : QDialog(links.parent), font_(links.font) {
    setObjectName(Text(name));
    setWindowTitle(Text(caption));
    buttons_->addStretch(1);
  }

  // A field of so many characters, its label before it.
  QLineEdit* AddField(const char* label, const char* name, const std::string& text,
                      std::size_t characters) {
    QLineEdit* const field = MakeField(name, text, characters);
    auto* const shown = new QLabel(label);
    shown->setBuddy(field);
    fields_->addWidget(shown, ++row_, 0);
    fields_->addWidget(field, row_, 1);
    return field;
  }
  void Add(QWidget* widget) { fields_->addWidget(widget, ++row_, 0, 1, kColumns); }
  // In the row of the last field.
  void AddBeside(QWidget* widget) { fields_->addWidget(widget, row_, kColumns - 1); }
  // Leaves the dialog when act says so.
  QPushButton* AddButton(const QString& text, const char* name, std::function<bool()> act) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, [this, act = std::move(act)] {
      if (act()) accept();
    });
    buttons_->addWidget(button);
    return button;
  }
  // False when it was cancelled.
  bool Ask() {
    auto* const cancel = new QPushButton("Cancel");
    cancel->setObjectName("cancel");
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    buttons_->addWidget(cancel);
    fields_->addLayout(buttons_, ++row_, 0, 1, kColumns);
    setLayout(fields_);
    setMinimumWidth(kLeastWidth);
    return exec() == Accepted;
  }

 private:
  static constexpr int kColumns = 3;
  static constexpr int kLeastWidth = 320;  // the caption is to be read
  static constexpr int kMostShown = 50;    // characters

  QLineEdit* MakeField(const char* name, const std::string& text, std::size_t characters) {
    auto* const field = new QLineEdit;
    field->setObjectName(name);
    field->setFont(font_);
    field->setMaxLength(static_cast<int>(characters));
    field->setText(Text(text));
    const int shown = std::min(static_cast<int>(characters), kMostShown) + 2;
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance('0') * shown);
    return field;
  }

  QFont font_;
  QGridLayout* fields_ = new QGridLayout;
  int row_ = -1;
  QHBoxLayout* buttons_ = new QHBoxLayout;
};

}  // namespace

std::optional<EraseChoice> AskForEraseRange(const FlashDialogLinks& links) {
  using Form = flash::EraseRangeForm;
  const Form opened = Form::Open(links.settings);
  FormDialog dialog(links, Form::kTemplate, Form::kCaption);
  QLineEdit* const from = dialog.AddField("&From", "from", opened.from, flash::kMaxAddressDigits);
  QLineEdit* const to = dialog.AddField("&To", "to", opened.to, flash::kMaxAddressDigits);
  QCheckBox* const back_up = MakeBackUpBox(links);
  dialog.Add(back_up);
  std::optional<flash::AddressRange> range;
  dialog.AddButton(Text(Form::kStartButton), "start", [&] {
    range = Form{Bytes(from->text()), Bytes(to->text())}.Commit(links.settings, links.ui);
    return range.has_value();
  });
  if (!dialog.Ask()) return std::nullopt;
  return EraseChoice{*range, back_up->isChecked()};
}

std::optional<bool> AskForMassErase(const FlashDialogLinks& links) {
  const base::Message question = ToMessage(flash::messages::kConfirmMassErase);
  QMessageBox box(QMessageBox::Question, Text(question.caption), Text(question.text),
                  QMessageBox::Yes | QMessageBox::No, links.parent);
  box.setObjectName("message");
  box.setDefaultButton(QMessageBox::No);
  QCheckBox* const back_up = MakeBackUpBox(links);
  box.setCheckBox(back_up);
  if (box.exec() != QMessageBox::Yes) return std::nullopt;
  return back_up->isChecked();
}

std::optional<flash::LocationData> AskForLocations(const FlashDialogLinks& links) {
  using Form = flash::ProgramLocationForm;
  const Form opened = Form::Open(links.settings);
  FormDialog dialog(links, Form::kTemplate, Form::kCaption);
  QLineEdit* const address =
      dialog.AddField("&Start address", "address", opened.address, flash::kMaxAddressDigits);
  QLineEdit* const content =
      dialog.AddField("&Bytes", "content", opened.content, Form::kMaxContentLength);
  content->setPlaceholderText("12 34 56");
  std::optional<flash::LocationData> data;
  dialog.AddButton("OK", "ok", [&] {
    data = Form{Bytes(address->text()), Bytes(content->text())}.Commit(links.settings, links.ui);
    return data.has_value();
  });
  return dialog.Ask() ? data : std::nullopt;
}

std::optional<FileChoice> AskForFlashFile(const FlashDialogLinks& links, FileChoice::What what,
                                          const std::string& given, const BrowseForFile& browse) {
  using Form = flash::ProgramFileForm;
  FormDialog dialog(links, Form::kTemplate, Form::kCaption);
  QLineEdit* const name = dialog.AddField("File &Name:", "fileName", "", Form::kMaxNameLength);
  const auto show = [name](const std::string& path) {
    const QString text = Text(path);
    name->setMaxLength(std::max(static_cast<int>(Form::kMaxNameLength), int(text.size())));
    name->setText(text);
    name->selectAll();
  };
  show(given.empty() ? Form::Open(links.settings).file_name : given);
  auto* const choose = new QPushButton("B&rowse");
  choose->setObjectName("browse");
  choose->setAutoDefault(false);
  QObject::connect(choose, &QPushButton::clicked, &dialog, [&] {
    if (const auto chosen = browse(Bytes(name->text()))) show(*chosen);
  });
  dialog.AddBeside(choose);
  QCheckBox* const back_up = MakeBackUpBox(links);
  dialog.Add(back_up);
  FileChoice choice;
  const auto leave_with = [&](FileChoice::What chosen) {
    choice = {Bytes(name->text()), chosen, back_up->isChecked()};
    return Form{choice.path}.Check(links.ui);
  };
  QPushButton* const start = dialog.AddButton(
      Text(Form::kStartButton), "start", [&] { return leave_with(FileChoice::What::Program); });
  start->setToolTip("Programs into flash that has been erased.");
  QPushButton* const image = dialog.AddButton(
      kFlashImage, "flashImage", [&] { return leave_with(FileChoice::What::FlashImage); });
  image->setToolTip(kFlashImageTip);
  (what == FileChoice::What::Program ? start : image)->setDefault(true);
  if (!dialog.Ask()) return std::nullopt;
  return choice;
}

}  // namespace brevant::gui
