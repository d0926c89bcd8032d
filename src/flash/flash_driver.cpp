// SPDX-License-Identifier: MIT
#include "flash/flash_driver.h"

#include "devices/hc08.h"

namespace brevant::flash {
namespace {

constexpr base::Address kLastUsed = kBlockData + kBlockSize - 1;

}  // namespace

void FlashDriver::Prepare(const FlashPlan& plan) {
  MakeRoom();
  const auto all = [&] { TakeAll(plan); };
  SendSafely(all, all);
}

void FlashDriver::TakeAll(const FlashPlan& plan) {
  for (const Step step : plan.task->preparation) Take(step, plan);
}

void FlashDriver::SendSafely(base::FunctionRef<void()> something,
                             base::FunctionRef<void()> everything) {
  const long before = memory_.damage();
  something();
  const long after = memory_.damage();
  if (after == before) return;
  everything();
  if (memory_.damage() != after) memory_.Doubt(kRoutine);
}

// Moves a program's stack out of the RAM that the routines use: the monitor works below the frame
// and would overwrite parameters and data while they are being sent. A stack as after a reset stays
// where it is.
void FlashDriver::MakeRoom() {
  const bool in_the_way = frame_.stack_in_use().Meets(kRoutine, kLastUsed);
  if (in_the_way && !memory_.LinkError()) frame_.SetStackPointer(kRoutineStack);
}

void FlashDriver::Take(Step step, const FlashPlan& plan) {
  switch (step) {
    case Step::Routine:
      return memory_.WriteBytes(kRoutine, plan.task->routine(memory_.device().flash));
    case Step::FrameBase:
      frame_.SP = memory_.ReadStackPointer();
      return;
    case Step::StackedPc:
      frame_.WriteProgramCounter(kRoutine);
      return;
    case Step::CopOff:
      return memory_.WriteByte(devices::kConfig1, devices::kCopDisable);
    case Step::ErasedPages:
      return memory_.WriteBytes(kEraseParameters, plan.pages.parameters);
    case Step::Block:
      return memory_.WriteBytes(kBlockData, plan.blocks.front().bytes);
    case Step::BlockPlace:
      return PlaceBlock(plan.blocks.front());
    case Step::VerifyClear:
      return memory_.WriteByte(kVerifyCount, 0);
  }
}

void FlashDriver::PlaceBlock(const FlashBlock& block) {
  memory_.WriteBytes(block.continues ? kBlockCounts : kBlockParameters, block.Parameters());
}

void FlashDriver::SendBlock(const FlashPlan& plan, const FlashBlock& block) {
  SendSafely([&] { Send(block); },
             [&] {
               TakeAll(plan);
               FlashBlock whole = block;
               whole.continues = false;
               Send(whole);
             });
}

void FlashDriver::Send(const FlashBlock& block) {
  memory_.WriteBytes(kBlockData, block.bytes);
  PlaceBlock(block);
  frame_.SP = memory_.ReadStackPointer();
  frame_.WriteProgramCounter(kRoutine);
}

bool FlashDriver::VerifyFailed() {
  return memory_.AskByte(kVerifyCount) != 0;
}

}  // namespace brevant::flash
