// SPDX-License-Identifier: MIT
#include "flash/flash_commands.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "devices/hc08.h"
#include "flash/flash_compare.h"
#include "flash/flash_records.h"

namespace brevant::flash {
namespace {

constexpr std::uint32_t kBlankWord = 0xFFFF;
constexpr const char* kComparingWithFile = "Comparing flash with the file...";

bool RefuseSaying(FlashJob& job, const base::Message& why) {
  job.surroundings().ui.ShowMessage(why);
  return job.Refuse();
}

// "8000-fdff, ff7e, ffdc-ffff".
std::string FlashText(const devices::Device& device) {
  std::string text;
  for (const devices::MemoryRange& range : devices::FlashWithin(device, 0, base::kLastAddress)) {
    if (!text.empty()) text += ", ";
    text += base::Format("%04x", range.first);
    if (range.last != range.first) text += base::Format("-%04x", range.last);
  }
  return text;
}

bool RefuseOutsideFlash(FlashJob& job, base::Address address) {
  const devices::Device& device = job.surroundings().memory.device();
  return RefuseSaying(
      job, ToMessage(messages::kNotFlash, address, std::string(device.name), FlashText(device)));
}

// The first address of the file that no flash can take, if any.
std::optional<base::Address> FirstOutsideFlash(const devices::Device& device,
                                               const images::ImageFile& file) {
  for (const images::ImageRecord& record : file.records) {
    if (record.kind != images::ImageRecord::Kind::Data) continue;
    const auto count = static_cast<base::Address>(record.bytes.size());
    if (const auto at = devices::FirstOutsideFlash(device, record.address, count)) return at;
  }
  return std::nullopt;
}

// Whether the page that holds the address has flash in it.
bool InFlashPage(const devices::Device& device, base::Address address) {
  const base::Address mask = device.flash.page_mask();
  return !devices::FlashWithin(device, address & ~mask, address | mask).empty();
}

// The oscillator trim that stands in pages that are about to go.
std::optional<std::uint8_t> TrimAtStake(const FlashSurroundings& with, const FlashPlan& plan) {
  const base::Address at = with.memory.device().flash.trim;
  const bool at_stake = at != 0 && with.security.passed() &&
                        std::ranges::any_of(plan.to_erase, [at](const auto& range) {
                          return at >= range.first && at <= range.last;
                        });
  const std::uint8_t trim = at_stake ? with.memory.AskByte(at) : devices::kBlank;
  if (trim == devices::kBlank || with.memory.LinkError()) return std::nullopt;
  return trim;
}

bool StartErase(FlashJob& job, FlashPlan plan) {
  const FlashSurroundings& with = job.surroundings();
  const base::Address at = with.memory.device().flash.trim;
  if (const auto trim = TrimAtStake(with, plan)) {
    const auto answer = with.ui.ShowMessage(ToMessage(messages::kTrimAtStake, at, *trim));
    if (answer == base::Answer::Yes) plan.trim = trim;
  }
  return job.Start(std::move(plan));
}

// What it was loaded for is about to go.
void DropDebugInfo(FlashJob& job) {
  job.surroundings().debug_info.DebugInfoLoaded = false;
}

// What flash holds where the image is.
images::Image InFlash(memory::Memory& memory, const images::Image& image,
                      const std::vector<PagePart>& parts) {
  images::Image found;
  for (const PagePart& part : parts) {
    std::vector<std::uint8_t> bytes(part.count, devices::kBlank);
    if (part.holds == Holds::Other) memory.AskChecked(bytes, part.first);
    for (std::size_t i = 0; i < bytes.size() && part.holds == Holds::TheImage; ++i) {
      bytes[i] = image.At(part.first + static_cast<base::Address>(i)).value_or(devices::kBlank);
    }
    found.Put(part.first, bytes);
  }
  return found;
}

// False when the user has cancelled, or does not want to program over what stands there. What the
// target cannot tell is programmed.
bool SpareWhatStands(const FlashSurroundings& with, control::TargetCrc& crc,
                     const images::Image& image, FlashPlan& plan) {
  with.ui.BeginProgress(plan.task->progress_title, kComparingWithFile, true);
  const Comparison found =
      CompareWithFlash(crc, with.memory.device().flash, image, [&](long done, long total) {
        return with.ui.UpdateProgress(kComparingWithFile, done, total);
      });
  with.ui.EndProgress();
  if (found.end != Comparison::End::Complete || with.memory.LinkError())
    return found.end != Comparison::End::Cancelled;
  const images::Image in_flash = InFlash(with.memory, image, found.parts);
  SpareBlocks(plan, in_flash);
  const auto taken = FirstNotBlank(plan, in_flash);
  if (!taken || with.memory.LinkError()) return true;
  const base::Message question = ToMessage(messages::kNotBlankBefore, *taken, *in_flash.At(*taken));
  return with.ui.ShowMessage(question) == base::Answer::Yes;
}

}  // namespace

bool MassEraseCommand(FlashJob& job) {
  const auto answer = job.surroundings().ui.ShowMessage(ToMessage(messages::kConfirmMassErase));
  return answer == base::Answer::Yes ? MassEraseFlash(job) : job.Refuse();
}

bool MassEraseFlash(FlashJob& job) {
  DropDebugInfo(job);
  return StartErase(job, PlanMassErase(job.surroundings().memory.device()));
}

bool EraseFlashRange(FlashJob& job, base::Address start, base::Address end) {
  const FlashSurroundings& with = job.surroundings();
  DropDebugInfo(job);
  if (with.ui.ShowMessage(ToMessage(messages::kConfirmErase)) != base::Answer::Ok) {
    return job.Refuse();
  }
  if (end <= start || end > base::kLastAddress) {
    return RefuseSaying(job, ToMessage(messages::kEndNotAboveStart));
  }
  const devices::Device& device = with.memory.device();
  for (const base::Address at : {start, end}) {
    if (!InFlashPage(device, at)) return RefuseOutsideFlash(job, at);
  }
  return StartErase(job, PlanEraseRange(device, start, end));
}

bool ErasePages(FlashJob& job, const devices::MemoryRange& pages,
                const images::Image& programmed_next) {
  DropDebugInfo(job);
  const FlashSurroundings& with = job.surroundings();
  FlashPlan plan = PlanEraseRange(with.memory.device(), pages.first, pages.last);
  const base::Address at = with.memory.device().flash.trim;
  if (const auto trim = TrimAtStake(with, plan)) {
    if (programmed_next.At(at)) {
      with.ui.ShowMessage(ToMessage(messages::kTrimReplaced, at, *trim));
    } else {
      plan.trim = trim;
    }
  }
  return job.Start(std::move(plan));
}

bool ProgramIrqVector(FlashJob& job) {
  if (job.surroundings().security.passed()) {
    std::array<std::uint8_t, 2> vector{};
    job.surroundings().memory.AskBytes(vector, devices::kIrqVector);
    const std::uint32_t used = base::Word(vector[0], vector[1]);
    if (used != kBlankWord && !job.surroundings().memory.LinkError()) {
      return RefuseSaying(job, ToMessage(messages::kIrqVectorUsed, used));
    }
  }
  DropDebugInfo(job);
  return job.Start(PlanIrqVector(job.surroundings().memory.device().flash));
}

bool ProgramFlashLocations(FlashJob& job, base::Address address, base::Bytes bytes) {
  if (bytes.empty()) return RefuseSaying(job, ToMessage(messages::kNoData));
  if (address > base::kLastAddress) return RefuseSaying(job, ToMessage(messages::kNotHexAddress));
  const devices::Device& device = job.surroundings().memory.device();
  const auto count = static_cast<base::Address>(bytes.size());
  if (const auto at = devices::FirstOutsideFlash(device, address, count)) {
    return RefuseOutsideFlash(job, *at);
  }
  DropDebugInfo(job);
  return job.Start(PlanLocations(device.flash, address, bytes));
}

bool ProgramFlashFile(FlashJob& job, const std::string& path) {
  return ProgramFlashFile(job, path, images::ReadImageFile(path, ParseFlashRecords));
}

bool FitsFlash(FlashJob& job, const std::string& path, const images::ImageFile& file) {
  if (!file.report.ok()) {
    return RefuseSaying(job, ToMessage(messages::kProgramFileNotOpened, path));
  }
  const devices::Device& device = job.surroundings().memory.device();
  if (const auto refusal = file.report.Refusal(path)) return RefuseSaying(job, *refusal);
  if (const auto at = FirstOutsideFlash(device, file)) return RefuseOutsideFlash(job, *at);
  return true;
}

bool ProgramFlashFile(FlashJob& job, const std::string& path, const images::ImageFile& file,
                      control::TargetCrc* crc) {
  DropDebugInfo(job);
  if (!FitsFlash(job, path, file)) return false;
  const devices::Device& device = job.surroundings().memory.device();
  base::SettingsFile& settings = job.surroundings().settings;
  if (settings.String(base::keys::kProgramFile) != path) {
    settings.Store(base::keys::kProgramFile, path);
  }
  FlashPlan plan = PlanFile(device.flash, file, path);
  const bool spares = crc != nullptr && settings.Integer(base::keys::kSkipSame) != 0;
  if (spares && job.surroundings().security.passed() &&
      !SpareWhatStands(job.surroundings(), *crc, file.ToImage(), plan)) {
    return job.Refuse();
  }
  return job.Start(std::move(plan));
}

}  // namespace brevant::flash
