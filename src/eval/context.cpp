// SPDX-License-Identifier: MIT
#include "eval/context.h"

#include <utility>

#include "frames/function_at.h"
#include "frames/source_line.h"
#include "frames/stack_depth.h"
#include "symbols/places.h"

namespace brevant::eval {

using base::Address;

Context::Context(memory::Memory& memory, const symbols::DebugInfo& info, const Registers& registers,
                 Reading reading)
    : memory_(memory),
      info_(info),
      registers_(registers),
      reading_(reading),
      pc_(registers.pc),
      sp_(registers.sp),
      function_(frames::FunctionAt(registers.pc, info)) {}

Context::Context(memory::Memory& memory, const symbols::DebugInfo& info, const Registers& registers,
                 Reading reading, const frames::Frame& frame)
    : memory_(memory),
      info_(info),
      registers_(registers),
      reading_(reading),
      pc_(frame.pc),
      sp_(frame.sp),
      function_(frame.function),
      entry_known_(true),
      entry_sp_(frame.entry_sp) {}

std::string Context::module() const {
  if (function_ != nullptr && !function_->module.empty()) return function_->module;
  // A global function is not told to be of a module, but its lines are of a file.
  const auto line = frames::LineAt(pc_, info_);
  const std::vector<std::string>& files = info_.LineTable.files();
  return line && line->file < files.size() ? symbols::ModuleOf(files[line->file]) : std::string();
}

std::optional<Address> Context::EntrySp() const {
  if (!entry_known_ && function_ != nullptr) {
    if (const auto depth = frames::StackDepth(memory_, *function_, pc_)) {
      entry_sp_ = base::Low16(sp_ + static_cast<Address>(*depth));
    }
  }
  entry_known_ = true;
  return entry_sp_;
}

const frames::StackWrites& Context::Written() const {
  if (!writes_) {
    writes_ = function_ != nullptr ? frames::StackWritesBefore(memory_, *function_, pc_)
                                   : frames::StackWrites{.places = {}, .may_be_all = true};
  }
  return *writes_;
}

Context::ReadResult Context::Read(Address address, int count) const {
  if (address > base::kLastAddress || base::kAddressSpace - address < static_cast<Address>(count)) {
    return {.problem = "it would lie beyond FFFF"};
  }
  if (reading_ == Reading::Sparing) {
    for (int i = 0; i < count; ++i) {
      if (memory_.ChangesOnReading(base::Low16(address + static_cast<Address>(i)))) {
        return {.problem = "reading the register changes it"};
      }
    }
  }
  const auto before = memory_.TakeDamage();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count));
  memory_.ReadBytes(bytes, address);
  const auto damaged = memory_.TakeDamage();
  // Whoever asks the door next is to know it too.
  if (before || damaged) memory_.Doubt(before ? *before : *damaged);
  if (memory_.LinkError()) return {.problem = "the link is lost"};
  if (damaged) return {.problem = "the line has damaged it each time"};
  return {.bytes = std::move(bytes)};
}

}  // namespace brevant::eval
