// SPDX-License-Identifier: MIT
// Target memory as a file: saved, and compared with one.
#include <QMdiArea>
#include <algorithm>

#include "base/files.h"
#include "devices/device.h"
#include "gui/command_actions.h"
#include "gui/compare_dialog.h"
#include "gui/data_window.h"
#include "gui/fields_dialog.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/memory_prompts.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "images/image_file.h"
#include "images/image_writer.h"
#include "load/read_out.h"
#include "load/verify.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kSaving = "Save memory";
constexpr const char* kReading = "Reading the target's memory";
constexpr const char* kComparing = "Compare with file";
constexpr const char* kFileStays = "no file was written";
constexpr const char* kEmpty = "it is empty";
constexpr const char* kSaveCancelled = "Cancelled: no file was written.";

std::optional<std::string> Choose(const CommandContext& context, workspace::Chooser which) {
  const Session& session = context.session;
  workspace::FileChooser chooser =
      workspace::PrepareChooser(which, session.recent_files.current(),
                                session.debugger.debug_info.tool_chain, base::WorkingDirectory());
  // Images have names of other formats too.
  chooser.default_extension = "s19";
  return ChooseFile(&context.window, context.session.ui, chooser);
}

void Save(const CommandContext& context) {
  Session& session = context.session;
  const auto range = AskForRange(context, views::RangeForm::kSaveDialog);
  if (!range) return;
  const auto path = Choose(context, workspace::Chooser::SaveMemory);
  if (!path) return;
  session.ui.BeginProgress(kSaving, kReading, true);
  const load::ReadOutResult saved = load::ReadOut(
      session.debugger.memory, session.debugger.crc, range->first, range->first + range->count - 1,
      *path,
      [&](long done, long total) { return session.ui.UpdateProgress(kReading, done, total); });
  session.ui.EndProgress();
  switch (saved.outcome) {
    case load::ReadOutOutcome::Saved:
      context.window.status().ShowNotice(base::Format("%ld bytes from %04x on were saved in %s.",
                                                      saved.bytes, range->first, *path));
      break;
    case load::ReadOutOutcome::Cancelled:
      context.window.status().ShowNotice(kSaveCancelled);
      break;
    case load::ReadOutOutcome::LinkLost:
      TellLinkLost(context, *range, saved.address - range->first, kFileStays);
      break;
    case load::ReadOutOutcome::Damaged:
      session.ui.ShowMessage(base::ToMessage(messages::kReadDamaged, saved.address, kFileStays));
      break;
    case load::ReadOutOutcome::UnknownFormat:
    case load::ReadOutOutcome::BadRange:
      session.ui.ShowMessage(base::ToMessage(messages::kUnknownFormat, *path));
      break;
    case load::ReadOutOutcome::NotWritten:
      session.ui.ShowMessage(base::ToMessage(messages::kFileNotWritten, *path, saved.error));
      break;
  }
}

// Nothing when it could not be read or the question for its place was cancelled; the user has been
// told.
std::optional<images::Image> ReadBinary(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  const base::FileText file = base::ReadFile(path);
  if (!file.ok()) {
    session.ui.ShowMessage(base::ToMessage(messages::kFileNotRead, path, file.error));
    return std::nullopt;
  }
  if (file.text.empty()) {
    session.ui.ShowMessage(base::ToMessage(messages::kFileNotRead, path, kEmpty));
    return std::nullopt;
  }
  views::PlaceForm form(file.text.size(), session.ui);
  std::optional<base::Address> address;
  session.gate.OpenDuring([&] {
    AskForFields(&context.window, context.window.view_font(), views::PlaceForm::kDialog,
                 CursorText(context), [&](std::span<const std::string> texts) {
                   address = form.Accept(texts);
                   return address ? std::nullopt : std::optional(form.refusal());
                 });
  });
  if (!address) return std::nullopt;
  const std::vector<std::uint8_t> bytes(file.text.begin(), file.text.end());
  images::Image image;
  image.Put(*address, bytes);
  return image;
}

std::optional<images::Image> ReadImage(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  if (images::FormatOfPath(path) == images::FileFormat::Binary) return ReadBinary(context, path);
  const images::ImageFile file = images::ReadImageFile(path);
  if (!file.report.ok()) {
    session.ui.ShowMessage(base::ToMessage(messages::kFileNotRead, path, file.report.file_error));
    return std::nullopt;
  }
  if (const auto refusal = file.report.Refusal(path)) {
    session.ui.ShowMessage(*refusal);
    return std::nullopt;
  }
  for (const base::Message& remark : file.report.Remarks(path)) session.ui.ShowMessage(remark);
  return file.ToImage();
}

bool CanBeRead(const Session& session, const images::Image& image) {
  const devices::Device& device = session.debugger.memory.device();
  return session.debugger.security.passed() ||
         std::ranges::none_of(image.Blocks(), [&device](const images::Block& block) {
           const auto last = block.address + static_cast<base::Address>(block.bytes.size()) - 1;
           return !devices::FlashWithin(device, block.address, last).empty();
         });
}

// What the comparison came to, in a sentence for each thing.
std::string Summary(const std::string& path, const load::VerifyResult& compared, long size) {
  std::string text = path + "\n\n";
  if (compared.last) {
    text += base::Format("%ld of its %ld bytes were compared, up to %04x: %ld differ.",
                         compared.compared, size, *compared.last, compared.different);
  } else {
    text += "Nothing was compared.";
  }
  if (compared.outcome == load::VerifyOutcome::LinkLost) text += messages::kCompareLinkLost;
  if (compared.outcome == load::VerifyOutcome::Cancelled) text += messages::kCompareCancelled;
  if (compared.different > static_cast<long>(compared.listed.size())) {
    text += base::Format(messages::kFirstAreListed, compared.listed.size());
  }
  return text;
}

void GoTo(const CommandContext& context, base::Address address) {
  MainWindow& window = context.window;
  auto* data = dynamic_cast<DataWindow*>(window.active_view());
  if (data == nullptr) {
    const std::vector<ChildWindow*> open = window.Children(kDataKind);
    ChildWindow& child = open.empty() ? window.Open(kDataKind) : *open.front();
    window.area().setActiveSubWindow(&child);
    data = static_cast<DataWindow*>(child.widget());
  }
  data->view().GoToDataAddress(address);
}

void Compare(const CommandContext& context) {
  Session& session = context.session;
  const auto path = Choose(context, workspace::Chooser::CompareFile);
  if (!path) return;
  const auto image = ReadImage(context, *path);
  if (!image) return;
  if (!CanBeRead(session, *image)) {
    session.ui.ShowMessage(base::ToMessage(messages::kFlashNotReadable));
    return;
  }
  session.debugger.memory.TakeDamage();  // of what came before
  session.ui.BeginProgress(kComparing, kReading, true);
  const load::VerifyResult compared = load::Verify(
      session.debugger.memory, *image,
      [&](long done, long total) { return session.ui.UpdateProgress(kReading, done, total); },
      &session.debugger.crc);
  session.ui.EndProgress();
  std::string text = Summary(*path, compared, image->size());
  const auto damaged = session.debugger.memory.TakeDamage();
  if (damaged) text += base::Format(messages::kCompareDamaged, *damaged);
  if (compared.outcome == load::VerifyOutcome::Equal && !damaged) {
    session.ui.ShowMessage(base::ToMessage(messages::kCompareEqual, compared.compared, *path));
    return;
  }
  if (compared.listed.empty()) {
    session.ui.ShowMessage(base::ToMessage(messages::kCompareNotDone, text));
    return;
  }
  const auto go_to = [context](base::Address address) {
    context.window.CarryOut([context, address] { GoTo(context, address); });
  };
  (new CompareDialog(&context.window, context.window.view_font(), Text(text), compared.listed,
                     go_to))
      ->show();
}

constexpr CommandAction kActions[] = {
    {commands::kSaveMemory, Save},
    {commands::kCompareFile, Compare},
};

}  // namespace

std::span<const CommandAction> MemoryFileActions() {
  return kActions;
}

}  // namespace brevant::gui
