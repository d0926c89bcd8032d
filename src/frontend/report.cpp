// SPDX-License-Identifier: MIT
#include "frontend/report.h"

#include <sys/utsname.h>

#include <algorithm>

#include "base/file_names.h"
#include "base/files.h"
#include "base/stop.h"
#include "base/text_format.h"
#include "link/security_keeper.h"

namespace brevant::frontend {
namespace {

constexpr std::string_view kHidden = "--";

template <typename Change>
std::string EachLine(std::string_view text, Change change) {
  std::string result;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    result += change(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
    result += '\n';
  }
  return result;
}

bool HoldsSecurityCode(std::string_view key) {
  key.remove_prefix(std::min(key.find_first_not_of(" \t"), key.size()));
  key = key.substr(0, key.find_last_not_of(" \t") + 1);
  if (base::EqualIgnoringCase(key, base::keys::kResetSecurity.key)) return true;
  for (int n = 0; n < link::kRecentCodes; ++n) {
    if (base::EqualIgnoringCase(key, base::NumberedKey(base::keys::kRecentSecurity, n)))
      return true;
  }
  return false;
}

std::string System() {
  utsname name{};
  if (::uname(&name) != 0) return "unknown";
  return std::string(name.sysname) + ' ' + name.release + ' ' + name.machine;
}

std::string YesOrNo(bool value) {
  return value ? "yes" : "no";
}

std::string State(const ReportParts& parts, const debugger::Debugger& debugger) {
  std::string text = "program: " + parts.program + ", version " + parts.version + '\n';
  text += "system: " + System() + '\n';
  text += "link lost: " + YesOrNo(debugger.memory.LinkError()) + '\n';
  text += "port's reason: " + debugger.monitor_link.PortError() + '\n';
  text += "damaged bytes: " + std::to_string(debugger.monitor_link.damage()) + '\n';
  text += "security passed: " + YesOrNo(debugger.security.passed()) + '\n';
  text += "under way: " + YesOrNo(debugger.Busy()) + '\n';
  const auto stop = debugger.run_control.last_stop();
  return text + "last stop: " + (stop ? base::StopText(*stop) : "none") + '\n';
}

std::string Notes(std::string_view title, std::string_view text) {
  return "#\n# " + std::string(title) + '\n' +
         EachLine(text, [](std::string_view line) { return "#   " + std::string(line); });
}

}  // namespace

std::string SettingsForReport(std::string_view file_text, link::Secrets secrets) {
  return EachLine(file_text, [secrets](std::string_view line) {
    const std::string_view key = line.substr(0, line.find('='));
    if (secrets == link::Secrets::Show || key.size() == line.size() || !HoldsSecurityCode(key)) {
      return std::string(line);
    }
    return std::string(key) + '=' + std::string(kHidden);
  });
}

std::string DiagnosticsForReport(std::string_view log, link::Secrets secrets) {
  // "debug  ANSWER  BYTE": without an answer to the code that is the code's first byte.
  constexpr std::string_view kAnswer = "debug  ";
  return EachLine(log, [&](std::string_view line) {
    if (secrets == link::Secrets::Show || !line.starts_with(kAnswer)) return std::string(line);
    const std::string_view answer = line.substr(kAnswer.size());
    if (answer.starts_with("0 ")) return std::string(line);
    const std::size_t end = std::min(answer.find(' '), answer.size());
    return std::string(kAnswer) + std::string(kHidden) + std::string(answer.substr(end));
  });
}

std::string ReportText(const ReportParts& parts, const debugger::Debugger& debugger,
                       FlightRecorder& recorder, link::Secrets secrets) {
  const base::FileText settings = base::ReadFile(debugger.settings.path());
  std::string text = RecordingHeading(DescribeTarget(debugger.settings, parts.version), secrets);
  text += Notes("Report", State(parts, debugger));
  text += Notes("Settings", settings.ok() ? SettingsForReport(settings.text, secrets)
                                          : "not readable: " + settings.error);
  text += Notes("Diagnostics", DiagnosticsForReport(parts.diagnostics, secrets));
  text += Notes("The wire", recorder.HasAll() ? "from the start"
                                              : "older events are not kept, so it cannot be played "
                                                "back from the start");
  return text + recorder.Recent(secrets);
}

}  // namespace brevant::frontend
