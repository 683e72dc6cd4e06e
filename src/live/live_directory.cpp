#include "live/live_directory.hpp"

#include "ads/namespace_object.hpp"
#include "ads/schema_object.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/live_object.hpp"
#include "live/live_shares.hpp"
#include "live/nt_domain.hpp"
#include "live/winnt_account.hpp"

namespace twk::live {
namespace {

using ads::AdsPath;
using ads::Provider;
using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

/// What a server tells of itself.
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

}  // namespace

ObjectPtr LiveDirectory::bind_namespace(Provider provider) {
  std::vector<std::string> children;
  if (provider == Provider::kWinnt) {
    children.push_back("WinNT://" +
                       (domain_.has_directory() ? domain_.netbios() : domain_.settings().domain));
  } else if (domain_.has_directory()) {
    children.push_back((provider == Provider::kGc ? "GC://" : "LDAP://") + domain_.forest());
  }
  const std::string name = provider == Provider::kGc     ? "GC:"
                           : provider == Provider::kLdap ? "LDAP:"
                                                         : "WinNT:";
  return std::make_shared<ads::NamespaceObject>(name, provider == Provider::kWinnt ? "Domain" : "domainDNS",
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
  const std::string dn = path.name.empty() ? domain_.root_dn() : path.name;
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
      return ads::bind_schema(parsed.name, [this](std::string_view name) { return domain_.attribute(name); });
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
