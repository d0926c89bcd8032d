// SPDX-License-Identifier: MIT
// A person at the program: starts it on the simulated target with a settings file of its own,
// answers dialogs, clicks and types.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "gui/application.h"
#include "gui/program_window.h"
#include "gui/registers_window.h"

namespace brevant::gui {

class Desktop : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Starts without the connect dialog unless connect is false.
  void Start(bool connect = true);
  // Before Start.
  void UseToolChain(symbols::ToolChain tool_chain);
  void Quit() { application_.reset(); }

  // Does act on the next dialog of that name while it is open, in the same call that opens it.
  // Answered() says whether that has happened.
  void OnDialog(const QString& name, std::function<void(QDialog&)> act);
  bool Answered() const { return pending_ == 0; }
  // The next file dialog.
  void ChooseInDialog(const std::string& path);

  // Plugs the cable in again and chooses ReStart.
  void Reconnect();
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void Choose(int command);
  // Lets the target run and the program tick until nothing is under way.
  void Settle();
  // The same for a given time of the target.
  void RunFor(int milliseconds);

  Session& session() { return application_->session(); }
  debugger::Debugger& debugger() { return session().debugger; }
  MainWindow& window() { return application_->window(); }
  ProgramWindow& program();
  RegistersWindow& registers();
  // Row of the line of that address in the first program window; -1 when it is not shown.
  int RowOf(base::Address address);
  void ClickInProgram(int column, int row, bool twice = false);
  QString Status() const;

  // Pixels of view's cells whose red outweighs the rest.
  static int RedPixels(TextView& view, int column, int row, int count);
  static QLineEdit& Field(QDialog& dialog, const char* name);
  static void Push(QDialog& dialog, const char* name);
  static std::string Example(const std::string& name);

  std::filesystem::path folder_;
  simulator::Pace pace_ = simulator::Pace::Instant;  // of the next start

 private:
  // A dialog that nobody answers must fail its test instead of holding it for ever.
  void CloseForgottenDialog();

  std::unique_ptr<Application> application_;
  int pending_ = 0;
  QTimer watchdog_;
};

}  // namespace brevant::gui
