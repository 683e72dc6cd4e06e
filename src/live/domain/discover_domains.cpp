#include "live/domain/discover_domains.hpp"

#include <netinet/in.h>
#include <resolv.h>

#include <algorithm>

#include "base/text.hpp"
#include "live/domain/locate_controller.hpp"
#include "live/logon/ticket.hpp"

namespace twk::live {
namespace {

/// Limits the cost of a long Kerberos configuration.
constexpr std::size_t kMostQuestions = 20;

bool is_dns_name(const std::string& name) {
  return name.find('.') != base::npos;
}

void add(std::vector<std::string>& domains, const std::string& name) {
  std::string domain = base::lower(name);
  if (is_dns_name(domain) && std::find(domains.begin(), domains.end(), domain) == domains.end())
    domains.push_back(std::move(domain));
}

/// "search" and "domain" of resolv.conf.
std::vector<std::string> search_domains() {
  std::vector<std::string> domains;
  struct __res_state state {};
  if (res_ninit(&state) != 0)
    return domains;
  for (const char* const* domain = state.dnsrch; *domain != nullptr; ++domain)
    domains.emplace_back(*domain);
  res_nclose(&state);
  return domains;
}

}  // namespace

std::vector<std::string> discover_domains() {
  const KnownRealms realms = known_realms();
  std::vector<std::string> domains;
  for (const std::string& realm : realms.of_tickets)
    add(domains, realm);
  add(domains, realms.by_default);
  std::vector<std::string> candidates;
  for (const std::string& name : search_domains())
    add(candidates, name);
  for (const std::string& realm : realms.configured)
    add(candidates, realm);
  candidates.resize(std::min(candidates.size(), kMostQuestions));
  for (const std::string& name : candidates) {
    SrvAnswer answer{};
    if (std::find(domains.begin(), domains.end(), name) == domains.end())
      look_up_srv("_ldap._tcp.dc._msdcs." + name, &answer);
    if (answer == SrvAnswer::kSilence)
      break;
    if (answer == SrvAnswer::kFound)
      add(domains, name);
  }
  return domains;
}

std::string usual_domain() {
  const KnownRealms realms = known_realms();
  std::vector<std::string> domains;
  for (const std::string& realm : realms.of_tickets)
    add(domains, realm);
  add(domains, realms.by_default);
  return domains.empty() ? std::string() : domains.front();
}

}  // namespace twk::live
