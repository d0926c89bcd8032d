// SPDX-License-Identifier: MIT
#include "images/flash_driver.h"

namespace brevant::images {
namespace {

constexpr base::Address kConfig1 = 0x001F;
constexpr std::uint8_t kCopDisable = 0x01;

// The registers that the monitor stacks, and the stack that it uses itself below them.
constexpr base::Address kFrameSize = 6;
constexpr base::Address kMonitorStack = 8;
constexpr base::Address kLastUsed = kBlockData + kBlockSize - 1;

}  // namespace

const FlashDevice& FlashDriver::device() const {
  return FlashDeviceByIndex(settings_.Integer(base::keys::kDevice));
}

void FlashDriver::MakeRoom() {
  const base::Address first = frame_.SP - kMonitorStack;
  const base::Address last = frame_.SP + kFrameSize - 1;
  const bool in_the_way = frame_.SP >= kMonitorStack && first <= kLastUsed && last >= kRoutine;
  if (in_the_way && !monitor_.LinkError()) frame_.SetStackPointer(kRoutineStack);
}

void FlashDriver::Download(base::Bytes routine) {
  monitor_.WriteBlock(kRoutine, routine);
}

void FlashDriver::PointAtRoutine() {
  frame_.SP = monitor_.ReadStackPointer();
  frame_.WriteProgramCounter(kRoutine);
}

void FlashDriver::DisableCop() {
  monitor_.WriteByte(kConfig1, kCopDisable);
}

void FlashDriver::LoadProgrammingRoutine() {
  Download(ProgrammingRoutine(device()));
  PointAtRoutine();
  DisableCop();
}

void FlashDriver::LoadMassEraseRoutine() {
  frame_.SP = monitor_.ReadStackPointer();
  Download(MassEraseRoutine(device()));
  frame_.WriteProgramCounter(kRoutine);
}

void FlashDriver::LoadEraseRangeRoutine(const ErasePlan& plan) {
  monitor_.WriteBlock(kEraseParameters, plan.parameters);
  Download(EraseRangeRoutine(device()));
}

void FlashDriver::WriteBlockData(base::Bytes bytes) {
  monitor_.WriteBlock(kBlockData, bytes);
}

void FlashDriver::WriteBlockParameters(base::Address address, std::size_t count) {
  monitor_.WriteBlock(kBlockParameters, BlockParameters(address, count));
}

void FlashDriver::WriteContinuedParameters(std::size_t count) {
  monitor_.WriteBlock(kBlockCounts, ContinuedParameters(count));
}

bool FlashDriver::VerifyFailed() {
  return monitor_.ReadByte(kVerifyCount) != 0;
}

}  // namespace brevant::images
