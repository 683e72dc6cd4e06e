#include "live/domain/winnt_account.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "ads/object_rules.hpp"
#include "ads/winnt_properties.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/change_password_right.hpp"
#include "platform/adsi.hpp"

namespace twk::live {
namespace {

using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

/// "User", "Group"; empty for an entry that is neither a person's account nor a group.
std::string_view account_class(const LdapEntry& entry) {
  const std::string object_class = class_of(entry);
  if (base::equals_fold(object_class, "user") || base::equals_fold(object_class, "inetOrgPerson"))
    return ads::kWinntUser;
  return base::equals_fold(object_class, "group") ? ads::kWinntGroup : std::string_view{};
}

Origin origin_of(LiveDomain& domain) {
  return {.domain = &domain, .provider = ads::Provider::kWinnt, .server = {}, .connection = nullptr};
}

class WinntAccount final : public ads::WinntAccountObject, public platform::ForeseenWrite {
 public:
  WinntAccount(LiveEntry entry, std::string domain_name, std::string name)
      : WinntAccountObject(std::move(domain_name)), entry_(std::move(entry)), name_(std::move(name)) {}

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Class() const override {
    return std::string(base::equals_fold(entry_.object_class(), "group") ? ads::kWinntGroup
                                                                         : ads::kWinntUser);
  }

  Value Get(std::string_view property) override {
    Value value = WinntAccountObject::Get(property);
    if (base::equals_fold(property, "UserFlags")) {
      const bool cannot = cannot_change_ ? *cannot_change_ : cannot_change_password(ldap(), entry_.dn());
      return (value.integer() & ~platform::kFlagCannotChangePassword) |
             (cannot ? platform::kFlagCannotChangePassword : 0);
    }
    return value;
  }

  void Put(std::string_view property, const Value& value) override {
    if (!base::equals_fold(property, "UserFlags"))
      return WinntAccountObject::Put(property, value);
    const std::int32_t flags = value.integer();
    cannot_change_ = (flags & platform::kFlagCannotChangePassword) != 0;
    WinntAccountObject::Put(property, flags & ~platform::kFlagCannotChangePassword);
  }

  void SetInfo() override {
    try {
      entry_.commit();
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != ads_error::kObjectExists)
        throw;
      base::raise(Class() == ads::kWinntUser ? ads_error::kUserExists : ads_error::kGroupExists,
                  failure.description());
    }
    if (cannot_change_)
      set_cannot_change_password(ldap(), entry_.dn(), *cannot_change_);
    cannot_change_.reset();
  }

  void foresee_write() override {
    entry_.foresee();
    if (cannot_change_ && !entry_.is_new() && *cannot_change_ != cannot_change_password(ldap(), entry_.dn()))
      entry_.require_access_list_right();
  }
  void foresee_password(std::string_view /*password*/) override {}
  void foresee_reset() override { entry_.require_reset(); }
  void foresee_deletion() override { entry_.require_deletion(); }
  void SetPassword(std::string_view password) override { entry_.set_password(password); }

  void Add(std::string_view path) override {
    const std::string member = dn_of_path(domain(), path);
    try {
      add_member(ldap(), entry_.dn(), member);
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != ads_error::kObjectExists)
        throw;
      base::raise(ads_error::kMemberInGroup, failure.description());
    }
  }
  void Remove(std::string_view path) override {
    remove_member(ldap(), entry_.dn(), dn_of_path(domain(), path));
  }
  bool IsMember(std::string_view path) override {
    return is_member(domain(), ldap(), entry_.dn(), dn_of_path(domain(), path));
  }
  std::vector<ObjectPtr> Members() override { return bind_all(entry_.links("member")); }
  std::vector<ObjectPtr> Groups() override {
    std::vector<std::string> names;
    if (const auto primary = primary_group())
      names.push_back(*primary);
    for (std::string& name : entry_.links("memberOf"))
      names.push_back(std::move(name));
    return bind_all(names);
  }

 private:
  ads::AttributeAccess& attributes() override { return entry_; }
  [[nodiscard]] LiveDomain& domain() const { return *entry_.origin().domain; }
  [[nodiscard]] LdapConnection& ldap() const { return entry_.origin().ldap(); }

  std::optional<std::string> primary_group() {
    const Value rid = entry_.get("primaryGroupID");
    if (rid.is_empty())
      return std::nullopt;
    const auto sid = platform::Sid::parse(domain().sid().text() + "-" +
                                          base::to_text(static_cast<std::uint32_t>(rid.integer())));
    auto group = sid ? domain().find_sid(*sid, {"objectClass"}) : std::nullopt;
    return group ? std::optional(std::move(group->dn)) : std::nullopt;
  }

  std::vector<ObjectPtr> bind_all(const std::vector<std::string>& names) {
    std::vector<ObjectPtr> objects;
    for (const std::string& dn : names) {
      LdapEntry entry = ldap().read(dn, {"objectClass", "sAMAccountName"});
      std::string name = entry.first("sAMAccountName");
      objects.push_back(std::make_shared<WinntAccount>(LiveEntry(entry_.origin(), dn, class_of(entry), false),
                                                       domain_name(), std::move(name)));
    }
    return objects;
  }

  LiveEntry entry_;
  std::string name_;
  std::optional<bool> cannot_change_;  ///< staged
};

ObjectPtr make_account(LiveDomain& domain, LdapEntry entry, const std::string& domain_name) {
  std::string name = entry.first("sAMAccountName");
  std::string object_class = class_of(entry);
  return std::make_shared<WinntAccount>(
      LiveEntry(origin_of(domain), std::move(entry), std::move(object_class)), domain_name, std::move(name));
}

}  // namespace

ObjectPtr bind_winnt_account(LiveDomain& domain, std::string_view name, std::string_view object_class,
                             const std::string& domain_name) {
  std::optional<LdapEntry> entry = domain.find_account(name, {});
  const bool fits = entry && (object_class.empty() ? !account_class(*entry).empty()
                                                   : base::equals_fold(account_class(*entry), object_class));
  if (!fits)
    ads::raise_no_account(object_class, name);
  return make_account(domain, *std::move(entry), domain_name);
}

void WinntDirectoryDomain::enumerate(std::span<const std::string> classes,
                                     const std::function<bool(const ObjectPtr&)>& visit) {
  LdapSearch search;
  search.base = domain_.root_dn();
  search.filter = "(&(|(&(objectCategory=person)(objectClass=user))(objectClass=group))(sAMAccountName=*))";
  search.attributes = {"objectClass", "sAMAccountName"};
  domain_.ldap().search(search, [&](LdapEntry&& entry) {
    const std::string_view kind = account_class(entry);
    if (kind.empty() || !ads::is_wanted(classes, kind))
      return true;
    std::string name = entry.first("sAMAccountName");
    return visit(std::make_shared<WinntAccount>(
        LiveEntry(origin_of(domain_), entry.dn, class_of(entry), false), Name(), std::move(name)));
  });
}

ObjectPtr WinntDirectoryDomain::GetObject(std::string_view object_class, std::string_view name) {
  return bind_winnt_account(domain_, name, object_class, Name());
}

ObjectPtr WinntDirectoryDomain::Create(std::string_view object_class, std::string_view name) {
  const bool user = ads::is_new_user(object_class, name);
  LiveEntry entry(origin_of(domain_), ads::make_rdn("CN", name) + ",CN=Users," + domain_.root_dn(),
                  user ? "user" : "group", true);
  entry.stage(2, "sAMAccountName", name);
  return std::make_shared<WinntAccount>(std::move(entry), Name(), std::string(name));
}

void WinntDirectoryDomain::Delete(std::string_view object_class, std::string_view name) {
  const std::optional<LdapEntry> entry = domain_.find_account(name, {"objectClass"});
  if (!entry || (!object_class.empty() && !base::equals_fold(account_class(*entry), object_class)))
    ads::raise_no_account(object_class, name);
  domain_.ldap().remove(entry->dn);
}

ObjectPtr WinntDirectoryDomain::MoveHere(std::string_view source_path,
                                         const std::optional<std::string>& new_name) {
  const std::string dn = dn_of_path(domain_, source_path);
  if (new_name)
    domain_.ldap().modify(dn, {{LdapChangeKind::kReplace, "sAMAccountName", {*new_name}}});
  return make_account(domain_, domain_.ldap().read(dn, {}), Name());
}

}  // namespace twk::live
