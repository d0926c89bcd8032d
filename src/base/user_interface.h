// SPDX-License-Identifier: MIT
// How the engine speaks to the user. The console and the windows implement it; no engine code
// prints or opens a window.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brevant::base {

enum class Icon { None, Information, Question, Warning, Error };
enum class Buttons { Ok, OkCancel, YesNo };
enum class Answer { Ok, Cancel, Yes, No };

// Warning: something is amiss or at stake. Error: what was asked for has not come about; a console
// command then fails.
enum class Severity { Notice, Warning, Error };

struct Message {
  std::string id;  // short and stable, such as "load.file-not-found"; unique in the program
  Severity severity = Severity::Notice;
  std::string text;
  std::string caption;
  Icon icon = Icon::None;
  Buttons buttons = Buttons::Ok;
  // Enter takes the button that leaves all as it is: what is asked for was not chosen, or cannot be
  // undone.
  bool enter_declines = false;
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // Shows the message and waits for the answer.
  virtual Answer ShowMessage(const Message& message) = 0;
  // The same, and offers what could be done instead, a button each. The number of the one that was
  // chosen; nothing when the message was only read, as by whoever offers no such choice.
  virtual std::optional<std::size_t> Offer(const Message& message, std::span<const char* const>) {
    ShowMessage(message);
    return std::nullopt;
  }
  // Rejected input.
  virtual void Beep() = 0;
  // The main window's title; the console shows it as a status line on a terminal.
  virtual void SetTitle(std::string_view title) = 0;

  // Progress of one long operation. Text is shown as it stands; total 0 means that the end is not
  // known. UpdateProgress gives windows a chance to repaint and returns false once the user has
  // asked to cancel an operation that may be cancelled.
  virtual void BeginProgress(std::string_view title, std::string_view text, bool can_cancel) = 0;
  virtual bool UpdateProgress(std::string_view text, long done, long total) = 0;
  virtual void EndProgress() = 0;

  virtual void SetBusyCursor(bool busy) = 0;
};

}  // namespace brevant::base
