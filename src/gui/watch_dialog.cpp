// SPDX-License-Identifier: MIT
#include "gui/watch_dialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <algorithm>
#include <span>

#include "gui/dialog_buttons.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

using views::WatchForm;
using namespace views::watch_codes;

constexpr int kNameCharacters = 26;

struct Choice {
  char code;
  const char* text;
  const char* name;
};
constexpr Choice kDisplays[] = {{kHex, "&Hex", "hex"},
                                {kDecimal, "&Decimal", "decimal"},
                                {kBinary, "&Binary", "binary"},
                                {kString, "&String", "string"}};
constexpr Choice kWidths[] = {
    {kLong, "&Long", "long"}, {kWord, "&Word", "word"}, {kByte, "B&yte", "byte"}};
constexpr Choice kSigns[] = {{kSigned, "S&igned", "signed"}, {kUnsigned, "&Unsigned", "unsigned"}};

// One of several codes, a radio button each.
class CodeBox final : public QGroupBox {
 public:
  CodeBox(const char* title, std::span<const Choice> choices) : QGroupBox(title) {
    auto* const layout = new QVBoxLayout(this);
    for (const Choice& choice : choices) {
      auto* const button = new QRadioButton(choice.text);
      button->setObjectName(choice.name);
      group_->addButton(button, choice.code);
      layout->addWidget(button);
    }
    layout->addStretch(1);
  }
  void Choose(char code) { group_->button(code)->setChecked(true); }
  char Chosen() const { return static_cast<char>(group_->checkedId()); }

 private:
  QButtonGroup* group_ = new QButtonGroup(this);
};

class WatchDialog final : public QDialog {
 public:
  WatchDialog(QWidget* parent, const QFont& font, WatchForm form, const views::WatchNames& names,
              base::UserInterface& ui);

  // As the dialog was left.
  WatchForm Form() const;

 private:
  void LayOut();
  void Show();
  void ShowSymbol(const QString& text);
  void Accept();

  WatchForm form_;
  const views::WatchNames names_;
  base::UserInterface& ui_;
  QComboBox* symbol_ = new QComboBox;
  QLineEdit* address_ = new QLineEdit;
  QLineEdit* length_ = new QLineEdit;
  CodeBox* display_ = new CodeBox("Display", kDisplays);
  CodeBox* width_ = new CodeBox("Size", kWidths);
  CodeBox* sign_ = new CodeBox("Sign", kSigns);
  QLabel* refusal_ = new QLabel;
};

WatchDialog::WatchDialog(QWidget* parent, const QFont& font, WatchForm form,
                         const views::WatchNames& names, base::UserInterface& ui)
    : QDialog(parent), form_(std::move(form)), names_(names), ui_(ui) {
  setObjectName(WatchForm::kTemplate);
  setWindowTitle(Text(form_.title));
  symbol_->setObjectName("symbol");
  symbol_->setEditable(true);
  symbol_->setInsertPolicy(QComboBox::NoInsert);
  symbol_->setCompleter(nullptr);
  for (const std::string& name : WatchForm::Choices(names_.info)) symbol_->addItem(Text(name));
  address_->setObjectName("address");
  address_->setMaxLength(WatchForm::kMostAddress);
  length_->setObjectName("length");
  length_->setMaxLength(WatchForm::kMostLength);
  for (QWidget* const field : {static_cast<QWidget*>(symbol_), static_cast<QWidget*>(address_),
                               static_cast<QWidget*>(length_)}) {
    field->setFont(font);
  }
  symbol_->setMinimumWidth(QFontMetrics(font).averageCharWidth() * kNameCharacters);
  LayOut();
  Show();
  connect(symbol_, &QComboBox::activated, this, [this](int index) {
    form_ = Form();
    form_.ChooseSymbol(Bytes(symbol_->itemText(index)), names_);
    Show();
  });
  connect(symbol_->lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) {
    form_ = Form();
    form_.TypeSymbol(Bytes(text), names_);
    const int cursor = symbol_->lineEdit()->cursorPosition();
    Show();
    symbol_->lineEdit()->setCursorPosition(cursor);
  });
}

void WatchDialog::LayOut() {
  auto* const layout = new QVBoxLayout(this);
  auto* const fields = new QFormLayout;
  fields->addRow("Sy&mbol", symbol_);
  fields->addRow("&Address", address_);
  layout->addLayout(fields);
  auto* const boxes = new QHBoxLayout;
  for (CodeBox* const box : {display_, width_, sign_}) boxes->addWidget(box);
  layout->addLayout(boxes);
  auto* const of_string = new QFormLayout;
  of_string->addRow("L&ength of a string", length_);
  layout->addLayout(of_string);
  refusal_->setObjectName("refusal");
  refusal_->setWordWrap(true);
  refusal_->hide();
  layout->addWidget(refusal_);
  AddOkAndCancel(*this, *layout, [this] { Accept(); });
  symbol_->setFocus();
}

WatchForm WatchDialog::Form() const {
  WatchForm form = form_;
  form.symbol = Bytes(symbol_->currentText());
  form.address = Bytes(address_->text());
  form.length = Bytes(length_->text());
  form.display = display_->Chosen();
  form.width = width_->Chosen();
  form.sign = sign_->Chosen();
  return form;
}

void WatchDialog::Show() {
  ShowSymbol(Text(form_.symbol));
  address_->setText(Text(form_.address));
  length_->setText(Text(form_.length));
  display_->Choose(form_.display);
  width_->Choose(form_.width);
  sign_->Choose(form_.sign);
}

// Only typing is limited; a name that was chosen is shown whole, and an expression may be longer.
void WatchDialog::ShowSymbol(const QString& text) {
  QLineEdit& field = *symbol_->lineEdit();
  const bool is_expression = text.contains(QRegularExpression("[^A-Za-z0-9_]"));
  const int most = is_expression ? int{views::WatchItem::kMostName} : WatchForm::kMostTyped;
  field.setMaxLength(std::max(most, static_cast<int>(text.size())));
  field.setText(text);
}

void WatchDialog::Accept() {
  form_ = Form();
  const auto refused = form_.Check(names_, ui_);
  if (!refused) return accept();
  refusal_->setText(Text(refused->why));
  refusal_->show();
  QWidget* const fields[] = {symbol_, address_, length_};
  fields[static_cast<std::size_t>(refused->field)]->setFocus();
}

}  // namespace

std::optional<views::WatchItem> AskForWatch(QWidget* parent, const QFont& font, WatchForm form,
                                            const views::WatchNames& names,
                                            base::UserInterface& ui) {
  WatchDialog dialog(parent, font, std::move(form), names, ui);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.Form().Item(names.info);
}

}  // namespace brevant::gui
