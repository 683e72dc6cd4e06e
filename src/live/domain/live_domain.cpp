#include "live/domain/live_domain.hpp"

#include <algorithm>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/delegated_rights.hpp"
#include "live/domain/locate_controller.hpp"
#include "platform/directory.hpp"
#include "platform/ldap_text.hpp"

namespace twk::live {
namespace {

constexpr std::uint16_t kCataloguePort = 3268;
constexpr std::uint16_t kCatalogueTlsPort = 3269;
/// How long an answer is kept that the steps of one run ask for again.
constexpr std::chrono::seconds kTakenForTrue{10};
constexpr std::int32_t kNotInCatalogue = 4;  // FLAG_CR_NTDS_NOT_GC_REPLICATED, [MS-ADTS] 6.1.1.2.1.1

struct HostPort {
  std::string host;
  std::uint16_t port = 0;
};

HostPort split_server(std::string_view server) {
  const std::size_t colon = server.rfind(':');
  if (colon == base::npos)
    return {std::string(server), 0};
  const auto port = base::to_number(server.substr(colon + 1));
  if (!port || *port < 1 || *port > 65535)
    base::raise(platform::ads_error::kBadPathname, "Not a server and port: " + std::string(server));
  return {std::string(server.substr(0, colon)), static_cast<std::uint16_t>(*port)};
}

std::string dns_name(std::string_view dn) {
  std::string name;
  for (const std::string_view part : ads::split_dn(dn)) {
    if (base::starts_with_fold(part, "DC="))
      name += (name.empty() ? "" : ".") + ads::parse_rdn(part).value;
  }
  return name;
}

}  // namespace

LiveDomain::LiveDomain(LiveSettings settings, Prompts prompts)
    : credentials_(std::make_shared<Credentials>(std::move(settings), std::move(prompts))) {
  credentials_->learn_netbios_by([this] { return netbios(); });
}

bool LiveDomain::has_directory() const {
  return settings().domain.find('.') != base::npos;
}

const std::string& LiveDomain::controller() {
  if (controller_.empty())
    controller_ =
        settings().server.empty() ? locate_controller(settings(), settings().domain) : settings().server;
  return controller_;
}

std::string LiveDomain::another_controller(const std::string& host, bool is_gone) {
  if (!settings().server.empty())
    return {};
  if (!base::equals_fold(controller_, host))
    return controller_;
  std::string other = is_gone ? answering_controller(settings(), settings().domain, host) : std::string();
  if (!other.empty())
    controller_ = other;
  return other;
}

bool LiveDomain::is_own(std::string_view server) const {
  return server.empty() || base::equals_fold(server, settings().domain) ||
         (facts_ && base::equals_fold(server, facts_->netbios));
}

std::unique_ptr<LdapConnection> LiveDomain::make(std::string_view server, bool catalogue,
                                                 const std::shared_ptr<Credentials>& credentials) {
  const LiveSettings& logon = credentials->settings();
  HostPort place = is_own(server) ? HostPort{controller(), logon.port} : split_server(server);
  // It may be another domain of the forest, whose name is not a host's.
  if (!is_own(server) && place.port == 0 && !base::equals_fold(server, controller()))
    place.host = locate_controller(logon, place.host);
  if (catalogue)
    place.port = catalogue_port();
  auto connection = std::make_unique<LdapConnection>(credentials, std::move(place.host), place.port);
  if (is_own(server) && credentials == credentials_)
    connection->find_others_by(
        [this](const std::string& host, bool is_gone) { return another_controller(host, is_gone); });
  return connection;
}

LdapConnection& LiveDomain::ldap(std::string_view server, bool catalogue) {
  const bool own = server.empty() || base::equals_fold(server, settings().domain);
  if (own && !has_directory())
    base::raise(platform::ads_error::kServerDown, "The domain " + settings().domain + " has no directory");
  if (own)
    server = {};
  return catalogue ? catalogue_of(server) : kept(base::upper(server), server, false);
}

LdapConnection& LiveDomain::kept(const std::string& key, std::string_view server, bool catalogue) {
  std::unique_ptr<LdapConnection>& connection = connections_[key];
  if (connection == nullptr)
    connection = make(server, catalogue, credentials_);
  return *connection;
}

LdapConnection& LiveDomain::catalogue_of(std::string_view server) {
  LdapConnection& connection = kept("GC " + base::upper(server), server, true);
  const auto [answers, unknown] = catalogue_answers_.try_emplace(base::upper(server), true);
  if (unknown) {
    base::Trap trap;
    answers->second = trap([&] { connection.open(); }) || trap.number() != platform::ads_error::kServerDown;
    if (!answers->second) {
      credentials_->tell(
          "The global catalogue of " + connection.host() + " does not answer on port " +
          base::to_text(catalogue_port()) +
          ". What it would be asked for is looked for in the directory itself, in one domain at a time");
    }
  }
  return answers->second ? connection : kept(base::upper(server), server, false);
}

std::uint16_t LiveDomain::catalogue_port() const {
  const bool tls =
      settings().logon == LiveSettings::Logon::kPassword && settings().tls == LiveSettings::Tls::kLdaps;
  return tls ? kCatalogueTlsPort : kCataloguePort;
}

std::unique_ptr<LdapConnection> LiveDomain::ldap_as(std::string_view server, std::string_view user,
                                                    std::string_view password) {
  LiveSettings logon = settings();
  logon.logon = LiveSettings::Logon::kPassword;
  logon.user = user;
  logon.password = password;
  auto connection = make(server, false, std::make_shared<Credentials>(std::move(logon), Prompts{}));
  connection->open();
  return connection;
}

std::string LiveDomain::root_dn(std::string_view server) {
  return is_own(server) ? root_dn()
                        : ldap(server).read("", {"defaultNamingContext"}).first("defaultNamingContext");
}

const LiveDomain::Facts& LiveDomain::facts() {
  if (facts_)
    return *facts_;
  Facts facts;
  LdapConnection& connection = ldap();
  const LdapEntry root = connection.read("", {"defaultNamingContext", "configurationNamingContext",
                                              "schemaNamingContext", "rootDomainNamingContext"});
  facts.root_dn = root.first("defaultNamingContext");
  facts.configuration_dn = root.first("configurationNamingContext");
  facts.schema_dn = root.first("schemaNamingContext");
  facts.forest = dns_name(root.first("rootDomainNamingContext"));
  const std::string sid = connection.read(facts.root_dn, {"objectSid"}).first("objectSid");
  if (const auto decoded = platform::Sid::decode(base::Bytes(sid.begin(), sid.end())))
    facts.sid = *decoded;
  LdapSearch partition;
  partition.base = "CN=Partitions," + facts.configuration_dn;
  partition.scope = platform::Scope::kOneLevel;
  partition.filter = "(objectClass=crossRef)";
  partition.attributes = {"nCName", "nETBIOSName", "systemFlags"};
  connection.search(partition, [&](LdapEntry&& entry) {
    const std::string context = entry.first("nCName");
    if (base::equals_fold(context, facts.root_dn))
      facts.netbios = entry.first("nETBIOSName");
    if ((base::val(entry.first("systemFlags")) & kNotInCatalogue) != 0)
      facts.beside_catalogue.push_back(ads::normalize_dn(context));
    return true;
  });
  facts_ = std::move(facts);
  return *facts_;
}

bool LiveDomain::is_beside_catalogue(std::string_view dn) {
  const std::string name = ads::normalize_dn(dn);
  const std::vector<std::string>& contexts = facts().beside_catalogue;
  return std::any_of(contexts.begin(), contexts.end(), [&](const std::string& context) {
    return name == context || name.ends_with("," + context);
  });
}

bool LiveDomain::is_domain_name(std::string_view name) {
  return base::equals_fold(name, settings().domain) ||
         (has_directory() && base::equals_fold(name, netbios()));
}

const ads::AttributeSchema* LiveDomain::attribute(std::string_view name) {
  if (const ads::AttributeSchema* const known = ads::find_attribute(name))
    return known;
  return schema_.find(ldap(), schema_dn(), name);
}

const ads::ClassProperties& LiveDomain::properties(const ads::ClassSchema& schema) {
  return schema_.properties(ldap(), schema_dn(), schema.name);
}

const Subschema* LiveDomain::foreign_schema(std::string_view server, LdapConnection& connection) {
  if (server.empty() || is_domain_name(server) || base::equals_fold(server, controller()))
    return nullptr;
  const auto [place, fresh] = foreign_.try_emplace(base::upper(server));
  if (fresh && connection.read("", {"schemaNamingContext"}).first("schemaNamingContext").empty())
    place->second = std::make_unique<Subschema>(connection);
  return place->second.get();
}

std::optional<LdapEntry> LiveDomain::find_account(std::string_view name,
                                                  const std::vector<std::string>& attributes,
                                                  std::string_view server) {
  LdapSearch search;
  search.base = root_dn();
  search.filter = "(&(sAMAccountName=" + platform::escape_filter_value(name) + ")(objectSid=*))";
  search.attributes = attributes;
  std::optional<LdapEntry> found;
  ldap(server).search(search, [&](LdapEntry&& entry) {
    found = std::move(entry);
    return false;
  });
  return found;
}

std::optional<platform::Sid> LiveDomain::sid_of_account(std::string_view name) {
  std::size_t changes = 0;
  for (const auto& [server, connection] : connections_)
    changes += connection == nullptr ? 0 : connection->changes_of_names();
  if (std::exchange(sids_known_at_, changes) != changes)
    sids_.clear();
  const auto now = std::chrono::steady_clock::now();
  const auto known = sids_.find(base::upper(name));
  if (known != sids_.end() && now - known->second.at < kTakenForTrue)
    return known->second.sid;
  const auto entry = find_account(name, {"objectSid"});
  const std::string bytes = entry ? entry->first("objectSid") : std::string();
  auto sid = platform::Sid::decode(base::Bytes(bytes.begin(), bytes.end()));
  if (sid)
    sids_.insert_or_assign(base::upper(name), KnownSid{*sid, now});
  return sid;
}

std::string LiveDomain::primary_controller() {
  std::string name;
  base::Trap unreadable;
  unreadable([&] {
    // "CN=NTDS Settings,CN=DC1,CN=Servers,…"
    const std::string settings = ldap().read(root_dn(), {"fSMORoleOwner"}).first("fSMORoleOwner");
    name = ads::parse_rdn(ads::first_rdn(ads::parent_dn(settings))).value;
  });
  return name;
}

void LiveDomain::read_password_rules() {
  const auto now = std::chrono::steady_clock::now();
  if (now < password_rules_until_)
    return;
  constexpr std::int32_t kComplex = 1;  // DOMAIN_PASSWORD_COMPLEX, [MS-SAMR] 2.2.3.2
  LdapSearch others;
  others.base = "CN=Password Settings Container,CN=System," + root_dn();
  others.scope = platform::Scope::kOneLevel;
  others.filter = "(objectClass=msDS-PasswordSettings)";
  others.attributes = {"1.1"};
  bool found = false;
  base::Trap without_container;
  without_container([&] { ldap().search(others, [&](LdapEntry&&) { return !(found = true); }); });
  const LdapEntry root = ldap().read(root_dn(), {"minPwdLength", "pwdProperties"});
  password_rules_ = {static_cast<int>(base::val(root.first("minPwdLength"))),
                     (static_cast<std::int32_t>(base::val(root.first("pwdProperties"))) & kComplex) != 0};
  has_own_password_rules_ = found;
  password_rules_until_ = now + kTakenForTrue;
}

bool LiveDomain::is_among_rights(const std::string& dn, std::string_view name,
                                 std::optional<std::vector<std::string>> (*read)(LdapConnection&,
                                                                                 const std::string&)) {
  constexpr std::size_t kMost = 50;
  const auto now = std::chrono::steady_clock::now();
  const std::string key = (read == creatable_classes ? "C" : "A") + base::upper(dn);
  auto known = rights_.find(key);
  if (known == rights_.end() || now - known->second.at > kTakenForTrue) {
    if (rights_.size() >= kMost)
      rights_.clear();
    KnownRights told{.names = {}, .at = now};
    base::Trap unknown;
    unknown([&] { told.names = read(ldap(), dn); });
    known = rights_.insert_or_assign(key, std::move(told)).first;
  }
  const auto& names = known->second.names;
  return !names ||
         std::ranges::any_of(*names, [&](const std::string& one) { return base::equals_fold(one, name); });
}

bool LiveDomain::may_create(const std::string& container, std::string_view object_class) {
  return is_among_rights(container, object_class, creatable_classes);
}

bool LiveDomain::may_write(const std::string& dn, std::string_view attribute) {
  return is_among_rights(dn, attribute, writable_attributes);
}

std::optional<ads::PasswordRules> LiveDomain::password_rules() {
  read_password_rules();
  return has_own_password_rules_ ? std::nullopt : std::optional(password_rules_);
}

std::optional<ads::PasswordRules> LiveDomain::password_rules_of(const std::string& dn) {
  read_password_rules();
  if (!has_own_password_rules_)
    return password_rules_;
  const std::string own = ldap().read(dn, {"msDS-ResultantPSO"}).first("msDS-ResultantPSO");
  if (own.empty())
    return password_rules_;
  std::optional<ads::PasswordRules> rules;
  base::Trap unreadable;
  unreadable([&] {
    const LdapEntry entry =
        ldap().read(own, {"msDS-MinimumPasswordLength", "msDS-PasswordComplexityEnabled"});
    const std::string length = entry.first("msDS-MinimumPasswordLength");
    const std::string complexity = entry.first("msDS-PasswordComplexityEnabled");
    if (!length.empty() && !complexity.empty())
      rules = {static_cast<int>(base::val(length)), base::equals_fold(complexity, "TRUE")};
  });
  return rules;
}

std::optional<LdapEntry> LiveDomain::find_sid(const platform::Sid& sid,
                                              const std::vector<std::string>& attributes) {
  LdapSearch search;
  search.base = root_dn();
  const base::Bytes& bytes = sid.bytes();
  search.filter =
      "(objectSid=" + platform::escape_filter_bytes(std::string(bytes.begin(), bytes.end())) + ")";
  search.attributes = attributes;
  std::optional<LdapEntry> found;
  ldap().search(search, [&](LdapEntry&& entry) {
    found = std::move(entry);
    return false;
  });
  return found;
}

}  // namespace twk::live
