// SPDX-License-Identifier: MIT
// Target memory to the clipboard and back.
#include <QClipboard>
#include <QGuiApplication>
#include <utility>

#include "gui/command_actions.h"
#include "gui/fields_dialog.h"
#include "gui/main_window.h"
#include "gui/memory_prompts.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "views/block_form.h"
#include "views/clipboard_text.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kCopying = "Copying to clipboard...";
constexpr const char* kPasting = "Pasting from Clipboard...";
constexpr const char* kClipboardStays = "the clipboard is as it was";
constexpr const char* kCopyCancelled = "Cancelled: the clipboard is as it was.";
constexpr const char* kNothingWritten = "Nothing was written.";
constexpr const char* kLinesBefore = "The lines before it were written and read back.";

// Of the main window, until the end of the scope.
class Title {
 public:
  Title(MainWindow& window, const char* title) : window_(window), before_(window.windowTitle()) {
    window.setWindowTitle(title);
  }
  ~Title() { window_.setWindowTitle(before_); }
  Title(const Title&) = delete;
  Title& operator=(const Title&) = delete;

 private:
  MainWindow& window_;
  QString before_;
};

// What was read of the range in whole words; less when it ended before.
load::ConfirmedRead ReadShown(const CommandContext& context, base::Address first,
                              std::span<std::uint8_t> bytes) {
  Session& session = context.session;
  const Title title(context.window, kCopying);
  session.ui.BeginProgress(kCopying, kCopying, true);
  const load::ConfirmedRead read = load::ReadConfirmed(
      session.debugger.memory, session.debugger.crc, first, bytes,
      [&](long done, long total) { return session.ui.UpdateProgress(kCopying, done, total); });
  session.ui.EndProgress();
  return read;
}

void Copy(const CommandContext& context) {
  Session& session = context.session;
  const auto range = AskForRange(context, views::RangeForm::kCopyDialog);
  if (!range) return;
  // The last word may include the byte behind the range.
  std::vector<std::uint8_t> bytes((range->count + 1) / 2 * 2);
  const load::ConfirmedRead read = ReadShown(context, range->first, bytes);
  if (read.range == load::RangeResult::LinkLost) {
    TellLinkLost(context, *range, read.bytes, kClipboardStays);
  } else if (read.damaged) {
    session.ui.ShowMessage(base::ToMessage(messages::kReadDamaged, *read.damaged, kClipboardStays));
  } else if (read.range == load::RangeResult::Stopped) {
    context.window.status().ShowNotice(kCopyCancelled);
  } else {
    const QString text = Text(views::ClipboardText(bytes));
    QGuiApplication::clipboard()->setText(text);
    if (QGuiApplication::clipboard()->text() != text) {
      session.ui.ShowMessage(base::ToMessage(messages::kClipboardNotTaken));
      return;
    }
    context.window.status().ShowNotice(base::Format("%ld words from %04x on are in the clipboard.",
                                                    bytes.size() / 2, range->first));
  }
}

// True when all of it was written.
bool Write(const CommandContext& context, const views::BlockOperation& operation) {
  views::BlockJob& block = context.session.debugger.block;
  const Title title(context.window, kPasting);
  if (block.Run(operation) != views::BlockOutcome::Done) return false;
  const base::Message done =
      views::BlockMessage(*block.operation(), context.session.debugger.memory);
  context.window.status().ShowNotice(done.text);
  return true;
}

void Paste(const CommandContext& context) {
  Session& session = context.session;
  views::PasteForm form(session.debugger.memory, session.ui);
  std::string text;
  views::ClipboardWords words;
  bool accepted = false;
  session.gate.OpenDuring([&] {
    accepted = AskForFields(
        &context.window, context.window.view_font(), views::PasteForm::kDialog, CursorText(context),
        [&](std::span<const std::string> texts) {
          text = Bytes(QGuiApplication::clipboard()->text());
          words = views::ParseClipboardText(text, views::LineEnds::TwoCharacters);
          return form.Accept(texts, words.bytes) ? std::nullopt : std::optional(form.refusal());
        });
  });
  if (!accepted) return;
  if (text.empty()) {
    session.ui.ShowMessage(base::ToMessage(messages::kNotCorrectFormat));
    return;
  }
  if (form.operation() && !Write(context, *form.operation())) return;
  if (!words.wrong_line) return;
  const base::Message wrong = base::ToMessage(messages::kNotHexString, *words.wrong_line,
                                              form.operation() ? kLinesBefore : kNothingWritten);
  // Editors end lines otherwise.
  const auto lines = views::ParseClipboardText(text, views::LineEnds::LineFeeds);
  static constexpr const char* kReadLines[] = {"Paste line by line"};
  if (lines.wrong_line || lines.bytes.empty()) {
    session.ui.ShowMessage(wrong);
  } else if (session.ui.Offer(wrong, kReadLines)) {
    Write(context, views::BlockOperation::Paste(form.address(), lines.bytes));
  }
}

constexpr CommandAction kActions[] = {
    {commands::kCopyToClipboard, Copy},
    {commands::kPasteFromClipboard, Paste},
};

}  // namespace

std::span<const CommandAction> ClipboardActions() {
  return kActions;
}

}  // namespace brevant::gui
