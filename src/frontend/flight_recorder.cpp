// SPDX-License-Identifier: MIT
#include "frontend/flight_recorder.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "devices/device.h"
#include "link/native/serial_devices.h"
#include "link/port_map.h"

namespace brevant::frontend {

FlightRecorder::FlightRecorder(base::SerialPort& port, base::Clock& clock)
    : port_(port, clock, [this](std::string_view line) { Note(line); }) {}

void FlightRecorder::RecordTo(const RecordingChoice& choice, std::function<std::string()> what) {
  choice_ = choice;
  what_ = std::move(what);
  file_.open(choice.file, std::ios::binary | std::ios::trunc);
  Write("", " cannot be written, so nothing is recorded: ");
}

// At once, so that what led to a crash is there.
void FlightRecorder::Write(std::string_view text, std::string_view trouble) {
  errno = file_ ? 0 : errno;
  if (file_) file_ << text << std::flush;
  if (file_) return;
  problem_ = choice_.file + std::string(trouble) + std::strerror(errno != 0 ? errno : EIO) + ".";
  file_.close();
}

std::string FlightRecorder::TakeProblem() {
  return std::exchange(problem_, {});
}

std::string FlightRecorder::Recent(link::Secrets secrets) {
  port_.TellNothings();
  return link::WithSecrets(older_ + newest_, secrets);
}

void FlightRecorder::Note(std::string_view line) {
  if (newest_.size() + line.size() > kKept / 2) {
    dropped_ = dropped_ || !older_.empty();
    older_ = std::exchange(newest_, {});
  }
  newest_ += line;
  if (!file_.is_open()) return;
  std::string text;
  if (what_) text = RecordingHeading(std::exchange(what_, {})(), choice_.secrets);
  text += link::WithSecrets(line, choice_.secrets);
  Write(text, " cannot be written any more, so the recording ends here: ");
}

std::string DescribeTarget(const base::SettingsFile& settings, const std::string& version) {
  const std::string port = settings.String(base::keys::kPort);
  const auto behind = link::DeviceBehind(port, settings, link::FindSerialDevices());
  return "version " + version + "; port " + port + "; behind it " + behind.value_or("nothing") +
         "; device " +
         std::string(devices::BySettingsNumber(settings.Integer(base::keys::kDevice)).name);
}

std::string RecordingHeading(const std::string& what, link::Secrets secrets) {
  std::string text = std::string(link::kRecordingMark) + "; " + what + '\n';
  if (secrets == link::Secrets::Hide) {
    text +=
        "# The bytes of the security code that are sent after a reset are hidden: -- stands for "
        "each,\n"
        "# !! for a byte received instead of it.\n";
  } else {
    text += "# The security codes that were sent stand in this file.\n";
  }
  text +=
      "# Everything else is as it was on the wire, also what was read from or written to flash: "
      "who reads\n"
      "# or programs FFF6 to FFFD puts the code into this file.\n";
  return text;
}

}  // namespace brevant::frontend
