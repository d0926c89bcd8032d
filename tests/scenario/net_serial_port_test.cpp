// SPDX-License-Identifier: MIT
// Lines in the network: a server of the test's own, and ser2net in front of a simulated board.
#include "link/native/net_serial_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <thread>

#include "link/monitor.h"
#include "link/security_code.h"
#include "scenario/target_process.h"

namespace brevant::link {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;
using Data = TelnetSerial::Data;

TEST(TelnetSerial, TakesDataAndAnswersHoweverTheyAreCut) {
  const Data stream{0x4A, 0xFF, 0xFF, 0xFF, 253,  44,   0xFF, 251,  1,    0x10,
                    0xFF, 250,  44,   105,  11,   0xFF, 240,  0x00, 0xFF, 250,
                    44,   101,  0,    0,    0xFF, 0xFF, 0x80, 0xFF, 240,  0x01};
  for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
    SCOPED_TRACE(cut);
    TelnetSerial telnet;
    Data line;
    Data answer;
    telnet.Take(base::Bytes(stream).first(cut), line, answer);
    telnet.Take(base::Bytes(stream).subspan(cut), line, answer);
    EXPECT_THAT(line, ElementsAre(0x4A, 0xFF, 0x10, 0x00, 0x01));
    EXPECT_THAT(answer, ElementsAre(0xFF, 254, 1));  // echo is not wanted
    EXPECT_EQ(telnet.sets_line(), true);
    EXPECT_EQ(telnet.TakeAnswer(LineCommand::Control), Data{11});
    EXPECT_EQ(telnet.TakeAnswer(LineCommand::Control), std::nullopt);
    EXPECT_EQ(telnet.TakeAnswer(LineCommand::Baud), (Data{0, 0, 0xFF, 0x80}));
  }
  EXPECT_THAT(TelnetSerial::Escaped(Data{1, 0xFF, 2}), ElementsAre(1, 0xFF, 0xFF, 2));
  EXPECT_THAT(TelnetSerial::Command(LineCommand::Baud, Data{0, 0, 0x25, 0x80}),
              ElementsAre(0xFF, 250, 44, 1, 0, 0, 0x25, 0x80, 0xFF, 240));
}

int Listen(std::string& port) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
  EXPECT_EQ(listen(listener, 1), 0);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  port = std::to_string(ntohs(address.sin_port));
  return listener;
}

// Echoes data, and confirms what it is told of the line but for the controls that it has not got.
class LineServer {
 public:
  explicit LineServer(Data lacks) : lacks_(std::move(lacks)) {
    thread_ = std::thread([this] { Serve(); });
  }
  LineServer(const LineServer&) = delete;
  LineServer& operator=(const LineServer&) = delete;
  ~LineServer() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }
  std::string port;

 private:
  void Serve() {
    const int client = accept(listener_, nullptr, nullptr);
    if (client < 0) return;
    Data got{0xFF, 253, 44};
    send(client, got.data(), got.size(), MSG_NOSIGNAL);
    for (got.clear();;) {
      std::uint8_t byte = 0;
      if (recv(client, &byte, 1, 0) != 1) break;
      got.push_back(byte);
      if (byte == 'Q') break;
      const bool option = got.size() == 3 && got[0] == 0xFF && got[1] != 250;
      if (option) got.clear();
      const bool data = got.size() == 1 && got[0] != 0xFF;
      const bool sub = got.size() > 5 && got.end()[-1] == 240 && got.end()[-2] == 0xFF;
      if (sub) got[3] = static_cast<std::uint8_t>(got[3] + 100);
      const bool lacking = sub && got[3] == 105 && std::ranges::count(lacks_, got[4]) > 0;
      if ((data || sub) && !lacking) send(client, got.data(), got.size(), MSG_NOSIGNAL);
      if (data || sub) got.clear();
    }
    close(client);
  }

  const int listener_ = Listen(port);
  Data lacks_;
  std::thread thread_;
};

TEST(NetSerialPort, SwitchesWhatTheServerConfirmsAndNothingElse) {
  LineServer server({5});  // no break
  NetSerialPort port;
  ASSERT_TRUE(port.Open("rfc2217://127.0.0.1:" + server.port)) << port.LastError();
  EXPECT_TRUE(port.Configure({})) << port.LastError();
  EXPECT_TRUE(port.SetDtr(false));
  EXPECT_TRUE(port.SetRts(true)) << port.LastError();
  EXPECT_TRUE(port.SetRts(false)) << port.LastError();
  EXPECT_FALSE(port.SetBreak(true));
  EXPECT_THAT(port.LastError(), HasSubstr("does not confirm a break"));
  EXPECT_TRUE(port.Write(Data{0x4A}));
  std::array<std::uint8_t, 4> buffer{};
  EXPECT_EQ(port.Read(std::span(buffer).first(1), milliseconds(1000)), 1u);
  EXPECT_EQ(buffer[0], 0x4A);
  EXPECT_EQ(port.Read(buffer, milliseconds(0)), 0u);
  EXPECT_TRUE(port.Write(Data{'Q'}));
  EXPECT_EQ(port.Read(buffer, milliseconds(1000)), std::nullopt);
  EXPECT_THAT(port.LastError(), HasSubstr("has ended"));
}

TEST(NetSerialPort, SaysWhyItCannotOpenAndWhatBytesAloneCannotDo) {
  NetSerialPort port;
  EXPECT_FALSE(port.Open("tcp://bench"));
  EXPECT_THAT(port.LastError(), HasSubstr("tcp://HOST:PORT"));
  EXPECT_FALSE(port.Open("tcp://bench:65536"));
  EXPECT_THAT(port.LastError(), HasSubstr("tcp://HOST:PORT"));
  EXPECT_FALSE(port.Open("tcp://name.invalid:2000"));
  EXPECT_THAT(port.LastError(), HasSubstr("name.invalid"));
  std::string free_port;
  {
    LineServer server({});
    free_port = server.port;
    ASSERT_TRUE(port.Open("tcp://127.0.0.1:" + server.port));
    EXPECT_TRUE(port.SetRts(false));
    EXPECT_FALSE(port.SetRts(true));
    EXPECT_THAT(port.LastError(), HasSubstr("Press the board's reset"));
    EXPECT_FALSE(port.SetBreak(true));
    port.Close();
  }
  EXPECT_FALSE(port.Open("tcp://127.0.0.1:" + free_port));
  EXPECT_THAT(port.LastError(), HasSubstr("refuses a connection"));
}

TEST(NetSerialPort, AServerThatNeverEndsTakesBoundedTime) {
  const Data silence;
  const Data data(4096, 'A');
  Data commands;  // which telnet passes over
  while (commands.size() < 4096) commands.insert(commands.end(), {0xFF, 241});
  const std::pair<const Data&, const char*> rows[] = {{data, "more than a serial line"},
                                                      {commands, "does not set serial lines"},
                                                      {silence, "does not set"}};
  for (const auto& [sent, error] : rows) {
    std::string number;
    const int listener = Listen(number);
    std::thread server([&listener, &sent = sent] {
      const int client = accept(listener, nullptr, nullptr);
      while (!sent.empty() && send(client, sent.data(), sent.size(), MSG_NOSIGNAL) > 0) {
      }
      char byte = 0;
      while (recv(client, &byte, 1, 0) == 1) {
      }
      close(client);
    });
    NetSerialPort port;
    const auto start = steady_clock::now();
    EXPECT_FALSE(port.Open("rfc2217://127.0.0.1:" + number));
    EXPECT_THAT(port.LastError(), HasSubstr(error));
    EXPECT_LT(steady_clock::now() - start, milliseconds(5000));
    port.Close();
    server.join();
    close(listener);
  }
}

// ser2net in front of a board that has just got its power. A pseudo-terminal carries no RTS and no
// break for a server, so that bytes are all that passes here.
class BehindSer2net : public testing::TestWithParam<const char*> {
 protected:
  static constexpr const char* kProgram = "/usr/sbin/ser2net";

  void SetUp() override {
    if (!std::filesystem::exists(kProgram)) GTEST_SKIP() << "ser2net is not installed";
    LineServer free({});
    port_ = free.port;
    const std::string config = "/tmp/brevant_ser2net_" + std::to_string(getpid()) + ".yaml";
    const bool telnet = std::string(GetParam()) == "rfc2217";
    std::ofstream(config) << "%YAML 1.1\n---\nconnection: &line\n  accepter: "
                          << (telnet ? "telnet(rfc2217),tcp" : "tcp") << ",127.0.0.1," << port_
                          << "\n  connector: serialdev," << board_.device() << ",9600n81,local\n";
    config_ = config;
  }
  void Start() {
    server_ = fork();
    if (server_ != 0) return;
    freopen("/dev/null", "w", stderr);
    execl(kProgram, kProgram, "-n", "-c", config_.c_str(), nullptr);
    _exit(99);
  }
  void TearDown() override {
    if (server_ > 0) {
      kill(server_, SIGTERM);
      waitpid(server_, nullptr, 0);
    }
    if (!config_.empty()) std::filesystem::remove(config_);
  }
  std::string Device() const { return std::string(GetParam()) + "://127.0.0.1:" + port_; }

  scenario::TargetProcess board_{{"--demo"}};
  std::string port_;
  std::string config_;
  pid_t server_ = -1;
};

TEST_P(BehindSer2net, TheMonitorAnswers) {
  Start();
  const PortBackend net = MakeNetBackend();
  MonitorLink link(*net.port, *net.clock);
  Monitor monitor(link);
  bool opened = false;
  for (int tries = 0; tries < 50 && !opened; ++tries) {
    opened = link.OpenPort(Device());
    if (!opened) std::this_thread::sleep_for(milliseconds(100));
  }
  ASSERT_TRUE(opened) << link.PortError();
  EXPECT_EQ(monitor.SendSecurityCode(kBlankSecurityCode), 0);
  const std::array<std::uint8_t, 3> bytes{0xFF, 0x00, 0xFF};  // what telnet would take for its own
  monitor.WriteBlock(0x0100, bytes);
  std::array<std::uint8_t, 3> read{};
  monitor.ReadBlockBytes(read, 0x0100);
  EXPECT_EQ(read, bytes);
  EXPECT_FALSE(link.LinkError);
  EXPECT_EQ(link.damage(), 0);
  EXPECT_FALSE(link.PulseReset());
  EXPECT_FALSE(link.LinkError);
  EXPECT_NE(link.SignalError(), "");
}

INSTANTIATE_TEST_SUITE_P(Each, BehindSer2net, testing::Values("tcp", "rfc2217"),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace brevant::link
