#include "lifecycle/rename/rename_principal.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using session::Session;

void add_suffix(std::vector<std::string>& suffixes, const std::string& name) {
  if (!name.empty() && find_suffix(suffixes, "@" + name).empty())
    suffixes.push_back("@" + name);
}

/// The name of a domain, whose cross-reference also has a pre-2000 name; other partitions have none.
void add_domain(std::vector<std::string>& suffixes, const ObjectPtr& reference) {
  base::Trap other_partition;
  other_partition([&] {
    if (!reference->Get("nETBIOSName").text().empty())
      add_suffix(suffixes, reference->Get("dnsRoot").text());
  });
}

}  // namespace

std::string find_suffix(const std::vector<std::string>& suffixes, std::string_view suffix) {
  const auto found = std::find_if(suffixes.begin(), suffixes.end(),
                                  [&](const std::string& one) { return base::equals_fold(one, suffix); });
  return found == suffixes.end() ? std::string() : *found;
}

PrincipalName split_principal(std::string_view name) {
  const std::size_t at = name.rfind('@');
  if (at == base::npos)
    return {std::string(name), {}};
  return {std::string(name.substr(0, at)), std::string(name.substr(at))};
}

std::vector<std::string> principal_suffixes(Session& session) {
  std::vector<std::string> suffixes;
  add_suffix(suffixes, session.DomainName);
  base::Trap unreadable;
  unreadable([&] {
    platform::DirectoryService& directory = session.platform.directory;
    const std::string configuration =
        directory.GetObject("LDAP://RootDSE")->Get("configurationNamingContext").text();
    const ObjectPtr partitions = directory.GetObject("LDAP://CN=Partitions," + configuration);
    partitions->enumerate({}, [&](const ObjectPtr& reference) {
      add_domain(suffixes, reference);
      return true;
    });
    for (const platform::Value& suffix : partitions->Get("uPNSuffixes").list())
      add_suffix(suffixes, suffix.text());
  });
  return suffixes;
}

}  // namespace twk::lifecycle
