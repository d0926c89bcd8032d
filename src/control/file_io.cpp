// SPDX-License-Identifier: MIT
#include "control/file_io.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/text_format.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

using base::Address;
using base::Low16;
using base::Message;

// At 9600 baud one takes about 0.1 s, and the user waits meanwhile.
constexpr int kNumbersPerTick = 1;

std::array<std::uint8_t, kSlotBytes> BytesOf(std::uint32_t word) {
  return {base::HighByte(word), base::LowByte(word)};
}

std::string Hex(base::Bytes bytes) {
  return base::Format("%02x %02x", bytes[0], bytes[1]);
}

bool IsOneFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return a == b || std::filesystem::equivalent(a, b, error);
}

}  // namespace

FileIo::FileIo(RunControl& run, Activity& activity, memory::Memory& memory, RegisterFrame& frame,
               const BreakpointTable& breakpoints, base::UserInterface& ui)
    : run_(run),
      activity_(activity),
      memory_(memory),
      frame_(frame),
      breakpoints_(breakpoints),
      ui_(ui) {}

std::string FileIo::CountsText() const {
  return base::Format("%ld numbers read, %ld written", read_, written_);
}

std::optional<FileIoForm> FileIo::OpenForm(FileSide side, Address address) {
  FileIoForm form{side, At(side).binding};
  form.binding.address = Low16(address);
  form.binding.saved_word = memory_.ReadWord(form.binding.address);
  const auto refused = memory_.LinkError() ? ToMessage(messages::kLinkLost) : SlotRefused(form);
  if (!refused) return form;
  ui_.ShowMessage(*refused);
  return std::nullopt;
}

bool FileIo::Commit(const FileIoForm& form) {
  if (const auto refused = NameRefused(form)) {
    ui_.ShowMessage(*refused);
    return false;
  }
  At(form.side).binding = form.binding;
  return true;
}

std::optional<Slots> FileIo::Assign() {
  std::optional<Slots> slots;
  for (const bool in_flash : {true, false}) {
    for (const FileSide side : kFileSides) {
      Side& here = At(side);
      const Address address = here.binding.address;
      const bool ram = memory_.KindOf(address) == devices::MemoryKind::Ram;
      if (!here.binding.enabled || ram == in_flash) continue;
      if (!slots) {
        slots = Slots{address, std::nullopt};
        here.wanted = ram ? std::optional(SlotBytes{0, 0}) : std::nullopt;
      } else if (ram) {
        slots->by_swi = address;
        here.wanted = SlotBytes{kSwiOpcode, 0};
      } else {
        return std::nullopt;
      }
    }
  }
  return slots;
}

std::optional<Message> FileIo::Obstacle() {
  const FileBinding &in = binding(FileSide::Input), &out = binding(FileSide::Output);
  if (!in.enabled && !out.enabled) return ToMessage(messages::kFileIoNothingBound);
  for (const FileSide side : kFileSides) {
    const FileBinding& bound = binding(side);
    if (!bound.enabled) continue;
    const std::uint32_t there = memory_.ReadWord(bound.address);
    if (memory_.LinkError()) return ToMessage(messages::kLinkLost);
    if (there != bound.saved_word) {
      return ToMessage(messages::kFileIoSlotChanged, RowOf(side).word, bound.address,
                       Hex(BytesOf(there)), Hex(BytesOf(bound.saved_word)));
    }
    if (frame_.PC == Low16(bound.address + 1)) {
      return ToMessage(messages::kFileIoInsideSlot, RowOf(side).word, bound.address);
    }
    if (frame_.stack_in_use().Meets(bound.address, bound.address + 1)) {
      return ToMessage(messages::kFileIoSlotOnStack, RowOf(side).word, bound.address);
    }
  }
  if (in.enabled && out.enabled) {
    if (IsOneFile(in.file_name, out.file_name)) {
      return ToMessage(messages::kFileIoOneFile, in.file_name);
    }
    if (in.address + 1 == out.address || out.address + 1 == in.address) {
      return ToMessage(messages::kFileIoOverlap, in.address, out.address);
    }
  }
  const auto slots = Assign();
  if (!slots) return ToMessage(messages::kFileIoBothInFlash, in.address, out.address);
  slots_ = *slots;
  return OpenFiles();
}

std::optional<Message> FileIo::OpenFiles() {
  const auto failed = [this](FileSide side, const std::string& error) -> std::optional<Message> {
    if (error.empty()) return std::nullopt;
    return ToMessage(messages::kFileIoNotOpened, RowOf(side).word, binding(side).file_name, error);
  };
  const FileBinding &in = binding(FileSide::Input), &out = binding(FileSide::Output);
  if (in.enabled) {
    if (auto message = failed(FileSide::Input, input_.Open(in.file_name))) return message;
  }
  if (!out.enabled) return std::nullopt;
  return failed(FileSide::Output, output_.Open(out.file_name));
}

std::optional<Message> FileIo::PrepareSlots() {
  for (Side& side : sides_) {
    if (!side.binding.enabled || !side.wanted) continue;
    side.replaced = true;
    const auto refused = memory_.WriteAndLook(side.binding.address, *side.wanted);
    if (memory_.LinkError()) return ToMessage(messages::kLinkLost);
    if (refused) {
      return ToMessage(messages::kFileIoSlotNotTaken, refused->address, refused->expected,
                       refused->found);
    }
  }
  return std::nullopt;
}

bool FileIo::Start() {
  if (activity_.Busy() || active()) return false;
  if (run_.LinkLost() || !frame_.StackIsRam()) {
    run_.Report(
        {run_.LinkLost() ? base::StopReason::LinkLost : base::StopReason::BadStack, frame_.PC, {}});
    return false;
  }
  read_ = written_ = 0;
  memory_.TakeDamage();
  auto obstacle = Obstacle();
  if (!obstacle) obstacle = PrepareSlots();
  if (obstacle) {
    Leave();
    ui_.ShowMessage(*obstacle);
    return false;
  }
  // As Go does: a break signal reaches only a program that has interrupts enabled.
  frame_.WriteCCR(frame_.CCR & ~kCcrI);
  activity_.SetFileIo(true);
  activity_.BeginOperation(Mode::FileIo, *this);
  CarryOn();
  return true;
}

std::optional<Address> FileIo::suspended() const {
  return run_.SuspendedBy(slots_.by_module);
}

void FileIo::Advance() {
  if (activity_.StepPending()) {
    run_.CompletePendingStep();
    if (!GoesOn() || activity_.StepPending()) return;
  }
  CarryOn();
}

void FileIo::CarryOn() {
  for (int i = 0; i < kNumbersPerTick; ++i) {
    if (SlotAt(frame_.PC) && !frame_.Confirm()) {
      if (memory_.LinkError()) return;
      return End({base::StopReason::PlaceReached, frame_.PC, {}},
                 ToMessage(messages::kFileIoDamaged, frame_.SP, CountsText()));
    }
    if (const auto side = SlotAt(frame_.PC); side && !Serve(*side)) return;
    run_.RunToSlots(slots_);
    if (!GoesOn() || activity_.StepPending()) return;
  }
}

std::optional<FileSide> FileIo::SlotAt(Address pc) const {
  for (const FileSide side : kFileSides) {
    if (binding(side).enabled && binding(side).address == pc) return side;
  }
  return std::nullopt;
}

bool FileIo::Serve(FileSide side) {
  auto problem = Damage();
  if (!problem) problem = side == FileSide::Input ? Read() : Write();
  if (!problem) {
    frame_.SetPC(Low16(frame_.PC + kSlotBytes));
    problem = Damage();
  }
  if (problem) {
    End({base::StopReason::PlaceReached, frame_.PC, {}}, problem);
    return false;
  }
  // The program comes to a breakpoint there without executing anything.
  if (!breakpoints_.HardwareBreakMode() && breakpoints_.Has(frame_.PC)) {
    End({base::StopReason::Breakpoint, frame_.PC, {}}, std::nullopt);
    return false;
  }
  return true;
}

std::optional<Message> FileIo::Damage() {
  const auto damaged = memory_.TakeDamage();
  if (!damaged) return std::nullopt;
  return ToMessage(messages::kFileIoDamaged, *damaged, CountsText());
}

std::optional<Message> FileIo::Read() {
  switch (input_.Next()) {
    case NumberInput::Found::End:
      return ToMessage(messages::kFileIoInputAtEnd, CountsText(), frame_.PC);
    case NumberInput::Found::Nothing:
      return ToMessage(messages::kFileIoNoNumber, binding(FileSide::Input).file_name, input_.line(),
                       kNumberExpected, CountsText());
    case NumberInput::Found::Number:
      break;
  }
  frame_.WriteXA(input_.number());
  ++read_;
  return std::nullopt;
}

std::optional<Message> FileIo::Write() {
  const auto number = base::Word(base::LowByte(frame_.HX), base::LowByte(frame_.A));
  const std::string error = output_.Append(static_cast<std::uint16_t>(number));
  if (!error.empty()) {
    return ToMessage(messages::kFileIoNotWritten, binding(FileSide::Output).file_name, error,
                     CountsText());
  }
  ++written_;
  return std::nullopt;
}

bool FileIo::Keeps(const base::Stop& stop) {
  if (stop.reason == base::StopReason::PlaceReached && SlotAt(stop.pc)) return true;
  End(stop, std::nullopt);
  return true;
}

void FileIo::End(base::Stop stop, const std::optional<Message>& message) {
  activity_.EndOperation();
  Leave();
  stop.pc = frame_.PC;
  if (!stop.detail.empty()) stop.detail += "; ";
  stop.detail += "end of file I/O, " + CountsText();
  run_.Report(std::move(stop));
  if (message) ui_.ShowMessage(*message);
}

void FileIo::Abandon() {
  Leave();
}

void FileIo::Leave() {
  if (const std::string error = output_.Close(); !error.empty()) {
    ui_.ShowMessage(ToMessage(messages::kFileIoNotWritten, binding(FileSide::Output).file_name,
                              error, CountsText()));
  }
  const bool standing = std::ranges::any_of(sides_, [this](const Side& side) {
    return side.replaced && frame_.PC == Low16(side.binding.address + 1);
  });
  PutBack();
  // Behind the first byte of a slot the program would go on inside an instruction.
  if (standing && !memory_.LinkError()) frame_.SetPC(Low16(frame_.PC - 1));
  std::string left;
  for (const Side& side : sides_) {
    if (!side.replaced) continue;
    left +=
        base::Format("\n%s at %04x", Hex(BytesOf(side.binding.saved_word)), side.binding.address);
  }
  if (!left.empty()) ui_.ShowMessage(ToMessage(messages::kFileIoNotPutBack, left));
  activity_.SetFileIo(false);
}

void FileIo::PutBack() {
  for (Side& side : sides_) {
    if (!side.replaced || memory_.LinkError()) continue;
    const Address address = side.binding.address;
    SlotBytes there{};
    memory_.AskBytes(there, address);
    if (memory_.LinkError()) continue;
    // A breakpoint of the user may stand there, whose SWI is gone with it.
    const bool ours = there == side.wanted || (there[0] == kSwiOpcode && there[1] == 0);
    const SlotBytes saved = BytesOf(side.binding.saved_word);
    const bool stands = ours && !memory_.WriteAndLook(address, saved);
    if (memory_.LinkError()) continue;
    side.replaced = false;
    if (!stands && there != saved) {
      ui_.ShowMessage(ToMessage(messages::kFileIoSlotOverwritten, address, Hex(there), Hex(saved)));
    }
  }
}

}  // namespace brevant::control
