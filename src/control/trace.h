// SPDX-License-Identifier: MIT
// Tracing: the target is stepped continuously, eight steps a tick, and the last steps are recorded
// for a log that is written and shown when tracing stops. Rests on run control's step command.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/user_interface.h"
#include "base/workspace.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "control/run_indication.h"
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

class Trace final : public BackgroundOperation {
 public:
  // Registers itself with run control.
  Trace(RunControl& run, RegisterFrame& frame, BreakpointTable& breakpoints,
        const symbols::DebugInfo& debug_info, base::Workspace& workspace, base::UserInterface& ui,
        RunIndication& indication, TraceFiles files);
  ~Trace() override;
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
  // Writes the log, replacing the previous one, and shows it.
  void Stop();
  // One tick.
  void Advance() override;
  void Abandon() override;

 private:
  void FinishRecord();
  void WriteTraceLog();

  RunControl& run_;
  RunState& state_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  const symbols::DebugInfo& debug_info_;
  base::Workspace& workspace_;
  base::UserInterface& ui_;
  RunIndication& indication_;
  TraceFiles files_;
  TraceRing ring_;
  long steps_ = 0;
  long limit_ = 0;
  // The step under way; waits for the timer when its break byte is late.
  std::optional<TraceRecord> open_record_;
};

}  // namespace brevant::control
