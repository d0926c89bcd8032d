// SPDX-License-Identifier: MIT
#include "gui/help_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "gui/qt_user_interface.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

constexpr QSize kUsualSize(900, 620);
constexpr int kTopicsWidth = 270;
constexpr const char* kWindowName = "HelpWindow";
constexpr const char* kActionName = "command";  // before the id, in an action's object name

// Where the heading of that text stands, or the page's beginning.
QTextCursor FindHeading(const QTextDocument& page, const QString& heading) {
  for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() > 0 &&
        block.text().compare(heading, Qt::CaseInsensitive) == 0)
      return QTextCursor(block);
  }
  return QTextCursor(page.begin());
}

// A menu item's text as a heading of the guide says it: "&Save memory as..." is "Save memory as".
QString HeadingOf(const workspace::CommandRow& row) {
  return Text(row.text).remove('&').remove("...");
}

}  // namespace

HelpWindow::HelpWindow(QWidget* parent, const guide::Guide& guide)
    : QDialog(parent), guide_(guide) {
  setObjectName(kWindowName);
  setWindowTitle("Help");
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  // Where a desktop is enlarged, its screen is small.
  resize(kUsualSize.boundedTo(screen()->availableSize() * 9 / 10));
  auto* const layout = new QVBoxLayout(this);
  auto* const split = new QSplitter;
  auto* const side = new QWidget;
  auto* const column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  search_ = new QLineEdit;
  search_->setObjectName("search");
  search_->setPlaceholderText("Search for help");
  search_->setAccessibleName("Search for help");
  search_->setClearButtonEnabled(true);
  list_ = new QListWidget;
  list_->setObjectName("topics");
  list_->setAccessibleName("Topics");
  column->addWidget(search_);
  column->addWidget(list_);
  page_ = new QTextBrowser;
  page_->setObjectName("page");
  page_->setAccessibleName("Page");
  page_->setOpenLinks(false);
  split->addWidget(side);
  split->addWidget(page_);
  split->setSizes({kTopicsWidth, kUsualSize.width() - kTopicsWidth});
  split->setStretchFactor(1, 1);
  layout->addWidget(split);
  auto* const buttons = new QHBoxLayout;
  const auto add = [&](const char* text, const char* name, const char* key, auto act) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false);
    if (key != nullptr) button->setShortcut(QKeySequence(key));
    connect(button, &QPushButton::clicked, this, act);
    buttons->addWidget(button);
  };
  add("&Back", "back", "Alt+Left", [this] { Back(); });
  add("Con&tents", "contents", nullptr, [this] {
    if (const guide::Topic* const contents = guide_.Find(guide::Guide::kContents))
      ShowTopic(*contents);
  });
  buttons->addStretch(1);
  add("&Close", "close", nullptr, [this] { close(); });
  layout->addLayout(buttons);
  connect(search_, &QLineEdit::textChanged, this, [this] { List(); });
  connect(search_, &QLineEdit::returnPressed, this, [this] {
    if (!listed_.empty()) ShowTopic(*listed_.front());
  });
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0) ShowTopic(*listed_[static_cast<std::size_t>(row)]);
  });
  connect(page_, &QTextBrowser::anchorClicked, this,
          [this](const QUrl& link) { Follow(link.toString()); });
  List();
}

void HelpWindow::ShowTopic(const guide::Topic& topic, const QString& section) {
  if (shown_.topic == &topic && shown_.section == section) return;
  if (shown_.topic != nullptr) before_.push_back(shown_);
  Show({&topic, section});
}

void HelpWindow::BeginSearch() {
  search_->setFocus();
  search_->selectAll();
}

void HelpWindow::List() {
  const QSignalBlocker quiet(list_);
  list_->clear();
  listed_ = guide_.Search(Bytes(search_->text()));
  for (const guide::Topic* const topic : listed_) {
    list_->addItem(Text(topic->title));
    if (topic == shown_.topic) list_->setCurrentRow(list_->count() - 1);
  }
}

void HelpWindow::Follow(const QString& link) {
  const QString file = link.section('#', 0, 0);
  const guide::Topic* const topic = file.isEmpty() ? shown_.topic : guide_.Find(Bytes(file));
  if (topic != nullptr) ShowTopic(*topic, link.section('#', 1).replace('-', ' '));
}

void HelpWindow::Show(const Place& place) {
  const bool same = shown_.topic == place.topic;
  shown_ = place;
  if (!same) page_->setMarkdown(Text(place.topic->markdown));
  QTextCursor at = FindHeading(*page_->document(), place.section);
  // From the end upwards, so that the heading stands at the top of what is seen.
  page_->moveCursor(QTextCursor::End);
  page_->setTextCursor(at);
  page_->ensureCursorVisible();
  List();
}

void HelpWindow::Back() {
  if (before_.empty()) return;
  const Place place = before_.back();
  before_.pop_back();
  Show(place);
}

Help::Help() : guide_(guide::Pages()) {
  qApp->installEventFilter(this);
}

void Help::SetFrame(QWidget* frame, std::function<QString()> active_window) {
  frame_ = frame;
  active_window_ = std::move(active_window);
}

HelpWindow& Help::Window() {
  QWidget* parent = QApplication::activeModalWidget();
  if (parent == nullptr) parent = frame_;
  if (parent != nullptr) {
    if (auto* const open = parent->findChild<HelpWindow*>(kWindowName, Qt::FindDirectChildrenOnly))
      return *open;
  }
  return *new HelpWindow(parent, guide_);
}

void Help::Show(const guide::Topic* topic, const QString& section) {
  if (topic == nullptr) return;
  HelpWindow& window = Window();
  window.ShowTopic(*topic, section);
  window.show();
  window.raise();
  window.activateWindow();
}

void Help::ShowContents() {
  Show(guide_.Find(guide::Guide::kContents));
}

void Help::ShowSearch() {
  ShowContents();
  Window().BeginSearch();
}

void Help::ShowCommand(int id) {
  const workspace::CommandRow* row = workspace::FindCommand(id);
  if (row == nullptr) return;
  if (row->same_as != 0) row = workspace::FindCommand(row->same_as);
  Show(guide_.OfCommand(row->id), HeadingOf(*row));
}

void Help::AskedIn(QMenu& menu) {
  const QAction* const item = menu.activeAction();
  if (item == nullptr || !item->objectName().startsWith(kActionName)) return;
  const int id = item->objectName().mid(static_cast<int>(qstrlen(kActionName))).toInt();
  while (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
  // Once the menu has let go of keyboard and mouse.
  QTimer::singleShot(0, this, [this, id] { ShowCommand(id); });
}

void Help::AskedIn(const QString& window_or_dialog) {
  const std::string name = Bytes(window_or_dialog);
  const guide::Topic* topic = guide_.OfDialog(name);
  if (topic == nullptr) topic = guide_.OfWindow(name);
  Show(topic != nullptr ? topic : guide_.Find(guide::Guide::kContents));
}

bool Help::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (key.key() != Qt::Key_F1 || key.modifiers() != Qt::NoModifier) return false;
  const QWidget& at = *static_cast<QWidget*>(watched)->window();
  if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
    AskedIn(*menu);
  } else if (at.objectName() != kWindowName) {
    AskedIn(&at == frame_ ? active_window_() : at.objectName());
  }
  return true;
}

}  // namespace brevant::gui
