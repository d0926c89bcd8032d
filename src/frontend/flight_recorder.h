// SPDX-License-Identifier: MIT
// What has passed the wire: the last of it in memory, always, and all of it in a file when asked
// for. Rests on link::RecordingPort; the engine talks through port().
#pragma once

#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/serial_port.h"
#include "base/settings_file.h"
#include "link/recording_port.h"

namespace brevant::frontend {

// Where and how a recording is written.
struct RecordingChoice {
  std::string file = {};  // empty: none
  link::Secrets secrets = link::Secrets::Hide;
};

class FlightRecorder {
 public:
  // Memory for the last events, in bytes of text.
  static constexpr std::size_t kKept = std::size_t{1} << 20;

  FlightRecorder(base::SerialPort& port, base::Clock& clock);

  base::SerialPort& port() { return port_; }
  // See debugger::Surroundings.
  void Secret(bool on) { port_.Secret(on); }

  // Writes everything from now on, each event when it has happened. what is asked at the first of
  // them for the heading: see DescribeTarget.
  void RecordTo(const RecordingChoice& choice, std::function<std::string()> what);
  // Why the file could not be written, once; empty when there is nothing to say. Without its file
  // everything else goes on.
  std::string TakeProblem();

  // The last events as the text of a recording without its heading.
  std::string Recent(link::Secrets secrets);
  // They are all there were.
  bool HasAll() const { return !dropped_; }

 private:
  void Note(std::string_view line);
  void Write(std::string_view text, std::string_view trouble);

  std::string older_;   // full
  std::string newest_;  // being filled
  bool dropped_ = false;
  std::ofstream file_;
  RecordingChoice choice_;
  std::function<std::string()> what_;  // until the heading has been written
  std::string problem_;
  link::RecordingPort port_;  // last: its end is told to the others
};

// "version 0.1.0; port COM1; behind it /dev/ttyUSB0; device MC68HC908GP32", as the settings say
// now.
std::string DescribeTarget(const base::SettingsFile& settings, const std::string& version);
// The lines at the head of a recording.
std::string RecordingHeading(const std::string& what, link::Secrets secrets);

}  // namespace brevant::frontend
