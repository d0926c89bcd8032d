// SPDX-License-Identifier: MIT
#include "link/native/port_errors.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace brevant::link {

namespace {

namespace fs = std::filesystem;

std::string SystemText(int error_number) {
  return std::system_category().message(error_number);
}

std::string ProgramName(const fs::path& process) {
  std::ifstream file(process / "comm");
  std::string name;
  std::getline(file, name);
  return name.empty() ? "a program" : name;
}

// The entries of a folder as far as they can be read: processes end and descriptors close
// meanwhile.
std::vector<fs::path> EntriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    entries.push_back(it->path());
  }
  return entries;
}

bool HoldsOpen(const fs::path& process, const fs::path& device) {
  const auto leads_to_device = [&](const fs::path& descriptor) {
    std::error_code error;
    return fs::read_symlink(descriptor, error) == device;
  };
  // Of other users' processes nothing is seen here.
  return std::ranges::any_of(EntriesOf(process / "fd"), leads_to_device);
}

// Members of this group may open the device; empty when its owner alone may.
std::string GroupOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return "";
  if ((status.st_mode & (S_IRGRP | S_IWGRP)) != (S_IRGRP | S_IWGRP)) return "";
  const struct group* group = ::getgrgid(status.st_gid);
  return group != nullptr ? group->gr_name : "";
}

std::string DeviceList(const std::vector<SerialDevice>& found) {
  std::string text;
  for (const SerialDevice& device : found) {
    text += (text.empty() ? "" : ", ") + device.path;
  }
  return text;
}

std::string MissingText(const std::string& path, const std::vector<SerialDevice>& found) {
  std::string text = "There is no device " + path + ". Plug in the adapter's cable";
  if (found.empty()) return text + "; no serial device is found at present.";
  return text + ", or choose one of the devices found: " + DeviceList(found) + ".";
}

std::string DeniedText(const std::string& path) {
  std::string text = "You have no permission to use " + path + ". ";
  const std::string group = GroupOf(path);
  if (group.empty()) {
    return text +
           "Its permissions let no group in: have a udev rule give it to group dialout "
           "(uucp on some systems), then plug it in again.";
  }
  return text + "It belongs to group " + group +
         ": have your user added to that group (usermod -aG " + group +
         " USER), then log out and in again.";
}

}  // namespace

std::string HoldersOf(const std::string& path) {
  std::error_code error;
  const fs::path device = fs::canonical(path, error);
  if (error) return "";
  std::string holders;
  for (const fs::path& process : EntriesOf("/proc")) {
    const std::string id = process.filename().string();
    if (std::isdigit(static_cast<unsigned char>(id.front())) == 0) continue;
    if (!HoldsOpen(process, device)) continue;
    if (!holders.empty()) holders += ", ";
    const bool self = id == std::to_string(::getpid());
    holders += self ? "this program itself" : ProgramName(process) + " (process " + id + ")";
  }
  return holders;
}

std::string BusyText(const std::string& path) {
  const std::string holders = HoldersOf(path);
  if (holders.empty()) {
    return "Another program holds " + path + ", perhaps of another user. Close it and try again.";
  }
  return path + " is held by " + holders + ". Close it there and try again.";
}

std::string OpenErrorText(const std::string& path, int error_number,
                          const std::vector<SerialDevice>& found) {
  switch (error_number) {
    case ENOENT:
    case ENOTDIR:
      return MissingText(path, found);
    case EACCES:
    case EPERM:
      return DeniedText(path);
    case EBUSY:
      return BusyText(path);
    case ENXIO:
    case ENODEV:
    case EIO:
      return "Nothing answers behind " + path +
             ". Plug the adapter out and in again, or choose another device.";
    case ENOTTY:
    case EISDIR:
      return path + " is not a serial port. Choose another device.";
    default:
      return path + " cannot be opened: " + SystemText(error_number) + ".";
  }
}

std::string GoneText(const std::string& path, LineKind kind) {
  if (kind == LineKind::PseudoTerminal) {
    return "The program at the other end of " + path +
           " has gone. Start it again, then connect again.";
  }
  return path + " has gone: the adapter was unplugged. Plug it in again, then connect again.";
}

std::string RefusedText(const std::string& path, const std::string& what, int error_number) {
  return path + " refuses " + what + " (" + SystemText(error_number) +
         "). Use another adapter or another device.";
}

}  // namespace brevant::link
