#include "live/logon/network_probe.hpp"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

using Addresses = std::unique_ptr<addrinfo, void (*)(addrinfo*)>;

constexpr int kMillisecondsInSecond = 1000;

Addresses look_up(const std::string& host, const char* service) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int result = getaddrinfo(host.c_str(), service, &hints, &found);
  if (result == 0)
    return {found, freeaddrinfo};
  std::string text = "There is no host " + host;
  if (result == EAI_AGAIN)
    text = "The name service does not answer for the host " + host;
  else if (result != EAI_NONAME && result != EAI_NODATA)
    text = "The host " + host + " cannot be looked up: " + gai_strerror(result);
  base::raise(platform::ads_error::kServerDown, text);
}

/// A socket that is closed with its owner.
class Socket {
 public:
  explicit Socket(const addrinfo& address)
      : number_(socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                       address.ai_protocol)) {}
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() {
    if (number_ >= 0)
      close(number_);
  }
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// 0, or the system's error number.
int try_address(const addrinfo& address, int timeout_seconds) {
  const Socket one(address);
  if (one.number() < 0)
    return errno;
  if (connect(one.number(), address.ai_addr, address.ai_addrlen) == 0)
    return 0;
  if (errno != EINPROGRESS)
    return errno;
  pollfd waited = {.fd = one.number(), .events = POLLOUT, .revents = 0};
  const int ready = poll(&waited, 1, timeout_seconds * kMillisecondsInSecond);
  if (ready <= 0)
    return ready == 0 ? ETIMEDOUT : errno;
  int reason = 0;
  socklen_t size = sizeof reason;
  return getsockopt(one.number(), SOL_SOCKET, SO_ERROR, &reason, &size) == 0 ? reason : errno;
}

}  // namespace

std::vector<std::string> resolve_host(const std::string& host) {
  const Addresses addresses = look_up(host, nullptr);
  std::vector<std::string> texts;
  for (const addrinfo* one = addresses.get(); one != nullptr; one = one->ai_next) {
    std::array<char, NI_MAXHOST> text{};
    if (getnameinfo(one->ai_addr, one->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) == 0)
      texts.emplace_back(text.data());
  }
  return texts;
}

std::string why_no_answer(const std::string& host, std::uint16_t port, int timeout_seconds) {
  const Addresses addresses = look_up(host, base::to_text(port).c_str());
  int reason = EHOSTUNREACH;
  for (const addrinfo* one = addresses.get(); one != nullptr; one = one->ai_next) {
    reason = try_address(*one, timeout_seconds);
    if (reason == 0)
      return {};
  }
  return std::strerror(reason);  // NOLINT(concurrency-mt-unsafe): glibc's is safe
}

}  // namespace twk::live
