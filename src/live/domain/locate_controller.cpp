#include "live/domain/locate_controller.hpp"

#include <arpa/nameser.h>
#include <netdb.h>
#include <netinet/in.h>
#include <resolv.h>

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_session.hpp"
#include "live/logon/network_probe.hpp"

namespace twk::live {
namespace {

struct SrvTarget {
  int priority = 0;
  int weight = 0;
  std::string host;
};

std::vector<std::string> controllers_of(const std::string& domain) {
  return look_up_srv("_ldap._tcp.dc._msdcs." + domain);
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
