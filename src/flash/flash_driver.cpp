// SPDX-License-Identifier: MIT
#include "flash/flash_driver.h"

#include "devices/hc08.h"

namespace brevant::flash {
namespace {

// The registers that the monitor stacks, and the stack that it uses itself below them.
constexpr base::Address kFrameSize = 6;
constexpr base::Address kMonitorStack = 8;
constexpr base::Address kLastUsed = kBlockData + kBlockSize - 1;

}  // namespace

const devices::FlashGeometry& FlashDriver::flash() const {
  return devices::BySettingsNumber(settings_.Integer(base::keys::kDevice)).flash;
}

void FlashDriver::MakeRoom() {
  const base::Address first = frame_.SP - kMonitorStack;
  const base::Address last = frame_.SP + kFrameSize - 1;
  const bool in_the_way = frame_.SP >= kMonitorStack && first <= kLastUsed && last >= kRoutine;
  if (in_the_way && !memory_.LinkError()) frame_.SetStackPointer(kRoutineStack);
}

void FlashDriver::Download(base::Bytes routine) {
  memory_.WriteBytes(kRoutine, routine);
}

void FlashDriver::PointAtRoutine() {
  frame_.SP = memory_.ReadStackPointer();
  frame_.WriteProgramCounter(kRoutine);
}

void FlashDriver::DisableCop() {
  memory_.WriteByte(devices::kConfig1, devices::kCopDisable);
}

void FlashDriver::LoadProgrammingRoutine() {
  Download(ProgrammingRoutine(flash()));
  PointAtRoutine();
  DisableCop();
}

void FlashDriver::LoadMassEraseRoutine() {
  frame_.SP = memory_.ReadStackPointer();
  Download(MassEraseRoutine(flash()));
  frame_.WriteProgramCounter(kRoutine);
}

void FlashDriver::LoadEraseRangeRoutine(const ErasePlan& plan) {
  memory_.WriteBytes(kEraseParameters, plan.parameters);
  Download(EraseRangeRoutine(flash()));
}

void FlashDriver::WriteBlockData(base::Bytes bytes) {
  memory_.WriteBytes(kBlockData, bytes);
}

void FlashDriver::WriteBlockParameters(base::Address address, std::size_t count) {
  memory_.WriteBytes(kBlockParameters, BlockParameters(address, count));
}

void FlashDriver::WriteContinuedParameters(std::size_t count) {
  memory_.WriteBytes(kBlockCounts, ContinuedParameters(count));
}

bool FlashDriver::VerifyFailed() {
  return memory_.AskByte(kVerifyCount) != 0;
}

}  // namespace brevant::flash
