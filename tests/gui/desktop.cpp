// SPDX-License-Identifier: MIT
#include "gui/desktop.h"

#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMessageBox>
#include <QPushButton>

#include "gui/dialog_rules.h"

namespace brevant::gui {

using namespace std::chrono_literals;

void Desktop::SetUp() {
  folder_ = std::filesystem::temp_directory_path() / ("brevant_gui_" + std::to_string(getpid()));
  std::filesystem::create_directories(folder_);
  std::filesystem::current_path(folder_);
  QObject::connect(&watchdog_, &QTimer::timeout, &watchdog_, [this] { CloseForgottenDialog(); });
  watchdog_.start(10s);
}

void Desktop::TearDown() {
  application_.reset();
  std::filesystem::current_path("/");
  std::filesystem::remove_all(folder_);
  EXPECT_TRUE(Answered()) << "a dialog that was expected did not open";
}

void Desktop::CloseForgottenDialog() {
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (dialog == nullptr) return;
  auto* const message = qobject_cast<QMessageBox*>(dialog);
  ADD_FAILURE() << "not answered: " << qPrintable(dialog->objectName()) << ' '
                << qPrintable(message != nullptr ? message->text() : dialog->windowTitle());
  dialog->done(0);
}

void Desktop::Start(bool connect) {
  Options options;
  options.port = "sim";
  options.connect = connect;
  options.settings = (folder_ / "brevant.ini").string();
  options.version = "test";
  options.pace = pace_;
  application_ = std::make_unique<Application>(options);
  ASSERT_TRUE(application_->Start());
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  QTest::qWait(30);
}

void Desktop::UseToolChain(symbols::ToolChain tool_chain) {
  base::SettingsFile settings(folder_ / "brevant.ini");
  ASSERT_TRUE(settings.Store(base::keys::kCompiler, static_cast<long>(tool_chain)));
}

void Desktop::OnDialog(const QString& name, std::function<void(QDialog&)> act) {
  ++pending_;
  auto* const timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, timer, [this, timer, name, act] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr || dialog->objectName() != name) return;
    timer->stop();
    timer->deleteLater();
    --pending_;
    const bool of_the_desktop = name == "message" || name == "chooser";
    if (!of_the_desktop) ExpectUsableByKeys(*dialog);
    EXPECT_TRUE(of_the_desktop || guide::Guide(guide::Pages()).OfDialog(Bytes(name)) != nullptr)
        << "F1 in " << qPrintable(name) << " explains nothing";
    act(*dialog);
  });
  timer->start(5);
}

void Desktop::ChooseInDialog(const std::string& path) {
  OnDialog("chooser", [path](QDialog& dialog) {
    auto& chooser = static_cast<QFileDialog&>(dialog);
    chooser.selectFile(Text(path));
    chooser.findChild<QLineEdit*>("fileNameEdit")->setText(Text(path));
    QMetaObject::invokeMethod(&chooser, "accept");
  });
}

void Desktop::Reconnect() {
  session().simulated()->SetFaultPlan({});
  OnDialog("LookHWDlg", [](QDialog& dialog) { Push(dialog, "ok"); });
  window().Send(workspace::commands::kReStart);
  QTest::qWait(30);
  EXPECT_TRUE(Status().startsWith("COM1 simulated MC68HC908GP32: stopped, reset"));
}

void Desktop::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  // Without a window manager nobody gives the focus back when a dialog has closed.
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  QWidget* const focus = QApplication::focusWidget();
  QTest::keyClick(focus != nullptr ? focus : &window(), key, modifiers);
}

void Desktop::Choose(int command) {
  auto* const action = window().findChild<QAction*>(QString("command%1").arg(command));
  ASSERT_NE(action, nullptr) << command;
  ASSERT_TRUE(action->isEnabled()) << command;
  action->trigger();
}

void Desktop::Settle() {
  for (int i = 0; i < 500 && debugger().Busy(); ++i) RunFor(10);
  EXPECT_FALSE(debugger().Busy());
  QTest::qWait(25);
}

void Desktop::RunFor(int milliseconds) {
  for (int ms = 0; ms < milliseconds; ms += 10) {
    debugger().clock.Sleep(10ms);
    window().Tick();
  }
}

ProgramWindow& Desktop::program() {
  return *static_cast<ProgramWindow*>(window().Children(kProgramKind).front()->widget());
}

int Desktop::RowOf(base::Address address) {
  const auto lines = program().view().Lines();
  for (std::size_t row = 0; row < lines.size(); ++row) {
    if (lines[row].address == address) return static_cast<int>(row);
  }
  return -1;
}

void Desktop::ClickInProgram(int column, int row, bool twice) {
  const views::CellSize cell = program().cell();
  const QPoint at(column * cell.width + cell.width / 2, row * cell.height + cell.height / 2);
  QTest::mouseClick(program().viewport(), Qt::LeftButton, {}, at);
  if (twice) QTest::mouseDClick(program().viewport(), Qt::LeftButton, {}, at);
}

QString Desktop::Status() const {
  return application_->window().findChild<QLabel*>("connection")->text();
}

int Desktop::RedPixels(TextView& view, int column, int row, int count) {
  const views::CellSize cell = view.cell();
  const QImage image = view.viewport()->grab().toImage();
  int red = 0;
  for (int x = column * cell.width; x < (column + count) * cell.width; ++x) {
    for (int y = row * cell.height; y < (row + 1) * cell.height; ++y) {
      const QColor colour = image.pixelColor(x, y);
      if (colour.red() > colour.green() + 60 && colour.red() > colour.blue() + 60) ++red;
    }
  }
  return red;
}

RegistersWindow& Desktop::registers() {
  return *static_cast<RegistersWindow*>(window().Children(kRegistersKind).front()->widget());
}

QLineEdit& Desktop::Field(QDialog& dialog, const char* name) {
  return *dialog.findChild<QLineEdit*>(name);
}

void Desktop::Push(QDialog& dialog, const char* name) {
  QTest::mouseClick(dialog.findChild<QPushButton*>(name), Qt::LeftButton);
}

std::string Desktop::Example(const std::string& name) {
  return std::filesystem::weakly_canonical(std::string(BREVANT_TEST_DATA) + "/../examples/" + name)
      .string();
}

}  // namespace brevant::gui
