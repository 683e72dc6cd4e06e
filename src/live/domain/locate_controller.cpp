#include "live/domain/locate_controller.hpp"

#include <arpa/nameser.h>
#include <netdb.h>
#include <netinet/in.h>
#include <resolv.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/netlogon_ping.hpp"
#include "live/ldap/ldap_session.hpp"
#include "live/logon/network_probe.hpp"

namespace twk::live {
namespace {

struct SrvTarget {
  int priority = 0;
  int weight = 0;
  std::string host;
};

/// More are not asked at once.
constexpr std::size_t kMostAsked = 10;

/// A name from an answer that anyone may have sent, before it becomes part of another.
bool is_site(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) {
    return c == '-' || c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           static_cast<unsigned char>(c) > 0x7F;
  });
}

/// Controllers that were asked, or not.
class Candidates {
 public:
  explicit Candidates(const std::string& domain) : domain_(domain) {}

  void add(const std::vector<std::string>& hosts, bool near) {
    for (const std::string& host : hosts) {
      const auto known = std::ranges::find_if(
          found_, [&](const Candidate& one) { return base::equals_fold(one.host, host); });
      if (known == found_.end())
        found_.push_back({.host = host, .near = near});
      else
        known->near = known->near || near;
    }
  }

  /// Asks those, near ones if `near` says so, who were not asked yet. The site that they say this workstation
  /// is in; empty when nobody does.
  std::string ask(bool near) {
    std::vector<Candidate*> asked;
    std::vector<std::string> hosts;
    for (Candidate& one : found_) {
      if (one.asked || one.near != near || asked.size() == kMostAsked)
        continue;
      one.asked = true;
      asked.push_back(&one);
      hosts.push_back(one.host);
    }
    std::string site;
    const auto answers = ping_controllers(hosts, domain_);
    for (std::size_t i = 0; i < answers.size(); ++i) {
      asked[i]->answered = answers[i].has_value();
      if (site.empty() && answers[i] && is_site(answers[i]->own_site))
        site = answers[i]->own_site;
    }
    return site;
  }

  /// Near ones first, and after all others those that were silent.
  [[nodiscard]] std::vector<std::string> in_order() const {
    std::vector<Candidate> ordered = found_;
    std::ranges::stable_sort(
        ordered, {}, [](const Candidate& one) { return std::pair(one.asked && !one.answered, !one.near); });
    std::vector<std::string> hosts;
    hosts.reserve(ordered.size());
    for (Candidate& one : ordered)
      hosts.push_back(std::move(one.host));
    return hosts;
  }

 private:
  struct Candidate {
    std::string host;
    bool near = false;
    bool asked = false;
    bool answered = false;
  };

  const std::string& domain_;
  std::vector<Candidate> found_;
};

/// In the order in which to try them.
std::vector<std::string> controllers_of(const std::string& domain) {
  std::vector<std::string> hosts = look_up_srv("_ldap._tcp.dc._msdcs." + domain);
  if (hosts.size() < 2)
    return hosts;
  Candidates candidates(domain);
  candidates.add(hosts, false);
  if (const std::string site = candidates.ask(false); !site.empty()) {
    candidates.add(look_up_srv("_ldap._tcp." + site + "._sites.dc._msdcs." + domain), true);
    candidates.ask(true);
  }
  return candidates.in_order();
}

std::string first_answering(const LiveSettings& settings, const std::vector<std::string>& hosts,
                            const std::string& gone) {
  constexpr int kPatienceSeconds = 3;
  for (const std::string& host : hosts) {
    base::Trap trap;
    bool answers = false;
    if (!base::equals_fold(host, gone)) {
      trap([&] {
        answers = why_no_answer(host, ldap_port(settings, settings.port), kPatienceSeconds).empty();
      });
    }
    if (answers)
      return host;
  }
  return {};
}

}  // namespace

std::vector<std::string> look_up_srv(const std::string& name, SrvAnswer* how) {
  constexpr int kTimeoutSeconds = 3;
  SrvAnswer unused{};
  SrvAnswer& outcome = how == nullptr ? unused : *how;
  outcome = SrvAnswer::kSilence;
  std::array<unsigned char, NS_MAXMSG> answer{};
  struct __res_state state {};
  if (res_ninit(&state) != 0)
    return {};
  state.retrans = kTimeoutSeconds;
  state.retry = 1;
  const int length = res_nquery(&state, name.c_str(), ns_c_in, ns_t_srv, answer.data(), answer.size());
  if (length >= 0 || state.res_h_errno == HOST_NOT_FOUND || state.res_h_errno == NO_DATA)
    outcome = SrvAnswer::kNone;
  res_nclose(&state);
  ns_msg message{};
  if (length < 0 || ns_initparse(answer.data(), length, &message) != 0)
    return {};
  std::vector<SrvTarget> targets;
  for (int i = 0; i < ns_msg_count(message, ns_s_an); ++i) {
    constexpr int kFixedPart = 6;
    ns_rr record{};
    if (ns_parserr(&message, ns_s_an, i, &record) != 0 || ns_rr_type(record) != ns_t_srv ||
        ns_rr_rdlen(record) <= kFixedPart)
      continue;
    const unsigned char* const data = ns_rr_rdata(record);
    std::array<char, NS_MAXDNAME> host{};
    if (dn_expand(ns_msg_base(message), ns_msg_end(message), data + kFixedPart, host.data(), host.size()) < 0)
      continue;
    targets.push_back({data[0] << 8 | data[1], data[2] << 8 | data[3], host.data()});
  }
  std::sort(targets.begin(), targets.end(), [](const SrvTarget& a, const SrvTarget& b) {
    return a.priority != b.priority ? a.priority < b.priority : a.weight > b.weight;
  });
  std::vector<std::string> hosts;
  hosts.reserve(targets.size());
  for (SrvTarget& target : targets)
    hosts.push_back(std::move(target.host));
  if (!hosts.empty())
    outcome = SrvAnswer::kFound;
  return hosts;
}

std::string answering_controller(const LiveSettings& settings, const std::string& domain,
                                 const std::string& gone) {
  return first_answering(settings, controllers_of(domain), gone);
}

std::string locate_controller(const LiveSettings& settings, const std::string& domain) {
  const std::vector<std::string> hosts = controllers_of(domain);
  if (std::string host = first_answering(settings, hosts, {}); !host.empty())
    return host;
  if (!hosts.empty())
    return hosts.front();
  const std::string name = ask_host_name(settings, domain);
  return name.empty() ? domain : name;
}

}  // namespace twk::live
