// SPDX-License-Identifier: MIT
#include "gui/flash_backup.h"

#include <QDateTime>
#include <filesystem>

#include "flash/blank_check.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "load/read_out.h"

namespace brevant::gui {
namespace {

constexpr const char* kTitle = "Back up flash";
constexpr const char* kNotLookedAt = "the target could not look whether it is blank";

// "count-backup-20250131-142305.s19"; "flash-backup-..." without an image.
std::string BackupPath(const std::string& image_path, const std::filesystem::path& settings) {
  const std::filesystem::path beside =
      image_path.empty() ? settings : std::filesystem::path(image_path);
  const std::string stem = image_path.empty() ? "flash" : beside.stem().string();
  const std::string when = Bytes(QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss"));
  return (beside.parent_path() / (stem + "-backup-" + when + ".s19")).string();
}

std::string WhyNot(const load::ReadOutResult& saved, const std::string& path) {
  switch (saved.outcome) {
    case load::ReadOutOutcome::Cancelled:
      return "it was cancelled";
    case load::ReadOutOutcome::LinkLost:
      return "the link to the target is lost";
    case load::ReadOutOutcome::Damaged:
      return base::Format("the line is too noisy to tell what stands at %04x", saved.address);
    default:
      return path + " cannot be written: " + saved.error;
  }
}

bool Refuse(Session& session, const std::string& why) {
  session.ui.ShowMessage(base::ToMessage(messages::kNotBackedUp, why));
  return false;
}

}  // namespace

bool BackUpFlash(const CommandContext& context, const std::string& image_path) {
  Session& session = context.session;
  debugger::Debugger& debugger = session.debugger;
  const auto flash = devices::FlashWithin(debugger.memory.device(), 0, base::kLastAddress);
  flash::BlankCheck blank(debugger.memory, debugger.monitor_link, debugger.frame);
  const auto used = blank.UsedPieces(flash);
  if (!used) return Refuse(session, kNotLookedAt);
  if (used->empty()) {
    context.window.status().ShowNotice("Flash is blank: there is nothing to back up.");
    return true;
  }
  images::Image known;
  for (const devices::MemoryRange& range : flash) {
    known.Put(range.first, std::vector<std::uint8_t>(range.last - range.first + 1, 0xFF));
  }
  const std::string path = BackupPath(image_path, session.settings.path());
  session.ui.BeginProgress(kTitle, "Reading flash...", true);
  const load::ReadOutResult saved = load::ReadOut(
      debugger.memory, debugger.crc, *used, std::move(known), path, [&](long done, long total) {
        return session.ui.UpdateProgress(
            base::Format("Reading flash: %ld of %ld bytes that are used", done, total), done,
            total);
      });
  session.ui.EndProgress();
  if (saved.outcome != load::ReadOutOutcome::Saved) return Refuse(session, WhyNot(saved, path));
  context.window.status().ShowNotice("Flash is saved as " + path, NoticeEnds::WhenReplaced);
  return true;
}

}  // namespace brevant::gui
