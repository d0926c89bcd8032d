// SPDX-License-Identifier: MIT
// File I/O: the program runs, and at two places of it, the slots, numbers of files on the host go
// in and out. At the input slot the next number of the input file comes into X:A, as a C function
// returns an int; at the output slot X:A is appended to the output file. Then the program goes on
// behind the slot, whose two bytes are not executed.
//
// The break module catches the program at one slot, an SWI at the other, which therefore has to lie
// in RAM. Slots in RAM hold other bytes meanwhile, 00 00 or the SWI; they are put back when it
// ends. It ends with the input file, by the user, and by any stop that is not one at a slot.
// Rests on run control.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/file_io_form.h"
#include "control/number_file.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "memory/memory.h"

namespace brevant::control {

class FileIo final : public Operation {
 public:
  FileIo(RunControl& run, Activity& activity, memory::Memory& memory, RegisterFrame& frame,
         const BreakpointTable& breakpoints, base::UserInterface& ui);
  FileIo(const FileIo&) = delete;
  FileIo& operator=(const FileIo&) = delete;

  const FileBinding& binding(FileSide side) const { return At(side).binding; }
  // The file that the dialog is to offer, without a slot so far.
  void OfferName(FileSide side, const std::string& name) { At(side).binding.file_name = name; }

  // The dialog for the instruction there. Nothing when it is no slot of that side, which has been
  // told.
  std::optional<FileIoForm> OpenForm(FileSide side, base::Address address);
  // "Ok". False when its name was refused, which has been told.
  bool Commit(const FileIoForm& form);
  // "Cancel" does as much.
  void Disable(FileSide side) { At(side).binding.enabled = false; }

  // Checks everything, opens the files, prepares the slots and lets the program run, with
  // interrupts enabled. False when it did not come to that, which has been told; nothing of the
  // target is then changed. Nothing while something else is under way.
  bool Start();
  // The user's hardware breakpoint, which does not count meanwhile.
  std::optional<base::Address> suspended() const;
  bool active() const { return activity_.FileIoActive(); }
  // Since it was started last.
  long numbers_read() const { return read_; }
  long numbers_written() const { return written_; }
  long numbers() const { return read_ + written_; }
  // "12 numbers read, 3 written"
  std::string CountsText() const;

  // What the end of a mode could not put back because the link was lost, where it still stands.
  void PutBack();

  void Advance() override;
  void Abandon() override;
  bool Keeps(const base::Stop& stop) override;

 private:
  using SlotBytes = std::array<std::uint8_t, kSlotBytes>;
  struct Side {
    FileBinding binding;
    // What is to stand in the slot during file I/O; nothing where it is left as it is.
    std::optional<SlotBytes> wanted;
    bool replaced = false;  // it may stand there
  };

  Side& At(FileSide side) { return sides_[static_cast<std::size_t>(side)]; }
  const Side& At(FileSide side) const { return sides_[static_cast<std::size_t>(side)]; }
  std::optional<base::Message> Obstacle();
  std::optional<base::Message> OpenFiles();
  // Which is caught how; nothing when both lie in flash.
  std::optional<Slots> Assign();
  std::optional<base::Message> PrepareSlots();
  bool GoesOn() const { return activity_.CurrentOperation() == this; }
  void CarryOn();
  std::optional<FileSide> SlotAt(base::Address pc) const;
  // At the slot: one number. False when it has ended with that.
  bool Serve(FileSide side);
  // The line has altered what was read or written of the registers.
  std::optional<base::Message> Damage();
  std::optional<base::Message> Read();
  std::optional<base::Message> Write();
  // The target is stopped: everything back to how it was, then the stop is told and the message.
  void End(base::Stop stop, const std::optional<base::Message>& message);
  void Leave();

  RunControl& run_;
  Activity& activity_;
  memory::Memory& memory_;
  RegisterFrame& frame_;
  const BreakpointTable& breakpoints_;
  base::UserInterface& ui_;
  std::array<Side, 2> sides_;
  Slots slots_;
  NumberInput input_;
  NumberOutput output_;
  long read_ = 0, written_ = 0;
};

}  // namespace brevant::control
