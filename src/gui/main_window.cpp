// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QLayout>
#include <QMdiArea>
#include <QMenuBar>
#include <QMimeData>
#include <QTimer>
#include <algorithm>

#include "base/files.h"
#include "gui/edit_dialogs.h"
#include "gui/window_layout.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;
namespace commands = shell::commands;

constexpr const char* kNoFile = "No File Loaded";
constexpr int kTicksAClock = 10;

}  // namespace

MainWindow::MainWindow(Session& session)
    : session_(session),
      dispatch_(session, *this),
      font_(MakeViewFont(shell::DecodeViewFont(session.settings.Integer(keys::kFont)))),
      area_(new QMdiArea),
      status_(new StatusLine),
      menus_(*menuBar(), [this](int id) { Send(id); }),
      tool_bar_(new ToolBar([this](int id) { Send(id); })),
      registers_(new RegistersWindow(
          session.registers, [this](char key) { OpenRegisterEditor(key); }, font_)),
      registers_child_(new ChildWindow(registers_, "Regs", ChildWindow::Kind::Permanent)) {
  setObjectName("MDI_Frame");
  setWindowTitle(kNoFile);
  setAcceptDrops(true);
  setCentralWidget(area_);
  setStatusBar(status_);
  addToolBar(tool_bar_);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->addSubWindow(registers_child_);
  connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* child) {
    const auto active = std::ranges::find_if(
        program_windows_,
        [child](const ProgramWindow* window) { return window->parentWidget() == child; });
    if (active != program_windows_.end()) session_.program_views.Activate((*active)->view());
  });
  menus_.SetChecked(commands::kSaveOnExit, session_.settings.Integer(keys::kSaveOnExit) > 0);
  menus_.SetChecked(commands::kRunToMain, session_.settings.Integer(keys::kRunToMain) > 0);
  menus_.ShowRecentFiles(session_.recent_files);
  session_.ui.SetWindow(this);
  session_.SetScreen(this);
}

MainWindow::~MainWindow() {
  session_.SetScreen(nullptr);
  session_.ui.SetWindow(nullptr);
  // The windows inside go while what they refer to is still there.
  area_->disconnect(this);
  delete takeCentralWidget();
}

ChildWindow& MainWindow::OpenProgramWindow() {
  const ProgramWindowLinks links{[this](int id) { Send(id); }, [this] { return menus_.popup(); }};
  auto* const window = new ProgramWindow(session_.program_views, session_.gate, links, font_);
  program_windows_.push_back(window);
  connect(window, &QObject::destroyed, this,
          [this, window] { std::erase(program_windows_, window); });
  auto* const child = new ChildWindow(window, "Program", ChildWindow::Kind::Closable);
  area_->addSubWindow(child);
  child->resize(child->sizeHint().boundedTo(area_->size()));
  child->show();
  return *child;
}

std::vector<QMdiSubWindow*> MainWindow::program_children() const {
  std::vector<QMdiSubWindow*> children;
  for (const ProgramWindow* window : program_windows_) {
    children.push_back(static_cast<QMdiSubWindow*>(window->parentWidget()));
  }
  return children;
}

void MainWindow::LayOutNow() {
  setAttribute(Qt::WA_DontShowOnScreen);
  show();
  layout()->activate();
  hide();
  setAttribute(Qt::WA_DontShowOnScreen, false);
}

void MainWindow::Tick() {
  session_.Tick();
  session_.gate.Run([this] { UpdateViews(); });
  if (++ticks_ % kTicksAClock != 0) return;
  status_->UpdateClock();
  status_->ShowConnection(session_.Connection());
  const bool lost = session_.debugger.monitor_link.LinkError;
  registers_->SetStale(lost);
  for (ProgramWindow* window : program_windows_) window->SetStale(lost);
}

void MainWindow::UpdateViews() {
  for (ProgramWindow* window : program_windows_) window->UpdateIfNeeded();
}

void MainWindow::Refresh() {
  const shell::CommandConditions conditions{session_.debugger.run_state.RunningShown,
                                            session_.program_views.fileIoActive()};
  menus_.Update(conditions);
  tool_bar_->Update(conditions);
  status_->ShowConnection(session_.Connection());
  registers_->viewport()->update();
}

void MainWindow::OpenRegisterEditor(char key) {
  session_.gate.Run([&] {
    if (session_.program_views.fileIoActive() ||
        views::TargetRuns(session_.debugger.monitor, session_.debugger.run_state)) {
      return;
    }
    views::RegisterEditor editor = session_.registers.OpenEditor(key);
    EditRequest request{.title = editor.caption(),
                        .text = editor.initial_text(),
                        .max_length = editor.max_length(),
                        .typing_continues = editor.typing_continues()};
    AskForText(this, font_, request,
               [&editor](std::string_view text) { return editor.Accept(text); });
    session_.registers.UpdateChangeFlags();
    session_.program_views.RepaintProgramWindows();
  });
  Refresh();
}

bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    QTimer::singleShot(0, this, [this] { ReloadIfNewer(); });
  }
  return QMainWindow::event(event);
}

void MainWindow::ReloadIfNewer() {
  const std::string path = session_.recent_files.current();
  if (path.empty() || session_.gate.busy() || session_.debugger.Busy() ||
      !session_.debugger.loader.ImageIsNewer(path)) {
    return;
  }
  const std::pair version(path, base::ModificationTime(path));
  if (version == reloaded_) return;
  reloaded_ = version;
  Send(commands::kFirstRecentFile);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (session_.gate.busy()) {
    event->ignore();
    QApplication::beep();
    return;
  }
  if (session_.settings.Integer(keys::kSaveOnExit) != 0) StoreLayout(*this, session_.settings);
  event->accept();
  QApplication::quit();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.front().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  const std::string path = Bytes(event->mimeData()->urls().front().toLocalFile());
  // After the drop has ended, so that the program it came from does not wait for the load.
  QTimer::singleShot(0, this, [this, path] { LoadFile(path); });
}

}  // namespace brevant::gui
