// SPDX-License-Identifier: MIT
// Tracing: the target is stepped continuously, eight steps a tick, and the steps are recorded. A
// log of the last ones is written and shown when tracing stops. Rests on run control's step
// command.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "control/trace_log.h"
#include "symbols/debug_info.h"

namespace brevant::control {

// What tracing asks of the loaded program's files.
struct TraceFiles {
  // Where the log goes; empty before a program has been loaded, which means the current directory.
  std::function<std::string()> image_directory;
  // The text of a source line; nothing when it cannot be read.
  std::function<std::optional<std::string>(const symbols::SourceLine&)> source_text;
};

// The log as it was written last.
struct WrittenLog {
  std::string path;
  int lines = 0;
};

class Trace final : public Operation {
 public:
  Trace(RunControl& run, Activity& activity, const RegisterFrame& frame,
        const BreakpointTable& breakpoints, const symbols::DebugInfo& debug_info,
        const isa::SymbolNames& names, base::UserInterface& ui, TraceFiles files);
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  const TraceRing& ring() const { return ring_; }
  std::string LogPath() const;
  // The text that the log has or would have.
  std::string LogText() const;

  // The toolbar button: starts when idle, stops when tracing, does nothing in another run mode.
  void Command();
  // With a limit tracing stops by itself after that many steps; 0 is none.
  void Start(long limit = 0);
  // Made since tracing was started last.
  long steps() const { return steps_; }
  // By the user. Writes the log, replacing the previous one.
  void Stop();
  // Nothing until one has been written.
  const std::optional<WrittenLog>& written_log() const { return written_log_; }
  // How many have been written.
  long logs() const { return logs_; }
  // One tick.
  void Advance() override;
  void Abandon() override;

 private:
  void FinishRecord();
  // Nothing while the end has not been reached.
  std::optional<base::StopReason> EndReached() const;
  void End(base::StopReason reason);
  void WriteTraceLog();

  RunControl& run_;
  Activity& activity_;
  const RegisterFrame& frame_;
  const BreakpointTable& breakpoints_;
  const symbols::DebugInfo& debug_info_;
  const isa::SymbolNames& names_;
  base::UserInterface& ui_;
  TraceFiles files_;
  std::optional<WrittenLog> written_log_;
  TraceRing ring_;
  long logs_ = 0;
  long steps_ = 0;
  long limit_ = 0;
  // The step under way; waits for the timer when its break byte is late.
  std::optional<TraceRecord> open_record_;
};

}  // namespace brevant::control
