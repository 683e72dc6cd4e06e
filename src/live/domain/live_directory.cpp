#include "live/domain/live_directory.hpp"

#include "ads/dn.hpp"
#include "ads/namespace_object.hpp"
#include "ads/schema_object.hpp"
#include "ads/winnt_object.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/bind_shares.hpp"
#include "live/domain/discover_domains.hpp"
#include "live/domain/live_object.hpp"
#include "live/domain/nt_domain.hpp"
#include "live/domain/winnt_account.hpp"

namespace twk::live {
namespace {

using ads::AdsPath;
using ads::Provider;
using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

/// What a server says about itself.
class RootDse final : public ads::BasicObject {
 public:
  RootDse(LdapConnection& connection, std::string path) : connection_(connection), path_(std::move(path)) {
    stored_ = connection_.read("", {});
  }

  [[nodiscard]] std::string Name() const override { return "RootDSE"; }
  [[nodiscard]] std::string Class() const override { return "RootDSE"; }
  [[nodiscard]] std::string ADsPath() const override { return path_; }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }

  Value Get(std::string_view attribute) override {
    const auto* const values = stored_.find(attribute);
    if (values == nullptr || values->empty())
      base::raise(ads_error::kPropertyNotFound, "RootDSE has no value for " + std::string(attribute));
    return ads::to_value(nullptr, *values);
  }

 private:
  LdapConnection& connection_;
  std::string path_;
  LdapEntry stored_;
};

/// The name of the domain itself first, the pre-2000 one if known, then the other visible ones.
std::vector<std::string> domain_names(LiveDomain& domain) {
  std::string own = domain.settings().domain;
  if (domain.has_directory()) {
    base::Trap trap;
    trap([&] { own = domain.netbios(); });
  }
  std::vector<std::string> names = {std::move(own)};
  for (std::string& name : discover_domains()) {
    if (!base::equals_fold(name, domain.settings().domain))
      names.push_back(std::move(name));
  }
  std::erase(names, std::string());
  return names;
}

}  // namespace

ObjectPtr LiveDirectory::bind_namespace(Provider provider) {
  if (provider == Provider::kWinnt) {
    const std::vector<std::string> names = domain_names(domain_);
    const std::string own = names.empty() ? std::string() : names.front();
    return std::make_shared<ads::NamespaceObject>(
        "WinNT:", "Domain", names, [this, own](const std::string& name) -> ObjectPtr {
          if (name == own)
            return std::make_shared<WinntDirectoryDomain>(domain_, name);
          return std::make_shared<ads::WinntDomainObject>(name);
        });
  }
  std::vector<std::string> children;
  if (domain_.has_directory()) {
    children.push_back((provider == Provider::kGc ? "GC://" : "LDAP://") + domain_.forest());
  }
  return std::make_shared<ads::NamespaceObject>(provider == Provider::kGc ? "GC:" : "LDAP:", "domainDNS",
                                                children,
                                                [this](const std::string& path) { return GetObject(path); });
}

ObjectPtr LiveDirectory::bind_root_dse(const AdsPath& path, std::string_view whole) {
  return std::make_shared<RootDse>(domain_.ldap(path.server), std::string(whole));
}

ObjectPtr LiveDirectory::bind_entry(const AdsPath& path, std::string_view whole,
                                    std::shared_ptr<LdapConnection> connection) {
  Origin origin{.domain = &domain_,
                .provider = path.provider,
                .server = path.server,
                .connection = std::move(connection)};
  const std::string dn = path.name.empty() ? domain_.root_dn(path.server) : ads::from_top_down(path.name);
  LdapEntry entry = origin.ldap().read(dn, {"objectClass"});
  std::string object_class = class_of(entry);
  return std::make_shared<LiveObject>(LiveEntry(std::move(origin), dn, std::move(object_class), false),
                                      std::string(path.name.empty() ? whole : std::string_view{}));
}

ObjectPtr LiveDirectory::GetObject(std::string_view path) {
  const AdsPath parsed = ads::parse_ads_path(path);
  switch (parsed.kind) {
    case AdsPath::Kind::kNamespace:
      return bind_namespace(parsed.provider);
    case AdsPath::Kind::kRootDse:
      return bind_root_dse(parsed, path);
    case AdsPath::Kind::kSchema:
      domain_.ldap();
      return ads::bind_schema(
          parsed.name, [this](std::string_view name) { return domain_.attribute(name); },
          [this](const ads::ClassSchema& schema) { return domain_.properties(schema); });
    case AdsPath::Kind::kEntry:
      return bind_entry(parsed, path, nullptr);
    case AdsPath::Kind::kDomain:
      if (!domain_.is_domain_name(parsed.server))
        base::raise(ads_error::kNoSuchDomain, "There is no domain " + parsed.server);
      if (!domain_.has_directory())
        return bind_nt_domain(domain_, parsed.server);
      return std::make_shared<WinntDirectoryDomain>(domain_, parsed.server);
    case AdsPath::Kind::kAccount:
      if (!domain_.is_domain_name(parsed.server))
        base::raise(ads_error::kNoSuchDomain, "There is no domain " + parsed.server);
      if (!domain_.has_directory())
        return bind_nt_domain(domain_, parsed.server)->GetObject(parsed.account_class, parsed.name);
      return bind_winnt_account(domain_, parsed.name, parsed.account_class, parsed.server);
    case AdsPath::Kind::kFileServer:
    case AdsPath::Kind::kFileShare:
      return bind_shares(domain_, parsed);
  }
  base::raise(ads_error::kBadPathname, "Not a path of a directory: " + std::string(path));
}

ObjectPtr LiveDirectory::OpenDSObject(std::string_view path, std::string_view user,
                                      std::string_view password) {
  if (user.empty())
    return GetObject(path);
  const AdsPath parsed = ads::parse_ads_path(path);
  std::shared_ptr<LdapConnection> connection = domain_.ldap_as(parsed.server, user, password);
  if (parsed.kind == AdsPath::Kind::kEntry)
    return bind_entry(parsed, path, std::move(connection));
  return GetObject(path);
}

}  // namespace twk::live
