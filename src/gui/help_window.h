// SPDX-License-Identifier: MIT
// The help: the pages of the guide in a window with contents and search, and F1 wherever it is
// pressed.
#pragma once

#include <QDialog>
#include <QObject>
#include <functional>
#include <vector>

#include "guide/topics.h"

class QLineEdit;
class QListWidget;
class QMenu;
class QTextBrowser;
class QWidget;

namespace brevant::gui {

class HelpWindow final : public QDialog {
 public:
  // Lives as long as its parent, or until it is closed. The guide is borrowed.
  HelpWindow(QWidget* parent, const guide::Guide& guide);

  // With a section the page begins with the heading of that text, where it has one.
  void ShowTopic(const guide::Topic& topic, const QString& section = {});
  // The field for what is looked for has the focus.
  void BeginSearch();

 private:
  struct Place {
    const guide::Topic* topic = nullptr;
    QString section;
  };

  void List();
  void Follow(const QString& link);
  void Show(const Place& place);
  void Back();

  const guide::Guide& guide_;
  QLineEdit* search_;
  QListWidget* list_;
  QTextBrowser* page_;
  std::vector<const guide::Topic*> listed_;
  std::vector<Place> before_;
  Place shown_;
};

// Opens the help where it is asked for: F1 in a window, in a dialog, on an item of an open menu.
class Help final : public QObject {
 public:
  Help();

  // F1 in the frame asks for the topic of the window inside that is active; its object name, empty
  // for none. The frame is borrowed.
  void SetFrame(QWidget* frame, std::function<QString()> active_window);

  void ShowContents();
  void ShowSearch();
  // Of a command; nothing happens where none explains it.
  void ShowCommand(int id);
  const guide::Guide& guide() const { return guide_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The help above whatever is modal now, which would not let another window have input.
  HelpWindow& Window();
  void Show(const guide::Topic* topic, const QString& section = {});
  void AskedIn(QMenu& menu);
  void AskedIn(const QString& window_or_dialog);

  QWidget* frame_ = nullptr;
  std::function<QString()> active_window_ = [] { return QString(); };
  guide::Guide guide_;
};

}  // namespace brevant::gui
