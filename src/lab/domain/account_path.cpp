#include "lab/domain/account_path.hpp"

#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

std::string resolve_account(const LabDomain& domain, const ads::AdsPath& path) {
  require_domain(domain, path.server);
  const bool want_group = base::equals_fold(path.account_class, "group");
  const bool want_user = base::equals_fold(path.account_class, "user");
  const Entry* entry = want_group ? nullptr : find_account(domain, path.name, true);
  if (entry == nullptr && !want_user)
    entry = find_account(domain, path.name, false);
  if (entry == nullptr) {
    raise(want_group ? ads_error::kGroupNotFound : ads_error::kUserNotFound,
          "The domain has no account " + path.name);
  }
  return entry->dn();
}

}  // namespace

void require_ldap_server(const LabDomain& domain, std::string_view server) {
  if (domain.config.kind == DomainKind::kNt || !is_domain_server(domain, server)) {
    raise(ads_error::kServerDown, "No directory server answers for \"" + std::string(server) + "\"");
  }
}

void require_domain(const LabDomain& domain, std::string_view name) {
  if (!is_domain_name(domain, name))
    raise(ads_error::kNoSuchDomain, "There is no domain " + std::string(name));
}

std::string resolve_entry(const LabDomain& domain, const ads::AdsPath& path) {
  switch (path.kind) {
    case ads::AdsPath::Kind::kEntry:
      require_ldap_server(domain, path.server);
      return require_entry(domain, path.name.empty() ? domain.root_dn : path.name).dn();
    case ads::AdsPath::Kind::kDomain:
      require_domain(domain, path.server);
      return require_entry(domain, domain.root_dn).dn();
    case ads::AdsPath::Kind::kAccount:
      return resolve_account(domain, path);
    default:
      raise(ads_error::kBadPathname, "The path names no object of the domain");
  }
}

std::string resolve_entry(const LabDomain& domain, std::string_view path) {
  return resolve_entry(domain, ads::parse_ads_path(path));
}

}  // namespace twk::lab
