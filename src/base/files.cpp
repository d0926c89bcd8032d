// SPDX-License-Identifier: MIT
#include "base/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace brevant::base {
namespace {

namespace fs = std::filesystem;

std::string ErrorText(int error) {
  return std::system_category().message(error);
}

// An open file that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  bool ok() const { return fd_ >= 0; }

 private:
  int fd_;
};

Descriptor Open(const fs::path& path, int flags, mode_t mode = 0) {
  int fd = -1;
  do {
    fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  } while (fd < 0 && errno == EINTR);
  return Descriptor(fd);
}

// 0, or the error number.
int WriteAll(int fd, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(fd, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

// Where a chain of symbolic links ends, whether or not anything stands there yet.
std::optional<fs::path> FollowLinks(fs::path path) {
  std::error_code error;
  for (int depth = 0; depth < 40; ++depth) {
    if (!fs::is_symlink(path, error)) return path;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return std::nullopt;
    path = path.parent_path() / target;  // an absolute target replaces the parent
  }
  return std::nullopt;
}

fs::path TemporaryName(const fs::path& path) {
  std::string name = ".";
  name += path.filename().string();
  name += ".tmp";
  return path.parent_path() / name;
}

bool NameMeans(const fs::path& name, int fd) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(fd, &opened) == 0 && ::lstat(name.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

// The temporary file, new and locked; or not ok, with errno. Its name is fixed, so that leftovers
// cannot pile up: one whose lock is free belongs to a killed process and is removed. Whoever gets
// the lock looks whether the name still means the file that it has opened, since the holder before
// may have renamed or removed it.
Descriptor CreateTemporary(const fs::path& name) {
  using namespace std::chrono_literals;
  for (int attempt = 0; attempt < 200; ++attempt) {
    Descriptor file = Open(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0666);
    const bool created = file.ok();
    if (!created && errno != EEXIST) return file;
    if (!created) {
      Descriptor leftover = Open(name, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
      if (!leftover.ok() && errno == ENOENT) continue;
      if (!leftover.ok()) return leftover;
      file = std::move(leftover);
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
      std::this_thread::sleep_for(10ms);
    } else if (NameMeans(name, file.get())) {
      if (created) return file;
      ::unlink(name.c_str());
    }
  }
  errno = EBUSY;
  return Descriptor(-1);
}

int SyncFolder(const fs::path& folder) {
  const Descriptor opened = Open(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
  if (!opened.ok()) return errno;
  // Some file systems cannot sync a folder and say so with EINVAL; there is nothing more to do
  // then.
  if (::fsync(opened.get()) != 0 && errno != EINVAL) return errno;
  return 0;
}

int ReplaceRegularFile(const fs::path& path, std::string_view content, const struct stat* old) {
  const fs::path temporary = TemporaryName(path);
  const Descriptor file = CreateTemporary(temporary);
  if (!file.ok()) return errno;
  int error = 0;
  if (old != nullptr && ::fchmod(file.get(), old->st_mode & 07777) != 0) error = errno;
  if (error == 0) error = WriteAll(file.get(), content);
  if (error == 0 && ::fsync(file.get()) != 0) error = errno;
  if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temporary.c_str());
    return error;
  }
  return SyncFolder(path.parent_path());
}

// Devices and pipes have no content to replace.
int WriteStraight(const fs::path& path, std::string_view content) {
  const Descriptor file = Open(path, O_WRONLY);
  return file.ok() ? WriteAll(file.get(), content) : errno;
}

}  // namespace

FileText ReadFile(const std::filesystem::path& path) {
  FileText result;
  const Descriptor file = Open(path, O_RDONLY);
  if (!file.ok()) {
    result.error = ErrorText(errno);
    return result;
  }
  char buffer[16384];
  for (;;) {
    const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      result.error = ErrorText(errno);
      result.text.clear();
    }
    if (count <= 0) return result;
    result.text.append(buffer, static_cast<std::size_t>(count));
  }
}

std::string ReplaceFile(const std::filesystem::path& path, std::string_view content) {
  const auto target = FollowLinks(path);
  if (!target) return ErrorText(ELOOP);
  struct stat old {};
  const bool exists = ::stat(target->c_str(), &old) == 0;
  int error = 0;
  if (exists && S_ISDIR(old.st_mode)) {
    error = EISDIR;
  } else if (exists && !S_ISREG(old.st_mode)) {
    error = WriteStraight(*target, content);
  } else if (exists && ::access(target->c_str(), W_OK) != 0) {
    error = errno;  // a rename would not ask
  } else {
    error = ReplaceRegularFile(*target, content, exists ? &old : nullptr);
  }
  return error == 0 ? std::string() : ErrorText(error);
}

std::string WorkingDirectory() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

std::optional<long long> ModificationTime(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status.st_mtime;
}

std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileStamp{static_cast<long long>(status.st_dev), static_cast<long long>(status.st_ino),
                   status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace brevant::base
