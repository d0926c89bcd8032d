// SPDX-License-Identifier: MIT
#include "link/native/native_serial_port.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): posix_openpt
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <thread>
#include <vector>

#include "link/native/port_errors.h"

namespace brevant::link {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::AllOf;
using testing::HasSubstr;

// A pseudo-terminal; the test is what sits at its other end.
class OtherEnd {
 public:
  OtherEnd() : descriptor_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    grantpt(descriptor_);
    unlockpt(descriptor_);
    std::array<char, 64> name{};
    ptsname_r(descriptor_, name.data(), name.size());
    device = name.data();
  }
  OtherEnd(const OtherEnd&) = delete;
  OtherEnd& operator=(const OtherEnd&) = delete;
  ~OtherEnd() { Leave(); }

  void Leave() {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
  }
  termios Settings() const {
    termios settings{};
    tcgetattr(descriptor_, &settings);
    return settings;
  }
  void Change(const termios& settings) const { tcsetattr(descriptor_, TCSANOW, &settings); }
  void Send(const std::vector<std::uint8_t>& bytes) const {
    ASSERT_EQ(::write(descriptor_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  std::vector<std::uint8_t> Receive(std::size_t count) const {
    std::vector<std::uint8_t> bytes(count);
    bytes.resize(static_cast<std::size_t>(::read(descriptor_, bytes.data(), count)));
    return bytes;
  }

  std::string device;

 private:
  int descriptor_;
};

TEST(NativeSerialPort, CarriesRtsAndBreakInSettingsThatTheOtherEndCanRead) {
  const OtherEnd end;
  const auto rts = [&] { return (end.Settings().c_cflag & CRTSCTS) != 0; };
  const auto break_held = [&] {
    const termios settings = end.Settings();
    return cfgetospeed(&settings) == B75;
  };
  NativeSerialPort port;
  ASSERT_TRUE(port.Open(end.device)) << port.LastError();
  EXPECT_TRUE(rts());
  ASSERT_TRUE(port.Configure({})) << port.LastError();
  EXPECT_TRUE(rts()) << "configuring must not switch the target on";
  EXPECT_FALSE(break_held());
  EXPECT_TRUE(port.SetDtr(false));
  EXPECT_TRUE(port.SetRts(false));
  EXPECT_FALSE(rts());
  EXPECT_TRUE(port.SetBreak(true));
  EXPECT_TRUE(break_held());
  EXPECT_FALSE(rts());
  EXPECT_TRUE(port.SetBreak(false));
  EXPECT_FALSE(break_held());
  EXPECT_TRUE(port.SetQueueSizes(2048, 1024));
}

TEST(NativeSerialPort, PassesEveryByteUnchangedAndLeavesOtherSettingsAlone) {
  const OtherEnd end;
  termios before = end.Settings();
  before.c_cc[VSTART] = 0x07;
  before.c_cc[VEOF] = 0x1F;
  before.c_cflag |= HUPCL | CSTOPB;
  before.c_iflag |= IXON | ISTRIP | ICRNL;
  end.Change(before);
  NativeSerialPort port;
  ASSERT_TRUE(port.Open(end.device) && port.Configure({})) << port.LastError();
  const termios after = end.Settings();
  EXPECT_EQ(after.c_cc[VSTART], 0x07);
  EXPECT_EQ(after.c_cc[VEOF], 0x1F);
  EXPECT_NE(after.c_cflag & HUPCL, 0u);
  EXPECT_EQ(after.c_cflag & CSTOPB, 0u);
  EXPECT_EQ(cfgetospeed(&after), static_cast<speed_t>(B9600));

  std::vector<std::uint8_t> all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  end.Send(all);
  std::vector<std::uint8_t> received(256);
  EXPECT_EQ(port.Read(received, milliseconds(1000)), 256u);
  EXPECT_EQ(received, all);
  EXPECT_TRUE(port.Write(all));
  EXPECT_EQ(end.Receive(256), all);
}

TEST(NativeSerialPort, WaitsForAsManyBytesAsAskedAndNotLonger) {
  const OtherEnd end;
  NativeSerialPort port;
  ASSERT_TRUE(port.Open(end.device) && port.Configure({})) << port.LastError();
  std::array<std::uint8_t, 2> buffer{};
  EXPECT_EQ(port.Read(buffer, milliseconds(0)), 0u);
  const auto start = steady_clock::now();
  EXPECT_EQ(port.Read(buffer, milliseconds(50)), 0u);
  EXPECT_GE(steady_clock::now() - start, milliseconds(50));
  EXPECT_EQ(port.LastError(), "") << "a time-out is no failure";

  std::thread later([&] {
    std::this_thread::sleep_for(milliseconds(30));
    end.Send({1});
    std::this_thread::sleep_for(milliseconds(30));
    end.Send({2, 3});
  });
  EXPECT_EQ(port.Read(buffer, milliseconds(5000)), 2u);
  later.join();
  EXPECT_EQ(buffer[1], 2);
  EXPECT_EQ(port.Read(buffer, milliseconds(0)), 1u);
}

TEST(NativeSerialPort, SaysWhyItCannotOpenAndWhatToDo) {
  const OtherEnd end;
  NativeSerialPort first;
  NativeSerialPort second;
  ASSERT_TRUE(first.Open(end.device));
  EXPECT_FALSE(second.Open(end.device));
  EXPECT_THAT(second.LastError(), AllOf(HasSubstr("this program itself"), HasSubstr("try again")));
  first.Close();
  EXPECT_TRUE(second.Open(end.device)) << second.LastError();
  second.Close();
  EXPECT_FALSE(second.Write(std::array<std::uint8_t, 1>{}));
  EXPECT_THAT(second.LastError(), HasSubstr("No port is open"));

  EXPECT_FALSE(second.Open("ttyBrevantTest"));
  EXPECT_THAT(second.LastError(),
              AllOf(HasSubstr("no device /dev/ttyBrevantTest"), HasSubstr("cable")));
  EXPECT_FALSE(second.Open("/dev/null"));
  EXPECT_THAT(second.LastError(), HasSubstr("not a serial port"));
}

TEST(PortErrors, NameTheGroupTheHolderAndTheDevicesFound) {
  EXPECT_THAT(OpenErrorText("/dev/ttyUSB0", ENOENT, {{"/dev/ttyUSB1", "", "", "", true}}),
              HasSubstr("/dev/ttyUSB1"));
  EXPECT_THAT(OpenErrorText("/dev/ttyUSB0", EIO, {}), HasSubstr("Nothing answers"));
  EXPECT_THAT(OpenErrorText("/dev/ttyUSB0", ENOMEM, {}), HasSubstr("Cannot allocate memory"));

  namespace fs = std::filesystem;
  std::string file = testing::TempDir() + "brevant-port-XXXXXX";
  const int descriptor = ::mkstemp(file.data());
  fs::permissions(file, fs::perms::owner_read | fs::perms::group_read | fs::perms::group_write);
  EXPECT_THAT(OpenErrorText(file, EACCES, {}),
              AllOf(HasSubstr("usermod -aG"), HasSubstr("log out and in")));
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_THAT(OpenErrorText(file, EACCES, {}), HasSubstr("dialout"));
  EXPECT_EQ(HoldersOf(file), "this program itself");
  ::close(descriptor);
  EXPECT_EQ(HoldersOf(file), "");
  fs::remove(file);
}

}  // namespace
}  // namespace brevant::link
