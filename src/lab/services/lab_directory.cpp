#include "lab/services/lab_directory.hpp"

#include "ads/namespace_object.hpp"
#include "ads/schema_object.hpp"
#include "ads/share_object.hpp"

#include "lab/domain/account_path.hpp"
#include "lab/domain/ldap_object.hpp"
#include "lab/domain/logon.hpp"
#include "lab/domain/root_dse.hpp"
#include "lab/domain/winnt_object.hpp"
#include "lab/exchange/exchange_object.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {

using platform::ObjectPtr;

ObjectPtr LabDirectory::bind_namespace(ads::Provider provider) {
  const bool nt = domain_.config.kind == DomainKind::kNt;
  std::vector<std::string> children;
  if (provider == ads::Provider::kWinnt) {
    children.push_back(platform::winnt_path(domain_.config.netbios));
  } else if (!nt) {
    children.push_back((provider == ads::Provider::kGc ? "GC://" : "LDAP://") + domain_.config.domain);
  }
  const std::string name = provider == ads::Provider::kGc     ? "GC:"
                           : provider == ads::Provider::kLdap ? "LDAP:"
                                                              : "WinNT:";
  return std::make_shared<ads::NamespaceObject>(
      name, provider == ads::Provider::kWinnt ? "Domain" : "domainDNS", children,
      [this](const std::string& path) { return GetObject(path); });
}

ObjectPtr LabDirectory::bind_entry(const ads::AdsPath& path, std::string_view whole) {
  const std::string dn = resolve_entry(domain_, path);
  return std::make_shared<LdapObject>(StagedEntry(domain_, path.provider, dn), path.provider, path.server,
                                      std::string(path.name.empty() ? whole : std::string_view{}));
}

ObjectPtr LabDirectory::bind_share(const ads::AdsPath& path) {
  FileServer* const server = domain_.servers.find(path.server);
  if (server == nullptr)
    raise(kBadNetPath, "There is no file server " + path.server);
  const auto object = std::make_shared<ads::FileServerObject>(server->shares(), path.server);
  return path.kind == ads::AdsPath::Kind::kFileShare ? object->GetObject("FileShare", path.name) : object;
}

ObjectPtr LabDirectory::bind_exchange(const ads::AdsPath& path) {
  const bool domain_listens = domain_.config.kind != DomainKind::kNt;
  if (path.provider != ads::Provider::kLdap || path.server.empty() ||
      (domain_listens && is_domain_server(domain_, path.server)))
    return nullptr;
  EntryStore* const store = exchange_.find(path.server);
  return store == nullptr ? nullptr : bind_exchange_object(*store, path.server, path.name);
}

ObjectPtr LabDirectory::GetObject(std::string_view path) {
  const ads::AdsPath parsed = ads::parse_ads_path(path);
  domain_.store.refresh();
  switch (parsed.kind) {
    case ads::AdsPath::Kind::kNamespace:
      return bind_namespace(parsed.provider);
    case ads::AdsPath::Kind::kRootDse:
      require_ldap_server(domain_, parsed.server);
      return std::make_shared<RootDse>(domain_, std::string(path));
    case ads::AdsPath::Kind::kSchema:
      require_ldap_server(domain_, parsed.server);
      return ads::bind_schema(parsed.name, ads::find_attribute);
    case ads::AdsPath::Kind::kEntry: {
      ObjectPtr mail = bind_exchange(parsed);
      return mail != nullptr ? mail : bind_entry(parsed, path);
    }
    case ads::AdsPath::Kind::kDomain:
      require_domain(domain_, parsed.server);
      return std::make_shared<WinntDomain>(domain_, parsed.server);
    case ads::AdsPath::Kind::kAccount:
      return bind_winnt_account(domain_, resolve_entry(domain_, parsed), parsed.server);
    case ads::AdsPath::Kind::kFileServer:
    case ads::AdsPath::Kind::kFileShare:
      return bind_share(parsed);
  }
  raise(ads_error::kBadPathname, "Not a path of a directory: " + std::string(path));
}

ObjectPtr LabDirectory::OpenDSObject(std::string_view path, std::string_view user,
                                     std::string_view password) {
  if (!user.empty())
    check_logon(domain_, user, password);
  return GetObject(path);
}

void LabDirectory::begin_batch() {
  turn_->begin();
  domain_.store.begin_batch();
}

void LabDirectory::end_batch() {
  turn_->end();
  domain_.store.end_batch();
}

}  // namespace twk::lab
