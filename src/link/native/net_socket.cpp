// SPDX-License-Identifier: MIT
#include "link/native/net_socket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

#include "link/port_map.h"

namespace brevant::link {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

// What looking a name up works on, also after nobody waits for it any more.
struct Lookup {
  std::string host, port;
  addrinfo wanted{};
  gaicb request{};

  explicit Lookup(const NetDevice& device) : host(device.host), port(device.port) {
    wanted.ai_socktype = SOCK_STREAM;
    request.ar_name = host.c_str();
    request.ar_service = port.c_str();
    request.ar_request = &wanted;
  }
  Lookup(const Lookup&) = delete;
  Lookup& operator=(const Lookup&) = delete;
  ~Lookup() {
    if (request.ar_result != nullptr) ::freeaddrinfo(request.ar_result);
  }
};

milliseconds Left(SteadyClock::time_point deadline) {
  return std::max(milliseconds(0), std::chrono::ceil<milliseconds>(deadline - SteadyClock::now()));
}

std::string SilentText(const NetDevice& device) {
  return device.host + " does not answer on port " + device.port +
         ". Check the network, and that no firewall is in the way.";
}

std::string RefusalText(const NetDevice& device, int error_number) {
  if (error_number == ECONNREFUSED) {
    return device.host + " refuses a connection on port " + device.port +
           ". Start the server there (ser2net, say), or correct the number of the port.";
  }
  if (error_number == ETIMEDOUT) return SilentText(device);
  return device.host + " cannot be reached (" + std::system_category().message(error_number) +
         "). Check the network.";
}

// A number from 1 to 65535, of which the system would take the remainder, or the name of a service.
bool IsPort(const std::string& port) {
  const bool number = std::ranges::all_of(port, [](char c) { return c >= '0' && c <= '9'; });
  if (!number || port.empty()) return !port.empty();
  return port.size() <= 5 && std::stoi(port) >= 1 && std::stoi(port) <= 65535;
}

// Each byte goes out at once, and a server that is gone without a word is noticed in 20 seconds.
bool SetUp(int descriptor) {
  struct Option {
    int level, name, value;
  };
  constexpr Option kOptions[] = {
      {IPPROTO_TCP, TCP_NODELAY, 1},   {SOL_SOCKET, SO_KEEPALIVE, 1},
      {IPPROTO_TCP, TCP_KEEPIDLE, 10}, {IPPROTO_TCP, TCP_KEEPINTVL, 5},
      {IPPROTO_TCP, TCP_KEEPCNT, 2},   {IPPROTO_TCP, TCP_USER_TIMEOUT, 20'000}};
  return std::ranges::all_of(kOptions, [descriptor](const Option& option) {
    return ::setsockopt(descriptor, option.level, option.name, &option.value,
                        sizeof option.value) == 0;
  });
}

// The result of the system's lookup, EAI_INPROGRESS when the deadline has passed.
int LookUp(std::unique_ptr<Lookup>& lookup, SteadyClock::time_point deadline) {
  gaicb* list[] = {&lookup->request};
  if (const int error = ::getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr); error != 0) return error;
  const gaicb* const waited[] = {&lookup->request};
  for (int state = EAI_INPROGRESS; (state = ::gai_error(list[0])) == EAI_INPROGRESS;) {
    const milliseconds left = Left(deadline);
    const timespec time{left.count() / 1000, left.count() % 1000 * 1000000};
    if (left.count() > 0) ::gai_suspend(waited, 1, &time);
    if (left.count() > 0 || ::gai_error(list[0]) != EAI_INPROGRESS) continue;
    // One that cannot be called off any more goes on using its request.
    if (::gai_cancel(list[0]) == EAI_NOTCANCELED) static_cast<void>(lookup.release());
    return EAI_INPROGRESS;
  }
  return ::gai_error(list[0]);
}

// 0, or the errno of connecting.
int Connect(int descriptor, const addrinfo& address, SteadyClock::time_point deadline) {
  if (::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS) return errno;
  pollfd watched{descriptor, POLLOUT, 0};
  for (;;) {
    const int ready = ::poll(&watched, 1, static_cast<int>(Left(deadline).count()));
    if (ready == 0) return ETIMEDOUT;
    if (ready > 0) break;
    if (errno != EINTR) return errno;
  }
  int error = 0;
  socklen_t size = sizeof error;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

}  // namespace

bool IsNetDevice(std::string_view device) {
  return device.starts_with(kTcpScheme) || device.starts_with(kRfc2217Scheme);
}

std::optional<NetDevice> ParseNetDevice(std::string_view device) {
  if (!IsNetDevice(device)) return std::nullopt;
  NetDevice parsed;
  parsed.sets_line = device.starts_with(kRfc2217Scheme);
  device.remove_prefix(parsed.sets_line ? kRfc2217Scheme.size() : kTcpScheme.size());
  if (device.ends_with('/')) device.remove_suffix(1);
  const std::size_t colon = device.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  parsed.port = device.substr(colon + 1);
  std::string_view host = device.substr(0, colon);
  const bool bracketed = host.starts_with('[') && host.ends_with(']');
  if (bracketed) host = host.substr(1, host.size() - 2);
  parsed.host = host;
  const bool good = IsPort(parsed.port) && !host.empty() &&
                    (bracketed || host.find(':') == std::string_view::npos);
  return good ? std::optional(parsed) : std::nullopt;
}

NetConnection ConnectTo(const NetDevice& device, milliseconds timeout) {
  const auto deadline = SteadyClock::now() + timeout;
  auto lookup = std::make_unique<Lookup>(device);
  if (const int error = LookUp(lookup, deadline); error != 0) {
    if (error == EAI_INPROGRESS) {
      return {-1,
              "The name " + device.host + " could not be looked up in time. Check the network."};
    }
    return {-1, "There is no " + device.host + ':' + device.port + " (" + ::gai_strerror(error) +
                    "). Check the name, and the network."};
  }
  int error = 0;
  for (const addrinfo* address = lookup->request.ar_result; address != nullptr;
       address = address->ai_next) {
    const int descriptor =
        ::socket(address->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // One that is silent leaves half of the time to those behind it.
    const auto until =
        address->ai_next == nullptr ? deadline : SteadyClock::now() + Left(deadline) / 2;
    error = descriptor < 0 ? errno : Connect(descriptor, *address, until);
    if (error == 0 && !SetUp(descriptor)) error = errno;
    if (error == 0) return {descriptor, ""};
    if (descriptor >= 0) ::close(descriptor);
  }
  return {-1, RefusalText(device, error)};
}

}  // namespace brevant::link
