// SPDX-License-Identifier: MIT
#include "gui/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFontDatabase>
#include <QLayout>
#include <QMdiArea>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>

#include "base/files.h"
#include "base/text_number.h"
#include "gui/accessible_text.h"
#include "gui/window_layout.h"
#include "gui/window_list.h"
#include "workspace/view_font.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;
namespace commands = workspace::commands;

constexpr const char* kNoFile = "No File Loaded";
constexpr const char* kChangedMeanwhile =
    "The image file has changed. Press Break (F7), then load it again from the File menu.";
constexpr const char* kChangedWhileWritten =
    "The image file has changed: load it again from the File menu.";
constexpr int kTicksAClock = 10;
constexpr int kTryAgainMs = 100;

constexpr int kLeastPoints = 5;
constexpr int kMostZoom = 24;

int ZoomOf(const base::SettingsFile& settings) {
  return std::clamp(base::ParseLeadingDecimal(settings.String(keys::kZoom)), -kMostZoom, kMostZoom);
}

// Until the user has chosen a size, that of the desktop.
QFont FontOfSettings(const base::SettingsFile& settings) {
  const workspace::ViewFont chosen = workspace::DecodeViewFont(settings.Integer(keys::kFont));
  const int desktop = QFontDatabase::systemFont(QFontDatabase::FixedFont).pointSize();
  const bool has_size = settings.Has(keys::kFont.section, keys::kFont.key) || desktop <= 0;
  const int points = (has_size ? chosen.points : desktop) + ZoomOf(settings);
  return MakeViewFont(chosen.face, std::max(points, kLeastPoints));
}

workspace::Repeating RepeatingOf(control::Mode mode) {
  if (mode == control::Mode::NStepping) return workspace::Repeating::NSteps;
  if (mode == control::Mode::Tracing) return workspace::Repeating::Trace;
  return workspace::Repeating::Nothing;
}

}  // namespace

MainWindow::MainWindow(Session& session, Help& help)
    : session_(session),
      help_(help),
      dispatch_(session, *this),
      font_(FontOfSettings(session.settings)),
      theme_(&FindTheme(session.settings.String(keys::kTheme), palette())),
      area_(new QMdiArea),
      status_(new StatusLine),
      menus_(*menuBar(), [this](int id) { Send(id); }),
      tool_bar_(new ToolBar([this](int id) { Send(id); })) {
  setObjectName("MDI_Frame");
  MakeTextViewsAccessible();
  setWindowTitle(kNoFile);
  setAcceptDrops(true);
  setCentralWidget(area_);
  setStatusBar(status_);
  addToolBar(tool_bar_);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  ListWindows(menus_.menu(workspace::Menu::Window), *area_);
  connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* child) {
    const auto active = std::ranges::find(windows_, child, &OpenWindow::child);
    if (active == windows_.end()) return;
    active->view->Activated();
    menus_.GiveKeysTo(active->kind->popup);
    session_.debugger.run_control.SetSourceViewCurrent(active->kind == &kSourceKind);
  });
  for (const WindowKind& kind : WindowKinds()) {
    if (kind.Permanent()) Open(kind);
  }
  menus_.SetChecked(commands::kSaveOnExit, session_.settings.Integer(keys::kSaveOnExit) > 0);
  menus_.SetChecked(commands::kRunToMain, session_.settings.Integer(keys::kRunToMain) > 0);
  menus_.ShowRecentFiles(session_.recent_files);
  ApplyTheme();
  help_.SetFrame(this, [this] {
    const TextView* const active = active_view();
    return active == nullptr ? QString() : active->objectName();
  });
  session_.ui.SetWindow(this);
  session_.SetScreen(this);
}

MainWindow::~MainWindow() {
  session_.SetScreen(nullptr);
  help_.SetFrame(nullptr, [] { return QString(); });
  session_.ui.SetWindow(nullptr);
  // The windows inside go while what they refer to is still there.
  area_->disconnect(this);
  delete takeCentralWidget();
}

ChildWindow& MainWindow::Open(const WindowKind& kind, const workspace::WindowAttributes& starting) {
  const std::vector<ChildWindow*> open = Children(kind);
  if (kind.OneAtMost() && !open.empty()) {
    area_->setActiveSubWindow(open.front());
    return *open.front();
  }
  const FrameLinks links{
      .send_command = [this](int id) { Send(id); },
      .show_popup = [this](TextView& view, QPoint global) { ShowPopup(view, global); },
      .follow_engine = [this] { UpdateViews(); },
      .carry_out = [this](const std::function<void()>& work) { dispatch_.CarryOut(work); },
      .describe = [this](const std::string& name) { return session_.Describe(name); }};
  TextView* const view = kind.make(session_, links, font_, starting);
  auto* const child = new ChildWindow(view, kind.title, kind.Permanent());
  child->setWindowIcon(kind.icon());
  view->SetTheme(*theme_);
  view->viewport()->installEventFilter(this);
  windows_.push_back({&kind, view, child});
  connect(view, &QObject::destroyed, this, [this, view] {
    std::erase_if(windows_, [view](const auto& w) { return w.view == view; });
  });
  area_->addSubWindow(child);
  child->resize(child->sizeHint().boundedTo(area_->size()));
  child->show();
  return *child;
}

std::vector<ChildWindow*> MainWindow::Children(const WindowKind& kind) const {
  std::vector<ChildWindow*> children;
  for (const OpenWindow& window : windows_) {
    if (window.kind == &kind) children.push_back(window.child);
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
  session_.RememberBreakpoints();
  if (const std::string problem = session_.TakeRecordingProblem(); !problem.empty()) {
    status_->ShowNotice(problem);
  }
  session_.gate.Run([this] { UpdateViews(); });
  if (++ticks_ % kTicksAClock != 0) return;
  status_->UpdateClock();
  ShowState();
  if (close_wanted_ && !session_.gate.busy()) close();
}

void MainWindow::UpdateViews() {
  session_.FollowEngine();
  // Whatever has ended the trace, its log is shown.
  if (const long logs = session_.debugger.trace.logs(); std::exchange(shown_logs_, logs) != logs) {
    Open(kTraceKind);
    session_.FollowEngine();
  }
  for (const OpenWindow& window : windows_) window.view->ShowChanges();
  const TextView* const active = active_view();
  status_->ShowUnderCursor(active != nullptr ? active->CursorText() : QString());
}

TextView* MainWindow::active_view() const {
  const auto active = std::ranges::find(windows_, area_->activeSubWindow(), &OpenWindow::child);
  return active == windows_.end() ? nullptr : active->view;
}

void MainWindow::RefreshActive() {
  if (TextView* const view = active_view()) view->RefreshFromTarget();
}

workspace::CommandConditions MainWindow::Conditions() const {
  return {.running = session_.debugger.activity.RunningShown(),
          .fileIoActive = session_.debugger.activity.FileIoActive(),
          .monitor_away = session_.debugger.Busy(),
          .operation = session_.debugger.activity.RunMode() == control::Mode::Operation,
          .repeating = RepeatingOf(session_.debugger.activity.RunMode())};
}

void MainWindow::ShowState() {
  const ConnectionState state = session_.Connection();
  status_->ShowConnection(state);
  const bool running = session_.debugger.activity.RunningShown();
  for (const OpenWindow& window : windows_) window.view->SetKnown(state.link_lost, running);
}

void MainWindow::Refresh() {
  const workspace::CommandConditions conditions = Conditions();
  menus_.Update(conditions);
  menus_.SetChecked(commands::kNStep, conditions.repeating == workspace::Repeating::NSteps);
  const control::FileIo& file_io = session_.debugger.file_io;
  menus_.SetChecked(commands::kFileIoIn, file_io.binding(control::FileSide::Input).enabled);
  menus_.SetChecked(commands::kFileIoOut, file_io.binding(control::FileSide::Output).enabled);
  tool_bar_->Update(conditions);
  ShowState();
  for (const OpenWindow& window : windows_) window.view->viewport()->update();
}

void MainWindow::RepaintAtWork() {
  for (const OpenWindow& window : windows_) window.view->viewport()->update();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void MainWindow::ShowPopup(TextView& view, QPoint global) {
  const auto window = std::ranges::find(windows_, &view, &OpenWindow::view);
  if (window == windows_.end()) return;
  area_->setActiveSubWindow(window->child);
  Refresh();
  menus_.PopUp(window->kind->popup, global, [&view](int id) { return view.ItemOf(id); });
}

void MainWindow::Zoom(int points) {
  session_.settings.Store(keys::kZoom, long{ZoomOf(session_.settings) + points});
  ApplyFont();
}

void MainWindow::ApplyFont() {
  font_ = FontOfSettings(session_.settings);
  for (const OpenWindow& window : windows_) window.view->SetViewFont(font_);
  QApplication::postEvent(area_, new QEvent(QEvent::LayoutRequest));
  session_.gate.Run([this] { UpdateViews(); });
}

void MainWindow::ApplyTheme() {
  theme_ = &FindTheme(session_.settings.String(keys::kTheme), palette());
  for (const OpenWindow& window : windows_) window.view->SetTheme(*theme_);
  for (const int command : {commands::kClassicColours, commands::kQuietColours}) {
    menus_.SetChecked(command, theme_->command == command);
  }
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ApplyTheme();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QMainWindow::eventFilter(watched, event);
  const auto& wheel = static_cast<const QWheelEvent&>(*event);
  if (!wheel.modifiers().testFlag(Qt::ControlModifier)) return false;
  if (wheel.angleDelta().y() != 0) Zoom(wheel.angleDelta().y() > 0 ? 1 : -1);
  return true;
}

bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    QTimer::singleShot(0, this, [this] { ReloadIfNewer(); });
  }
  // The help of the last menu item stays when the menu closes.
  if (event->type() == QEvent::StatusTip && static_cast<QStatusTipEvent*>(event)->tip().isEmpty()) {
    return true;
  }
  return QMainWindow::event(event);
}

void MainWindow::ReloadIfNewer() {
  const std::string path = session_.recent_files.current();
  if (path.empty() || session_.gate.busy() || !session_.debugger.loader.ImageIsNewer(path)) return;
  const std::pair version(path, base::ModificationTime(path));
  if (version == reloaded_) return;
  switch (workspace::Judge(*workspace::FindCommand(commands::kFirstRecentFile), Conditions())) {
    case workspace::Verdict::CarryOut:
      reloaded_ = version;
      Send(commands::kFirstRecentFile);
      break;
    case workspace::Verdict::StopFirst:
      status_->ShowNotice(kChangedMeanwhile, NoticeEnds::WhenReplaced);
      break;
    case workspace::Verdict::WaitFirst:
      status_->ShowNotice(kChangedWhileWritten, NoticeEnds::WhenReplaced);
      break;
    case workspace::Verdict::Ignore:
      break;
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (session_.gate.busy()) {
    event->ignore();
    close_wanted_ = true;
    return;
  }
  if (session_.settings.Integer(keys::kSaveOnExit) != 0) {
    StoreLayout(*this, session_.settings);
  } else {
    StoreAttributes(*this, session_.settings);
  }
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
  QTimer::singleShot(0, this, [this, path] { LoadWhenFree(path); });
}

void MainWindow::LoadWhenFree(const std::string& path) {
  if (session_.gate.busy()) {
    QTimer::singleShot(kTryAgainMs, this, [this, path] { LoadWhenFree(path); });
  } else {
    LoadFile(path);
  }
}

}  // namespace brevant::gui
