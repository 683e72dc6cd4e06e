#include "live/domain/nt_domain.hpp"

#include <algorithm>
#include <memory>

#include "ads/ads_path.hpp"
#include "ads/object_rules.hpp"
#include "ads/winnt_object.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/nt_entry.hpp"
#include "live/rpc/account_flags.hpp"
#include "platform/account_listing.hpp"
#include "platform/adsi.hpp"

namespace twk::live {
namespace {

using platform::ObjectPtr;
using platform::Value;
using Kind = SamAccount::Kind;
namespace ads_error = platform::ads_error;

std::string_view class_of(const SamAccount& account) {
  return account.kind == Kind::kUser ? ads::kWinntUser : ads::kWinntGroup;
}

SamAccount require_account(LiveDomain& domain, std::string_view name, std::string_view object_class) {
  auto account = as_directory_call([&] { return domain.rpc().accounts(domain.controller()).find(name); });
  if (!account || (!object_class.empty() && !base::equals_fold(class_of(*account), object_class)))
    ads::raise_no_account(object_class, name);
  return *std::move(account);
}

SamAccount account_of_path(LiveDomain& domain, std::string_view path) {
  const ads::AdsPath parsed = ads::parse_ads_path(path);
  if (parsed.kind != ads::AdsPath::Kind::kAccount)
    base::raise(ads_error::kBadPathname, "Not the path of an account: " + std::string(path));
  if (!domain.is_domain_name(parsed.server))
    base::raise(ads_error::kNoSuchDomain, "There is no domain " + parsed.server);
  return require_account(domain, parsed.name, parsed.account_class);
}

class NtAccount final : public ads::WinntAccountObject {
 public:
  NtAccount(NtEntry entry, std::string domain_name)
      : WinntAccountObject(std::move(domain_name)), entry_(std::move(entry)) {}

  [[nodiscard]] std::string Name() const override { return entry_.account().name; }
  [[nodiscard]] std::string Class() const override { return std::string(class_of(entry_.account())); }

  Value Get(std::string_view property) override {
    Value value = WinntAccountObject::Get(property);
    if (!base::equals_fold(property, "UserFlags"))
      return value;
    if (!cannot_change_)
      cannot_change_ =
          as_directory_call([&] { return service().cannot_change_password(entry_.account().rid); });
    return value.integer() | (*cannot_change_ ? platform::kFlagCannotChangePassword : 0);
  }

  void Put(std::string_view property, const Value& value) override {
    if (!base::equals_fold(property, "UserFlags"))
      return WinntAccountObject::Put(property, value);
    const std::int32_t flags = value.integer();
    cannot_change_ = (flags & platform::kFlagCannotChangePassword) != 0;
    write_cannot_change_ = true;
    WinntAccountObject::Put(property, flags & ~platform::kFlagCannotChangePassword);
  }

  void SetInfo() override {
    entry_.commit();
    if (write_cannot_change_) {
      as_directory_call([&] { service().set_cannot_change_password(entry_.account().rid, *cannot_change_); });
    }
    write_cannot_change_ = false;
  }

  void SetPassword(std::string_view password) override { entry_.set_password(password); }

  void Add(std::string_view path) override {
    const SamAccount member = account_of_path(domain(), path);
    // ERROR_MEMBER_IN_GROUP, which this provider reports as NERR_UserInGroup.
    constexpr std::uint32_t kIsMember = 0x80070528;
    try {
      as_directory_call([&] { service().add_member(group("Add"), member); });
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != kIsMember)
        throw;
      base::raise(ads_error::kMemberInGroup, failure.description());
    }
  }
  void Remove(std::string_view path) override {
    const SamAccount member = account_of_path(domain(), path);
    as_directory_call([&] { service().remove_member(group("Remove"), member); });
  }
  bool IsMember(std::string_view path) override {
    const SamAccount member = account_of_path(domain(), path);
    const auto members = as_directory_call([&] { return service().members(group("IsMember")); });
    return std::any_of(members.begin(), members.end(), [&](const SamAccount& one) {
      return one.rid == member.rid && one.builtin == member.builtin;
    });
  }
  std::vector<ObjectPtr> Members() override {
    return bind_all(as_directory_call([&] { return service().members(group("Members")); }));
  }
  std::vector<ObjectPtr> Groups() override {
    if (entry_.account().kind != Kind::kUser)
      not_implemented("Groups");
    return bind_all(as_directory_call([&] { return service().groups_of(entry_.account()); }));
  }

 private:
  ads::AttributeAccess& attributes() override { return entry_; }
  [[nodiscard]] LiveDomain& domain() const { return entry_.domain(); }
  [[nodiscard]] AccountService& service() const { return entry_.service(); }
  [[nodiscard]] const SamAccount& group(std::string_view operation) const {
    if (entry_.account().kind == Kind::kUser)
      not_implemented(operation);
    return entry_.account();
  }

  std::vector<ObjectPtr> bind_all(std::vector<SamAccount> accounts) {
    std::vector<ObjectPtr> objects;
    objects.reserve(accounts.size());
    for (SamAccount& account : accounts)
      objects.push_back(
          std::make_shared<NtAccount>(NtEntry(domain(), std::move(account), false), domain_name()));
    return objects;
  }

  NtEntry entry_;
  std::optional<bool> cannot_change_;  ///< as read or staged
  bool write_cannot_change_ = false;
};

class NtDomain final : public ads::WinntDomainObject, public platform::AccountListing {
 public:
  NtDomain(LiveDomain& domain, std::string name) : WinntDomainObject(std::move(name)), domain_(domain) {}

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    as_directory_call([&] {
      service().enumerate(ads::is_wanted(classes, ads::kWinntUser), ads::is_wanted(classes, ads::kWinntGroup),
                          [&](const SamAccount& account) { return visit(make(account, false)); });
    });
  }

  void list_users(const std::function<bool(const platform::ListedUser&)>& visit) override {
    for (SamUser& user : as_directory_call([&] { return service().list_users(); })) {
      if (!visit({std::move(user.name), std::move(user.full_name), std::move(user.description),
                  flags_of_codes(user.flags)}))
        return;
    }
  }

  ObjectPtr GetObject(std::string_view object_class, std::string_view name) override {
    return make(require_account(domain_, name, object_class), false);
  }

  ObjectPtr Create(std::string_view object_class, std::string_view name) override {
    const bool user = ads::is_new_user(object_class, name);
    return make({.name = std::string(name),
                 .kind = user ? Kind::kUser : Kind::kGlobalGroup,
                 .builtin = false,
                 .rid = 0},
                true);
  }

  void Delete(std::string_view object_class, std::string_view name) override {
    const SamAccount account = require_account(domain_, name, object_class);
    as_directory_call([&] { service().remove(account); });
  }

  ObjectPtr MoveHere(std::string_view source_path, const std::optional<std::string>& new_name) override {
    SamAccount account = account_of_path(domain_, source_path);
    if (!new_name || *new_name == account.name)
      return make(std::move(account), false);
    const bool user = account.kind == Kind::kUser;
    ads::check_account_name(*new_name, user);
    as_directory_call([&] {
      // Another spelling of its own name is always available.
      if (!base::equals_fold(*new_name, account.name) && service().find(*new_name))
        base::raise(user ? ads_error::kUserExists : ads_error::kGroupExists,
                    "The domain has an account " + *new_name + " already");
      SamUserChange change;
      change.name = *new_name;
      if (user)
        service().write_user(account.rid, change);
      else
        service().write_group(account, *new_name, std::nullopt);
    });
    account.name = *new_name;
    return make(std::move(account), false);
  }

 private:
  [[nodiscard]] AccountService& service() const { return domain_.rpc().accounts(domain_.controller()); }
  ObjectPtr make(SamAccount account, bool is_new) const {
    return std::make_shared<NtAccount>(NtEntry(domain_, std::move(account), is_new), Name());
  }

  LiveDomain& domain_;
};

}  // namespace

ObjectPtr bind_nt_domain(LiveDomain& domain, const std::string& name) {
  auto object = std::make_shared<NtDomain>(domain, name);
  as_directory_call([&] { domain.rpc().accounts(domain.controller()).domain_name(); });
  return object;
}

}  // namespace twk::live
