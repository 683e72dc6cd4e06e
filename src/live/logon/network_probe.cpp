#include "live/logon/network_probe.hpp"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/terms/error_numbers.hpp"
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
int connect_to(const Socket& one, const addrinfo& address, int timeout_seconds) {
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

int try_address(const addrinfo& address, int timeout_seconds) {
  return connect_to(Socket(address), address, timeout_seconds);
}

/// The first message of SMB, a NEGOTIATE Request ([MS-SMB2] 2.2.3) after the length that TCP takes: header
/// (64 bytes), size of the body, number of dialects, what is required of signing, 28 bytes that may be zeros,
/// the dialects. What answers it at all is a file server that can be waited for.
std::array<char, 112> first_question() {
  constexpr std::size_t kHeaderAt = 4;
  constexpr std::size_t kBodyAt = kHeaderAt + 64;
  constexpr std::size_t kDialectsAt = kBodyAt + 36;
  constexpr std::array<std::uint16_t, 4> kDialects = {0x0202, 0x0210, 0x0300, 0x0302};
  std::array<char, 112> question{};
  question[3] = static_cast<char>(question.size() - kHeaderAt);
  std::ranges::copy(std::string_view("\xFESMB\x40", 5), question.begin() + kHeaderAt);
  question[kHeaderAt + 14] = 1;  // credits that are asked for
  question[kBodyAt] = 36;
  question[kBodyAt + 2] = kDialects.size();
  question[kBodyAt + 4] = 1;  // signing is possible
  for (std::size_t i = 0; i < kDialects.size(); ++i) {
    question[kDialectsAt + 2 * i] = static_cast<char>(kDialects[i] & 0xFF);
    question[kDialectsAt + 2 * i + 1] = static_cast<char>(kDialects[i] >> 8);
  }
  return question;
}

/// False when nothing comes within that time, not even the end of the connection.
bool is_heard_of(const Socket& one, int timeout_seconds, const std::function<bool()>& is_stopped,
                 const std::string& host) {
  constexpr std::chrono::seconds kGrace{3};
  constexpr int kPace = 100;  // milliseconds between two looks whether the person has had enough
  const std::array<char, 112> question = first_question();
  if (send(one.number(), question.data(), question.size(), MSG_NOSIGNAL) < 0)
    return true;
  const auto start = std::chrono::steady_clock::now();
  pollfd waited = {.fd = one.number(), .events = POLLIN, .revents = 0};
  while (poll(&waited, 1, kPace) == 0 || waited.revents == 0) {
    const auto silence = std::chrono::steady_clock::now() - start;
    if (silence > kGrace && is_stopped && is_stopped())
      base::raise(kStopped, "Stopped while waiting for an answer of " + host);
    if (silence > std::chrono::seconds(timeout_seconds))
      return false;
  }
  return true;
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

std::string why_no_file_server(const std::string& host, int timeout_seconds,
                               const std::function<bool()>& is_stopped) {
  const Addresses addresses = look_up(host, "445");
  std::string why = "it does not listen";
  for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next) {
    const Socket one(*address);
    if (connect_to(one, *address, timeout_seconds) != 0)
      continue;
    if (is_heard_of(one, timeout_seconds, is_stopped, host))
      return {};
    why = "it takes connections, but does not answer within " + base::to_text(timeout_seconds) +
          " seconds; restart its file service";
  }
  return why;
}

}  // namespace twk::live
