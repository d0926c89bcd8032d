// SPDX-License-Identifier: MIT
#include "gui/connect_dialog.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <array>

#include "devices/device.h"
#include "gui/icons.h"
#include "gui/qt_user_interface.h"
#include "link/connect_form.h"

namespace brevant::gui {
namespace {

constexpr int kIconSize = 32;

class ConnectDialog final : public QDialog {
 public:
  ConnectDialog(QWidget* parent, base::SettingsFile& settings, link::SecurityKeeper& security,
                base::UserInterface& ui, const std::vector<link::SerialDevice>& found,
                const std::string& version, Leaving leaving);

 protected:
  // "Ok" is the way out, and only when it is meant.
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) return;
    QDialog::keyPressEvent(event);
  }

 private:
  void AddHeading(QGridLayout* layout, const std::string& version);
  void AddFields(QGridLayout* layout);
  void AddButtons(QGridLayout* layout, Leaving leaving);
  void ChooseDevice(const QString& text);
  void TakeCodeText(QLineEdit& field, const QString& text);
  void ShowForm();
  void ShowCode();
  void ShowDevicesBehindPort();
  void ReadFields();
  void Accept();

  base::SettingsFile& settings_;
  link::SecurityKeeper& security_;
  base::UserInterface& ui_;
  const std::vector<link::SerialDevice>& found_;
  link::ConnectForm form_;
  std::vector<link::DeviceChoice> device_choices_;
  QComboBox* devices_ = new QComboBox;
  QLineEdit* port_ = new QLineEdit;
  QComboBox* behind_port_ = new QComboBox;
  QCheckBox* verify_ = new QCheckBox("&Verify security");
  std::array<QLineEdit*, 8> code_{};
  QComboBox* select_ = new QComboBox;
};

ConnectDialog::ConnectDialog(QWidget* parent, base::SettingsFile& settings,
                             link::SecurityKeeper& security, base::UserInterface& ui,
                             const std::vector<link::SerialDevice>& found,
                             const std::string& version, Leaving leaving)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      settings_(settings),
      security_(security),
      ui_(ui),
      found_(found),
      form_(link::OpenConnectForm(settings, security, found)) {
  setObjectName("LookHWDlg");
  setWindowTitle("Look for hardware");
  auto* const layout = new QGridLayout(this);
  AddHeading(layout, version);
  AddFields(layout);
  AddButtons(layout, leaving);
  ShowForm();
  connect(select_, &QComboBox::activated, this, [this] {
    link::SelectRecentCode(form_, security_, select_->currentIndex());
    ShowCode();
  });
  connect(port_, &QLineEdit::textChanged, this, [this] { ShowDevicesBehindPort(); });
  connect(behind_port_, &QComboBox::activated, this,
          [this](int index) { ChooseDevice(behind_port_->itemText(index)); });
  connect(behind_port_->lineEdit(), &QLineEdit::textEdited, this,
          [this](const QString& text) { ChooseDevice(text); });
  for (QLineEdit* const field : code_) {
    connect(field, &QLineEdit::textEdited, this,
            [this, field](const QString& text) { TakeCodeText(*field, text); });
  }
}

void ConnectDialog::AddHeading(QGridLayout* layout, const std::string& version) {
  auto* const heading = new QLabel(
      QString("<b>Brevant %1</b><br>Debugger for MC68HC908 microcontrollers").arg(Text(version)));
  heading->setObjectName("product");
  auto* const icon = new QLabel;
  icon->setPixmap(ProductIcon().pixmap(kIconSize));
  layout->addWidget(icon, 0, 0, Qt::AlignCenter);
  layout->addWidget(heading, 0, 1, 1, 2);
}

void ConnectDialog::AddFields(QGridLayout* layout) {
  const auto label = [layout](int row, const char* text, QWidget* buddy) {
    auto* const made = new QLabel(text);
    made->setBuddy(buddy);
    layout->addWidget(made, row, 0);
  };
  devices_->setObjectName("devices");
  for (const devices::Device& device : devices::All()) devices_->addItem(Text(device.name));
  devices_->setToolTip("The microcontroller on the board.");
  label(1, "&Devices", devices_);
  layout->addWidget(devices_, 1, 1, 1, 2);

  port_->setObjectName("port");
  port_->setToolTip("COM1 to COM4. Below is chosen what each is wired to.");
  label(2, "COM &port", port_);
  layout->addWidget(port_, 2, 1);
  verify_->setObjectName("verifySecurity");
  verify_->setToolTip(
      "Send the security code after each reset.\nWithout it RAM can be used, but flash not be "
      "read.");
  layout->addWidget(verify_, 2, 2);

  behind_port_->setObjectName("deviceBehindPort");
  behind_port_->setEditable(true);
  behind_port_->setInsertPolicy(QComboBox::NoInsert);
  behind_port_->setCompleter(nullptr);
  behind_port_->setToolTip(
      "The serial device behind the port. Choose one, or type or paste the path of another.\n"
      "A line in the network is rfc2217://HOST:PORT, or tcp://HOST:PORT for its bytes alone.");
  behind_port_->setMinimumContentsLength(34);
  behind_port_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  label(3, "&Wired to", behind_port_);
  layout->addWidget(behind_port_, 3, 1, 1, 2);

  auto* const bytes = new QHBoxLayout;
  for (std::size_t i = 0; i < code_.size(); ++i) {
    code_[i] = new QLineEdit;
    code_[i]->setObjectName(QString("code%1").arg(i));
    code_[i]->setAccessibleName(QString("Security byte %1").arg(i));
    code_[i]->setToolTip(
        "The eight bytes that stand in the part's flash from FFF6 on.\n"
        "All 16 digits can be pasted into any of the fields.");
    code_[i]->setFixedWidth(code_[i]->fontMetrics().horizontalAdvance("0000"));
    bytes->addWidget(code_[i]);
  }
  bytes->addStretch(1);
  label(4, "S&ecurity\nfrom fff6", code_[0]);
  layout->addLayout(bytes, 4, 1, 1, 2);

  select_->setObjectName("select");
  select_->setToolTip("The security codes that were used last.");
  label(5, "&Select", select_);
  layout->addWidget(select_, 5, 1, 1, 2);
}

void ConnectDialog::AddButtons(QGridLayout* layout, Leaving leaving) {
  auto* const buttons = new QHBoxLayout;
  const auto add = [buttons](const char* text, const char* name) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false);
    buttons->addWidget(button);
    return button;
  };
  connect(add("&Ok", "ok"), &QPushButton::clicked, this, [this] { Accept(); });
  if (leaving == Leaving::ByQuitToo) {
    connect(add("&Quit", "quit"), &QPushButton::clicked, this, &QDialog::reject);
  }
  layout->addLayout(buttons, 6, 0, 1, 3, Qt::AlignHCenter);
}

void ConnectDialog::ChooseDevice(const QString& text) {
  link::PortChoice* const choice = form_.FindPort(Bytes(port_->text()));
  if (choice != nullptr) *choice = {link::DeviceOfText(Bytes(text), device_choices_), true};
}

// What is longer than its field is a whole code or was typed too far.
void ConnectDialog::TakeCodeText(QLineEdit& field, const QString& text) {
  if (text.size() <= link::kCodeFieldLimit) return;
  // A field that held something already has that around what was pasted.
  const QString pasted = QGuiApplication::clipboard()->text();
  if (link::PasteCode(form_, Bytes(text)) ||
      (text.contains(pasted) && link::PasteCode(form_, Bytes(pasted)))) {
    ShowCode();
  } else {
    field.setText(text.left(link::kCodeFieldLimit));
  }
}

void ConnectDialog::ShowForm() {
  devices_->setCurrentIndex(form_.device);
  port_->setMaxLength(std::max(link::kPortFieldLimit, static_cast<int>(form_.port.size())));
  port_->setText(Text(form_.port));
  verify_->setChecked(form_.verify_security);
  for (const std::string& code : form_.recent_codes) select_->addItem(Text(code));
  ShowCode();
  ShowDevicesBehindPort();
}

void ConnectDialog::ShowCode() {
  for (std::size_t i = 0; i < code_.size(); ++i) code_[i]->setText(Text(form_.code_fields[i]));
}

void ConnectDialog::ShowDevicesBehindPort() {
  const QSignalBlocker quiet(behind_port_);
  behind_port_->clear();
  const link::PortChoice* const choice = form_.FindPort(Bytes(port_->text()));
  behind_port_->setEnabled(choice != nullptr);
  if (choice == nullptr) return;
  device_choices_ = link::ListDeviceChoices(found_, choice->device);
  int current = -1;
  for (const link::DeviceChoice& offered : device_choices_) {
    if (offered.device == choice->device) current = behind_port_->count();
    behind_port_->addItem(Text(offered.text));
  }
  behind_port_->lineEdit()->setPlaceholderText("nothing chosen");
  behind_port_->setCurrentIndex(current);
  // A long description shows its beginning.
  behind_port_->lineEdit()->setCursorPosition(0);
}

void ConnectDialog::ReadFields() {
  form_.device = devices_->currentIndex();
  form_.port = Bytes(port_->text());
  form_.verify_security = verify_->isChecked();
  for (std::size_t i = 0; i < code_.size(); ++i) form_.code_fields[i] = Bytes(code_[i]->text());
}

void ConnectDialog::Accept() {
  ReadFields();
  if (const auto refusal = link::CommitConnectForm(form_, settings_, security_)) {
    ui_.ShowMessage(*refusal);
    return;
  }
  accept();
}

}  // namespace

bool AskForConnection(QWidget* parent, base::SettingsFile& settings, link::SecurityKeeper& security,
                      base::UserInterface& ui, const std::vector<link::SerialDevice>& found,
                      const std::string& version, Leaving leaving) {
  ConnectDialog dialog(parent, settings, security, ui, found, version, leaving);
  dialog.adjustSize();
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  dialog.move(screen.center() - dialog.rect().center());
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace brevant::gui
