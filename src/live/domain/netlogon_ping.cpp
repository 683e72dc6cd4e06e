#include "live/domain/netlogon_ping.hpp"

#include <lber.h>
#include <ldap.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <utility>

#include "base/text.hpp"

namespace twk::live {
namespace {

using PingClock = std::chrono::steady_clock;
using Ber = std::unique_ptr<BerElement, decltype([](BerElement* element) { ber_free(element, 1); })>;

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kPatienceForOthers{100};
constexpr std::size_t kLargestDatagram = 4096;
/// Versions 5 and 5EX: names as a domain of today has them.
constexpr std::array<char, 4> kWantedVersion = {6, 0, 0, 0};

/// A host that was asked.
class AskedHost {
 public:
  AskedHost(const std::string& host, const std::string& question) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), "389", &hints, &found) != 0)
      return;
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> addresses(found, freeaddrinfo);
    socket_ = socket(found->ai_family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool asked = socket_ >= 0 && connect(socket_, found->ai_addr, found->ai_addrlen) == 0 &&
                       send(socket_, question.data(), question.size(), 0) >= 0;
    if (!asked)
      end();
  }
  AskedHost(AskedHost&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}
  AskedHost(const AskedHost&) = delete;
  AskedHost& operator=(const AskedHost&) = delete;
  AskedHost& operator=(AskedHost&&) = delete;
  ~AskedHost() { end(); }

  [[nodiscard]] bool is_awaited() const { return socket_ >= 0; }
  [[nodiscard]] int number() const { return socket_; }

  /// What has come, if it is an answer; nobody is awaited who does not listen there.
  std::optional<NetlogonAnswer> receive() {
    std::array<char, kLargestDatagram> datagram{};
    const ssize_t size = recv(socket_, datagram.data(), datagram.size(), 0);
    auto answer =
        size < 0 ? std::nullopt : netlogon_answer_in({datagram.data(), static_cast<std::size_t>(size)});
    if (answer || (size < 0 && errno != EAGAIN))
      end();
    return answer;
  }

 private:
  void end() {
    if (socket_ >= 0)
      close(std::exchange(socket_, -1));
  }

  int socket_ = -1;
};

/// False when the time is over.
bool wait_for_any(const std::vector<AskedHost>& asked, PingClock::time_point end) {
  std::vector<pollfd> waited;
  for (const AskedHost& host : asked) {
    if (host.is_awaited())
      waited.push_back({.fd = host.number(), .events = POLLIN, .revents = 0});
  }
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - PingClock::now());
  return !waited.empty() && left.count() > 0 &&
         poll(waited.data(), waited.size(), static_cast<int>(left.count())) > 0;
}

}  // namespace

std::string netlogon_question(std::string_view domain) {
  constexpr int kMessage = 1;
  constexpr std::string_view kDomain = "DnsDomain";
  constexpr std::string_view kVersion = "NtVer";
  const Ber ber(ber_alloc_t(LBER_USE_DER));
  // The whole message: who asks for the entry without a name, its domain and version as the filter, one
  // attribute.
  ber_printf(ber.get(), "{it{seeiibt{t{oo}t{oo}}{s}}}", kMessage, LDAP_REQ_SEARCH, "", LDAP_SCOPE_BASE,
             LDAP_DEREF_NEVER, 0, 0, 0, LDAP_FILTER_AND, LDAP_FILTER_EQUALITY, kDomain.data(), kDomain.size(),
             domain.data(), domain.size(), LDAP_FILTER_EQUALITY, kVersion.data(), kVersion.size(),
             kWantedVersion.data(), kWantedVersion.size(), "netlogon");
  berval bytes{};
  std::string question;
  if (ber_flatten2(ber.get(), &bytes, 0) == 0)
    question.assign(bytes.bv_val, bytes.bv_len);
  return question;
}

std::optional<NetlogonAnswer> netlogon_answer_in(std::string_view datagram) {
  // The library crashes on nothing at all.
  if (datagram.empty())
    return std::nullopt;
  berval bytes{datagram.size(), const_cast<char*>(datagram.data())};  // NOLINT: read only
  const Ber ber(ber_init(&bytes));
  ber_int_t message = 0;
  berval name{};
  berval attribute{};
  BerVarray values = nullptr;
  if (ber == nullptr ||
      ber_scanf(ber.get(), "{i{m{{m[W]", &message, &name, &attribute, &values) == LBER_ERROR)
    return std::nullopt;
  const std::unique_ptr<berval, void (*)(BerVarray)> owned(values, ber_bvarray_free);
  if (values == nullptr || values->bv_val == nullptr)
    return std::nullopt;
  return parse_netlogon_answer({values->bv_val, values->bv_len});
}

std::vector<std::optional<NetlogonAnswer>> ping_controllers(const std::vector<std::string>& hosts,
                                                            const std::string& domain) {
  const std::string question = netlogon_question(domain);
  std::vector<AskedHost> asked;
  asked.reserve(hosts.size());
  for (const std::string& host : hosts)
    asked.emplace_back(host, question);
  std::vector<std::optional<NetlogonAnswer>> answers(hosts.size());
  auto end = PingClock::now() + kPatience;
  while (wait_for_any(asked, end)) {
    for (std::size_t i = 0; i < asked.size(); ++i) {
      if (!asked[i].is_awaited())
        continue;
      answers[i] = asked[i].receive();
      if (answers[i] && !base::equals_fold(answers[i]->domain, domain))
        answers[i].reset();
      if (answers[i])
        end = std::min(end, PingClock::now() + kPatienceForOthers);
    }
  }
  return answers;
}

}  // namespace twk::live
