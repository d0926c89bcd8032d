// SPDX-License-Identifier: MIT
// The frame: menus, toolbar, status bar and the windows inside it. It passes on what the user
// chooses to the dispatch, and repaints.
#pragma once

#include <QMainWindow>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gui/child_window.h"
#include "gui/command_dispatch.h"
#include "gui/help_window.h"
#include "gui/menus.h"
#include "gui/session.h"
#include "gui/status_line.h"
#include "gui/tool_bar.h"
#include "gui/window_kinds.h"

class QMdiArea;

namespace brevant::gui {

class MainWindow final : public QMainWindow, private Screen {
 public:
  // Not shown yet, and without windows inside but the registers'.
  MainWindow(Session& session, Help& help);
  ~MainWindow() override;

  // What the user has chosen. Nothing while something else is under way.
  void Send(int id) { dispatch_.Send(id); }
  // The same for what a window does by itself.
  void CarryOut(const std::function<void()>& work) { dispatch_.CarryOut(work); }
  // As if the user had chosen the file in the dialog of "Load".
  void LoadFile(const std::string& path) { dispatch_.LoadFile(path); }
  // Every 10 ms.
  void Tick();

  // One more; where there can be only one, that.
  ChildWindow& Open(const WindowKind& kind) { return Open(kind, kind.starting); }
  ChildWindow& Open(const WindowKind& kind, const workspace::WindowAttributes& starting);
  // In the order in which they were opened.
  std::vector<ChildWindow*> Children(const WindowKind& kind) const;
  // Of the active window; nullptr when there is none.
  TextView* active_view() const;
  QMdiArea& area() { return *area_; }
  Help& help() { return help_; }
  StatusLine& status() { return *status_; }
  Menus& menus() { return menus_; }
  const QFont& view_font() const { return font_; }
  // The font of the settings, from now on.
  void ApplyFont();
  // All text by so many points larger, from now on.
  void Zoom(int points);
  // The theme of the settings, from now on.
  void ApplyTheme();

  // Lets the windows read what they are to show. The gate is held.
  void UpdateViews();
  // The active window asks the target for everything that it shows.
  void RefreshActive();
  // Everything that depends on the engine's state is shown anew; nothing is read.
  void Refresh() override;
  // As seen by menus, buttons and the dispatch.
  workspace::CommandConditions Conditions() const;
  // Gives the inner area its final size before the frame is shown.
  void LayOutNow();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct OpenWindow {
    const WindowKind* kind;
    TextView* view;
    ChildWindow* child;
  };

  void RepaintAtWork() override;
  // In the status bar, and which windows still show what is so.
  void ShowState();
  void ShowPopup(TextView& view, QPoint global);
  void ReloadIfNewer();
  // As soon as nothing else is under way.
  void LoadWhenFree(const std::string& path);

  Session& session_;
  Help& help_;
  CommandDispatch dispatch_;
  QFont font_;
  const Theme* theme_;
  QMdiArea* area_;
  StatusLine* status_;
  Menus menus_;
  ToolBar* tool_bar_;
  std::vector<OpenWindow> windows_;
  int ticks_ = 0;
  long shown_logs_ = 0;        // of the trace
  bool close_wanted_ = false;  // while something was under way
  // The version of the image that was reloaded last, so that one which cannot be loaded is not
  // tried again at every activation.
  std::pair<std::string, std::optional<long long>> reloaded_;
};

}  // namespace brevant::gui
