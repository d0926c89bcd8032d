// SPDX-License-Identifier: MIT
#include "flash/flash_commands.h"

#include "flash/flash_records.h"

namespace brevant::flash {
namespace {

constexpr base::Address kLastAddress = 0xFFFF;

bool RefuseSaying(FlashJob& job, const base::Message& why) {
  job.surroundings().ui.ShowMessage(why);
  return job.Refuse();
}

// What it was loaded for is about to go.
void DropDebugInfo(FlashJob& job) {
  job.surroundings().debug_info.DebugInfoLoaded = false;
}

}  // namespace

bool MassEraseCommand(FlashJob& job) {
  const auto answer = job.surroundings().ui.ShowMessage(ToMessage(messages::kConfirmMassErase));
  return answer == base::Answer::Yes ? MassEraseFlash(job) : job.Refuse();
}

bool MassEraseFlash(FlashJob& job) {
  DropDebugInfo(job);
  return job.Start(PlanMassErase());
}

bool EraseFlashRange(FlashJob& job, base::Address start, base::Address end) {
  const FlashSurroundings& with = job.surroundings();
  DropDebugInfo(job);
  if (with.ui.ShowMessage(ToMessage(messages::kConfirmErase)) != base::Answer::Ok) {
    return job.Refuse();
  }
  if (end <= start || end > kLastAddress) {
    return RefuseSaying(job, ToMessage(messages::kEndNotAboveStart));
  }
  return job.Start(PlanEraseRange(with.memory.device().flash, start, end));
}

bool ProgramIrqVector(FlashJob& job) {
  DropDebugInfo(job);
  return job.Start(PlanIrqVector());
}

bool ProgramFlashLocations(FlashJob& job, base::Address address, base::Bytes bytes) {
  if (bytes.empty()) return RefuseSaying(job, ToMessage(messages::kNoData));
  if (address > kLastAddress) return RefuseSaying(job, ToMessage(messages::kNotHexAddress));
  DropDebugInfo(job);
  return job.Start(PlanLocations(address, bytes));
}

bool ProgramFlashFile(FlashJob& job, const std::string& path) {
  return ProgramFlashFile(job, path, images::ReadImageFile(path, ParseFlashRecords));
}

bool ProgramFlashFile(FlashJob& job, const std::string& path, const images::ImageFile& file) {
  DropDebugInfo(job);
  if (!file.report.ok()) {
    return RefuseSaying(job, ToMessage(messages::kProgramFileNotOpened, path));
  }
  base::SettingsFile& settings = job.surroundings().settings;
  if (settings.String(base::keys::kProgramFile) != path) {
    settings.Store(base::keys::kProgramFile, path);
  }
  return job.Start(PlanFile(file, path));
}

}  // namespace brevant::flash
