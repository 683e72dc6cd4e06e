#include "lab/making/invented_domain.hpp"

#include <array>
#include <vector>

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "ads/sid.hpp"
#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/making/configuration_entries.hpp"
#include "lab/making/invented_names.hpp"
#include "platform/group_type.hpp"

namespace twk::lab {
namespace {

namespace group_type = platform::group_type;

constexpr std::uint32_t kFirstRid = 1000;
constexpr std::size_t kUnitsInPlace = 5;  ///< a place and the departments below it
constexpr std::size_t kMostGroupsOfUser = 4;

class DomainWriter {
 public:
  DomainWriter(const LabConfig& config, const DomainPlan& plan,
               const std::function<void(const LdifRecord&)>& write)
      : config_(config),
        plan_(plan),
        write_(write),
        numbers_(plan.seed),
        people_(numbers_),
        root_(ads::domain_dn(domain_name(config))),
        sid_(ads::make_domain_sid(word(), word(), word())) {}

  void write() {
    write_containers();
    write_builtin_accounts();
    write_units();
    write_users();
    write_groups();
    for (const LdifRecord& record : configuration_entries(config_))
      write_(record);
  }

 private:
  std::uint32_t word() { return static_cast<std::uint32_t>(numbers_.next() >> 32U); }

  std::string guid() {
    std::string bytes;
    for (int half = 0; half < 2; ++half) {
      const std::uint64_t number = numbers_.next();
      for (unsigned shift = 0; shift < 64; shift += 8)
        bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
    }
    return bytes;
  }

  LdifRecord make(const std::string& dn, std::string_view object_class) {
    const ads::ClassSchema& schema = *ads::find_class(object_class);
    LdifRecord record;
    record.dn = dn;
    record.attributes = {{"objectClass", base::split(schema.chain, ' ')}};
    const ads::Rdn rdn = ads::parse_rdn(ads::first_rdn(dn));
    add(record, base::lower(rdn.type), rdn.value);
    add(record, "objectCategory",
        "CN=" + std::string(schema.category) + ",CN=Schema,CN=Configuration," + root_);
    add(record, "objectGUID", guid());
    return record;
  }

  static void add(LdifRecord& record, std::string_view name, std::string value) {
    record.attributes.push_back({std::string(name), {std::move(value)}});
  }

  void add_account(LdifRecord& record, const std::string& name, std::string sid) {
    add(record, "sAMAccountName", name);
    add(record, "objectSid", std::move(sid));
  }

  std::string rid_sid(std::uint32_t rid) const { return ads::append_rid(sid_, rid); }

  void write_containers() {
    LdifRecord domain = make(root_, "domainDNS");
    add(domain, "objectSid", sid_);
    add(domain, "nTMixedDomain", config_.kind == DomainKind::kNative ? "0" : "1");
    const std::size_t given = plan_.users + plan_.groups + 2;
    add(domain, "rIDNextRID", base::to_text(static_cast<std::int64_t>(kFirstRid + given)));
    write_(domain);
    write_needed("CN=Users," + root_, "container");
    write_needed("CN=Computers," + root_, "container");
    write_needed("CN=Builtin," + root_, "builtinDomain");
    write_needed("OU=Domain Controllers," + root_, "organizationalUnit");
  }

  void write_needed(const std::string& dn, std::string_view object_class) {
    LdifRecord record = make(dn, object_class);
    add(record, "isCriticalSystemObject", "TRUE");
    write_(record);
  }

  LdifRecord make_user(const std::string& dn, const std::string& name, std::uint32_t rid,
                       std::int32_t flags) {
    LdifRecord user = make(dn, "user");
    add_account(user, name, rid_sid(rid));
    add(user, "userAccountControl", base::to_text(flags));
    add(user, "primaryGroupID", base::to_text(kDomainUsersRid));
    add(user, "sAMAccountType", "805306368");
    add(user, "accountExpires", std::string(kNeverExpires));
    // A moment between 2015 and 2025.
    const base::Date created{42005.0 +
                             static_cast<double>(numbers_.below(std::size_t{3650} * 86400)) / 86400.0};
    add(user, "pwdLastSet", base::to_text(base::to_filetime(created)));
    add(user, "whenCreated", ads::to_raw(*ads::find_attribute("whenCreated"), created));
    return user;
  }

  void write_builtin_user(const std::string& name, std::uint32_t rid, std::int32_t flags,
                          std::string_view about, bool needed) {
    LdifRecord user = make_user(ads::make_rdn("CN", name) + ",CN=Users," + root_, name, rid, flags);
    if (!about.empty())
      add(user, "description", std::string(about));
    if (needed)
      add(user, "isCriticalSystemObject", "TRUE");
    write_(user);
  }

  void write_needed_group(const std::string& parent, const std::string& name, std::string sid,
                          std::int32_t type, std::string_view about,
                          const std::vector<std::string>& members) {
    LdifRecord group = make(ads::make_rdn("CN", name) + "," + parent, "group");
    add_account(group, name, std::move(sid));
    const std::int32_t bits = group_type::kSecurity | type;
    add(group, "groupType", base::to_text(bits));
    add(group, "sAMAccountType", group_account_type(bits));
    add(group, "description", std::string(about));
    add(group, "isCriticalSystemObject", "TRUE");
    if (!members.empty())
      group.attributes.push_back({"member", members});
    write_(group);
  }

  void write_controller() {
    LdifRecord computer =
        make(ads::make_rdn("CN", config_.controller) + ",OU=Domain Controllers," + root_, "computer");
    add_account(computer, config_.controller + "$", rid_sid(kFirstRid));
    add(computer, "userAccountControl", "532480");
    add(computer, "primaryGroupID", "516");
    add(computer, "sAMAccountType", "805306369");
    add(computer, "isCriticalSystemObject", "TRUE");
    if (!config_.domain.empty()) {
      add(computer, "dNSHostName", base::lower(config_.controller) + "." + config_.domain);
    }
    write_(computer);
  }

  void write_builtin_accounts() {
    const std::string users = "CN=Users," + root_;
    const std::string builtin = "CN=Builtin," + root_;
    write_controller();
    write_builtin_user("Administrator", 500, 0x10200, "Built-in account for administering the domain", true);
    write_builtin_user("Guest", 501, 0x10222, "Built-in account for guest access", true);
    people_.reserve("Administrator");
    people_.reserve("Guest");
    std::vector<std::string> admins = {"CN=Administrator," + users};
    const bool own = base::equals_fold(plan_.administrator, "Administrator") ||
                     base::equals_fold(plan_.administrator, "Guest");
    if (!plan_.administrator.empty() && !own) {
      write_builtin_user(plan_.administrator, kFirstRid + 1, 0x200, "", false);
      people_.reserve(plan_.administrator);
      admins.push_back(ads::make_rdn("CN", plan_.administrator) + "," + users);
    }
    write_needed_group(users, "Domain Admins", rid_sid(512), group_type::kGlobal,
                       "Administrators of the domain", admins);
    write_needed_group(users, "Domain Users", rid_sid(513), group_type::kGlobal, "All domain users", {});
    write_needed_group(users, "Domain Guests", rid_sid(514), group_type::kGlobal, "All domain guests",
                       {"CN=Guest," + users});
    write_needed_group(users, "Domain Computers", rid_sid(515), group_type::kGlobal,
                       "Workstations and servers", {});
    write_needed_group(users, "Domain Controllers", rid_sid(516), group_type::kGlobal,
                       "All domain controllers", {});
    write_needed_group(builtin, "Administrators", ads::make_builtin_sid(544),
                       group_type::kBuiltin | group_type::kLocal, "Full access to the domain",
                       {"CN=Administrator," + users, "CN=Domain Admins," + users});
    write_needed_group(builtin, "Users", ads::make_builtin_sid(545),
                       group_type::kBuiltin | group_type::kLocal, "Ordinary users",
                       {"CN=Domain Users," + users});
    write_needed_group(builtin, "Guests", ads::make_builtin_sid(546),
                       group_type::kBuiltin | group_type::kLocal, "Guests of the domain",
                       {"CN=Domain Guests," + users});
  }

  void write_units() {
    units_ = {"CN=Users," + root_};
    if (config_.kind == DomainKind::kNt || plan_.ous == 0)
      return;
    units_.clear();
    std::string place;
    for (std::size_t i = 0; i < plan_.ous; ++i) {
      const std::size_t within = i % kUnitsInPlace;
      const std::size_t place_number = i / kUnitsInPlace;
      const std::string name =
          within == 0 ? place_name(place_number) : department_name((place_number * 3 + within - 1) % 16);
      units_.push_back(ads::make_rdn("OU", name) + "," + (within == 0 ? root_ : place));
      if (within == 0)
        place = units_.back();
      write_(make(units_.back(), "organizationalUnit"));
    }
  }

  void write_users() {
    members_.resize(plan_.groups);
    users_.reserve(plan_.users);
    for (std::size_t i = 0; i < plan_.users; ++i) {
      const Person person = people_.next();
      const bool nt = config_.kind == DomainKind::kNt;
      const std::string& unit = units_[numbers_.below(units_.size())];
      const std::string dn = ads::make_rdn("CN", nt ? person.account_name : person.common_name) + "," + unit;
      LdifRecord user =
          make_user(dn, person.account_name, kFirstRid + 2 + static_cast<std::uint32_t>(i), 0x200);
      add(user, "displayName", person.common_name);
      add(user, "description", person.title);
      if (!nt) {
        add(user, "givenName", person.given_name);
        add(user, "sn", person.surname);
        add(user, "userPrincipalName", person.account_name + "@" + config_.domain);
        add(user, "mail", person.account_name + "@" + config_.domain);
      }
      write_(user);
      users_.push_back(dn);
      join_groups(i);
    }
  }

  void join_groups(std::size_t user) {
    if (members_.empty())
      return;
    const std::size_t count = numbers_.below(kMostGroupsOfUser + 1);
    for (std::size_t i = 0; i < count; ++i) {
      std::vector<std::size_t>& group = members_[numbers_.below(members_.size())];
      if (group.empty() || group.back() != user)
        group.push_back(user);
    }
  }

  std::int32_t type_of_group(std::size_t n) const {
    static constexpr std::array<std::int32_t, 8> kTypes = {group_type::kGlobalSecurity,
                                                           group_type::kGlobalSecurity,
                                                           group_type::kSecurity | group_type::kLocal,
                                                           group_type::kGlobalSecurity,
                                                           group_type::kGlobalSecurity,
                                                           group_type::kSecurity | group_type::kUniversal,
                                                           group_type::kGlobal,
                                                           group_type::kGlobalSecurity};
    const std::int32_t type = kTypes.at(n % kTypes.size());
    if (config_.kind == DomainKind::kNative)
      return type;
    if (config_.kind == DomainKind::kNt && (type & group_type::kSecurity) == 0)
      return group_type::kGlobalSecurity;
    return (type & group_type::kUniversal) != 0 ? group_type::kSecurity | group_type::kLocal : type;
  }

  void write_groups() {
    for (std::size_t i = 0; i < plan_.groups; ++i) {
      const std::string name = group_name(i);
      LdifRecord group = make(ads::make_rdn("CN", name) + "," + units_[i % units_.size()], "group");
      add_account(group, name, rid_sid(kFirstRid + 2 + static_cast<std::uint32_t>(plan_.users + i)));
      const std::int32_t type = type_of_group(i);
      add(group, "groupType", base::to_text(type));
      add(group, "sAMAccountType", group_account_type(type));
      std::vector<std::string> names;
      for (const std::size_t user : members_[i])
        names.push_back(users_[user]);
      if (!names.empty())
        group.attributes.push_back({"member", std::move(names)});
      write_(group);
    }
  }

  const LabConfig& config_;
  const DomainPlan& plan_;
  const std::function<void(const LdifRecord&)>& write_;
  SeededNumbers numbers_;
  InventedPeople people_;
  std::string root_;
  std::string sid_;
  std::vector<std::string> units_;
  std::vector<std::string> users_;
  std::vector<std::vector<std::size_t>> members_;  ///< of each group, as places in `users_`
};

}  // namespace

void invent_domain(const LabConfig& config, const DomainPlan& plan,
                   const std::function<void(const LdifRecord&)>& write) {
  DomainWriter(config, plan, write).write();
}

}  // namespace twk::lab
