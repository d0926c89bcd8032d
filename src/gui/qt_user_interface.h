// SPDX-License-Identifier: MIT
// The engine's messages, progress, title and cursor as windows of the desktop.
#pragma once

#include <functional>
#include <memory>

#include "base/user_interface.h"
#include "gui/progress_dialog.h"

class QWidget;

namespace brevant::gui {

class QtUserInterface final : public base::UserInterface {
 public:
  // The window whose title is set and that dialogs belong to. Borrowed; none at first.
  void SetWindow(QWidget* window) { window_ = window; }
  QWidget* parent() const;

  // Shown at once, for an operation that will not report.
  void ShowWaiting(std::string_view title, std::string_view text);

  base::Answer ShowMessage(const base::Message& message) override;
  std::optional<std::size_t> Offer(const base::Message& message,
                                   std::span<const char* const> buttons) override;
  void Beep() override;
  void SetTitle(std::string_view title) override;
  void BeginProgress(std::string_view title, std::string_view text, bool can_cancel) override;
  bool UpdateProgress(std::string_view text, long done, long total) override;
  void EndProgress() override;
  void SetBusyCursor(bool busy) override;

 private:
  QWidget* window_ = nullptr;
  std::unique_ptr<ProgressDialog> progress_;
};

// Engine texts are bytes; what is not UTF-8 shows as replacement characters.
QString Text(std::string_view text);
std::string Bytes(const QString& text);

}  // namespace brevant::gui
