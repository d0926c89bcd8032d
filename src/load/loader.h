// SPDX-License-Identifier: MIT
// The load command: the image into the target, the entry address, and the debug information that
// the tool chain left beside the image.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/target_crc.h"
#include "images/image_file.h"
#include "load/image_check.h"
#include "load/macro_runner.h"
#include "load/start_address.h"
#include "load/verify.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "symbols/importers.h"

namespace brevant::load {

// The steps of a load that belong to others. Each may be empty.
struct LoadSteps {
  // The source view goes back to its first line.
  std::function<void()> reset_source_view = {};
  // The watch configuration beside the image, whether or not there is one.
  std::function<void(const std::string& path)> load_watch_configuration = {};
  // The target lets its flash be read; true without it.
  std::function<bool()> flash_is_readable = {};
  // What follows every stop: registers, views, and on to main when configured.
  std::function<void()> refresh_after_stop = {};
  // Compares what lies in flash; without it that is read.
  control::TargetCrc* crc = nullptr;
};

enum class LoadOutcome {
  Loaded,
  NotFound,
  WrongFormat,  // no extension of an image
  NotReadable,
  NoRoom,     // the image leaves the monitor no room for its stack; nothing was done
  Damaged,    // a malformed record, or none at all; nothing was done
  Differs,    // the target does not hold all of the image, or that could not be looked at; the
              // rest of the sequence has been done
  Cancelled,  // by the user, during the transfer or the look at it; what was written stays
  LinkLost,   // the target does not answer; the rest of the sequence has been done
};

struct LoadResult {
  LoadOutcome outcome = LoadOutcome::Loaded;
  images::ReadReport report;
  std::string debug_info_detail;  // what was imported, or why nothing was
  long compared = 0;              // bytes in flash and ROM, which a load does not write
  // What has set the PC to report.entry when the file did not; see ram_start.h.
  std::string start_from{};
  // What will not work, and what is good to know. The user has been told the former.
  std::vector<Finding> findings{};
};

class Loader {
 public:
  Loader(memory::Memory& memory, control::RegisterFrame& frame,
         control::BreakpointTable& breakpoints, symbols::DebugInfo& debug_info, StartAddress& start,
         MacroRunner& macros, base::SettingsFile& settings, base::UserInterface& ui,
         LoadSteps steps = {});

  // Who carries out the steps of others may only be known later than the loader itself.
  void SetSteps(LoadSteps steps) { steps_ = std::move(steps); }

  // Loads the image and everything that goes with it; tells the user what went wrong. The path is
  // the current image path; keeping the list of recent files is the caller's.
  LoadResult LoadImage(const std::string& path);
  // Memory has lost all that was loaded last, as RAM does when the target's power goes. One byte of
  // each block is looked at; a lost link says nothing.
  bool ImageIsGone();
  // The folder of the image loaded last; empty when none has been.
  const std::string& image_directory() const { return image_directory_; }

  // The file has been modified since it was stamped, or never was. The two times are compared as
  // text. False when there is no such file.
  bool ImageIsNewer(const std::string& path) const;
  void StampImage(const std::string& path);

 private:
  // False when the user has cancelled it.
  // Gets the monitor's stack out of the image's way.
  bool MakeRoom(const std::string& path, const images::Image& image);
  bool TransferWithProgress(const std::string& path, const images::ImageFile& file);
  void TellAbout(const std::string& path, const images::ReadReport& report, bool complete);
  // Looks at the first byte of each block in RAM, or all of it after a transfer that the line has
  // damaged, and at all that no load can write. Where something differs the user has been told.
  LoadOutcome LookAt(const images::Image& image, bool line_was_clean, LoadResult& result);
  VerifyResult Compare(const images::Image& image);
  std::string ImportDebugInfo(const std::string& path);
  symbols::ImportResult Import(const std::string& path);
  bool FlashIsReadable() const { return !steps_.flash_is_readable || steps_.flash_is_readable(); }
  // False when PC stays as it was.
  bool TakeResetVector();
  // False when the image says where it starts.
  bool IgnoreEmptyEntry(const images::Image& image, images::ReadReport& report);
  void ChooseRamStart(const images::Image& image, LoadResult& result);
  void Check(const std::string& path, const images::Image& image, LoadResult& result);
  bool SwitchToolChain(const std::string& path);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
  control::BreakpointTable& breakpoints_;
  symbols::DebugInfo& debug_info_;
  StartAddress& start_;
  MacroRunner& macros_;
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  LoadSteps steps_;
  std::string image_directory_;
  std::map<base::Address, std::uint8_t> arrived_;
};

}  // namespace brevant::load
