// SPDX-License-Identifier: MIT
#include "control/ram_routine.h"

namespace brevant::control {
namespace {

using base::Address;

constexpr Address kFirstPlace = 0x0080, kDirectPageEnd = 0x0100, kPlaceStep = 0x10;

}  // namespace

std::optional<Address> RamRoutine::FindPlace(std::size_t bytes) const {
  const auto count = static_cast<Address>(bytes);
  const RegisterFrame::StackInUse stack = frame_.stack_in_use();
  for (Address place = kFirstPlace; place + count <= kDirectPageEnd; place += kPlaceStep) {
    if (!stack.Meets(place, place + count - 1)) return place;
  }
  return std::nullopt;
}

bool RamRoutine::Begin(Address place, std::size_t bytes) {
  // What is put back at the end has to be right. Where no register could be stacked, RUN leads
  // anywhere.
  if (!frame_.ReadRegisters() || !frame_.Confirm() || !frame_.StackIsRam()) return false;
  place_ = place;
  pc_ = frame_.PC;
  hx_ = frame_.HX;
  a_ = frame_.A;
  ccr_ = frame_.CCR;
  borrowed_.resize(bytes);
  return memory_.AskConfirmed(borrowed_, place);
}

bool RamRoutine::Run(base::Bytes routine, std::size_t swi, int max_polls) {
  return WriteAndRun(0, routine, swi, max_polls);
}

bool RamRoutine::RunAgain(std::size_t at, base::Bytes bytes, std::size_t swi, int max_polls) {
  return WriteAndRun(at, bytes, swi, max_polls);
}

bool RamRoutine::WriteAndRun(std::size_t at, base::Bytes bytes, std::size_t swi, int max_polls) {
  // Counted, not taken: what the line has damaged before is for those to tell who were at it.
  const long damage = memory_.damage();
  if (memory_.WriteAndLook(place_ + static_cast<Address>(at), bytes)) return false;
  // The program's interrupts must not come in between.
  if ((frame_.CCR & kCcrI) == 0) frame_.WriteCCR(frame_.CCR | kCcrI);
  frame_.WriteProgramCounter(place_);
  if (memory_.LinkError()) return false;
  const RegisterFrame::StackInUse stack = frame_.stack_in_use();
  memory_.RunTarget(std::array{memory::Range{place_, static_cast<Address>(borrowed_.size())},
                               memory::Range{stack.first, stack.last - stack.first + 1}});
  if (!AwaitBreak(max_polls) || !frame_.ReadRegisters()) return false;
  // A routine that ended elsewhere has done something else.
  return frame_.PC == place_ + static_cast<Address>(swi) + 1 && memory_.damage() == damage;
}

bool RamRoutine::End() {
  memory_.WriteBytes(place_, borrowed_);
  frame_.SetPC(pc_);
  frame_.WriteHX(hx_);
  frame_.WriteA(a_);
  frame_.WriteCCR(ccr_);
  return !memory_.LinkError();
}

bool RamRoutine::AwaitBreak(int max_polls) {
  for (int polls = 0; polls < max_polls; ++polls) {
    if (link_.PollBreak() == 0) return true;
  }
  return false;
}

}  // namespace brevant::control
