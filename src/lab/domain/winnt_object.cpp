#include "lab/domain/winnt_object.hpp"

#include "ads/dn.hpp"
#include "ads/object_rules.hpp"
#include "ads/winnt_properties.hpp"
#include "base/text.hpp"
#include "lab/domain/account_path.hpp"
#include "lab/domain/domain_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/membership.hpp"
#include "lab/domain/passwords.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {
namespace {

using platform::ObjectPtr;

/// "User", "Group"; empty for an entry that is neither a person's account nor a group.
std::string_view account_class(const Entry& entry) {
  if (is_user(entry))
    return ads::kWinntUser;
  return has_class(entry, "group") ? ads::kWinntGroup : std::string_view{};
}

std::string account_dn(const LabDomain& domain, std::string_view object_class, std::string_view name) {
  return ads::child_dn(object_class, ads::make_rdn("CN", name), "CN=Users," + domain.root_dn);
}

}  // namespace

ObjectPtr bind_winnt_account(LabDomain& domain, std::string_view dn, const std::string& domain_name) {
  const Entry& entry = require_entry(domain, dn);
  std::string name = entry.value("sAMAccountName").value_or(ads::parse_rdn(ads::first_rdn(dn)).value);
  return std::make_shared<WinntAccount>(StagedEntry(domain, ads::Provider::kWinnt, dn), domain_name,
                                        std::move(name));
}

void WinntDomain::enumerate(std::span<const std::string> classes,
                            const std::function<bool(const ObjectPtr&)>& visit) {
  domain_.store.refresh();
  std::vector<std::string> names;
  domain_.store.subtree(require_entry(domain_, domain_.root_dn), [&](const Entry& entry) {
    const std::string_view kind = account_class(entry);
    if (!kind.empty() && ads::is_wanted(classes, kind) && entry.has("sAMAccountName"))
      names.push_back(entry.dn());
    return true;
  });
  for (const std::string& name : names) {
    // What was visited before may have deleted this one.
    if (domain_.store.find(name) != nullptr && !visit(bind_winnt_account(domain_, name, Name())))
      return;
  }
}

void WinntDomain::list_users(const std::function<bool(const platform::ListedUser&)>& visit) {
  domain_.store.refresh();
  const std::int64_t now = base::to_filetime(domain_.clock.utc_now());
  domain_.store.subtree(require_entry(domain_, domain_.root_dn), [&](const Entry& entry) {
    if (!is_user(entry) || !entry.has("sAMAccountName"))
      return true;
    const auto flags = static_cast<std::int32_t>(read_number(entry, "userAccountControl"));
    return visit({entry.value("sAMAccountName").value_or(""), entry.value("displayName").value_or(""),
                  entry.value("description").value_or(""),
                  flags | (is_locked(domain_, entry, now) ? platform::kFlagLockedOut : 0)});
  });
}

const std::string& WinntDomain::find(std::string_view object_class, std::string_view name) const {
  domain_.store.refresh();
  const bool any = object_class.empty();
  const Entry* entry = nullptr;
  if (any || base::equals_fold(object_class, ads::kWinntUser))
    entry = find_account(domain_, name, true);
  if (entry == nullptr && (any || base::equals_fold(object_class, ads::kWinntGroup)))
    entry = find_account(domain_, name, false);
  if (entry == nullptr)
    ads::raise_no_account(object_class, name);
  return entry->dn();
}

ObjectPtr WinntDomain::GetObject(std::string_view object_class, std::string_view name) {
  return bind_winnt_account(domain_, find(object_class, name), Name());
}

ObjectPtr WinntDomain::Create(std::string_view object_class, std::string_view name) {
  const std::string_view ldap_class = ads::is_new_user(object_class, name) ? "user" : "group";
  StagedEntry entry(domain_, ads::Provider::kWinnt, account_dn(domain_, ldap_class, name),
                    std::string(ldap_class));
  entry.stage(2, "sAMAccountName", name);
  return std::make_shared<WinntAccount>(std::move(entry), Name(), std::string(name));
}

void WinntDomain::Delete(std::string_view object_class, std::string_view name) {
  delete_object(domain_, std::string(find(object_class, name)));
}

ObjectPtr WinntDomain::MoveHere(std::string_view source_path, const std::optional<std::string>& new_name) {
  domain_.store.refresh();
  std::string dn = resolve_entry(domain_, source_path);
  if (!new_name)
    return bind_winnt_account(domain_, dn, Name());
  // A flat domain knows an account by this name only, so its entry is renamed too, and first: it is
  // found under the old name until all is done.
  const std::string old_dn = dn;
  if (domain_.config.kind == DomainKind::kNt) {
    dn = ads::make_rdn("CN", *new_name) + "," + std::string(ads::parent_dn(old_dn));
    try {
      move_object(domain_, old_dn, dn);
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != ads_error::kObjectExists)
        throw;
      raise(ads_error::kUserExists, "The domain has an account " + *new_name + " already");
    }
  }
  try {
    modify_object(domain_, ads::Provider::kWinnt, dn,
                  {{ModifyKind::kReplace, "sAMAccountName", {*new_name}}});
  } catch (const base::RuntimeError&) {
    if (dn != old_dn)
      move_object(domain_, dn, old_dn);
    throw;
  }
  return bind_winnt_account(domain_, dn, Name());
}

WinntAccount::WinntAccount(StagedEntry entry, std::string domain_name, std::string name)
    : WinntAccountObject(std::move(domain_name)), entry_(std::move(entry)), name_(std::move(name)) {}

std::string WinntAccount::Class() const {
  return std::string(base::equals_fold(entry_.object_class(), "group") ? ads::kWinntGroup : ads::kWinntUser);
}

void WinntAccount::SetInfo() {
  entry_.commit();
}

void WinntAccount::SetPassword(std::string_view password) {
  set_password(domain(), entry_.dn(), password);
}

void WinntAccount::foresee_password(std::string_view password) {
  check_password(domain(), password, name_);
}

void WinntAccount::Add(std::string_view path) {
  domain().store.refresh();
  const std::string member = resolve_entry(domain(), path);
  try {
    add_members(domain(), entry_.dn(), {member});
  } catch (const base::RuntimeError& failure) {
    if (failure.number() != ads_error::kObjectExists)
      throw;
    raise(ads_error::kMemberInGroup, failure.description());
  }
}

void WinntAccount::Remove(std::string_view path) {
  domain().store.refresh();
  remove_members(domain(), entry_.dn(), {resolve_entry(domain(), path)});
}

bool WinntAccount::IsMember(std::string_view path) {
  domain().store.refresh();
  return is_member(domain(), entry_.dn(), resolve_entry(domain(), path));
}

std::vector<ObjectPtr> WinntAccount::bind_all(const std::vector<std::string>& dns) const {
  std::vector<ObjectPtr> objects;
  objects.reserve(dns.size());
  for (const std::string& dn : dns)
    objects.push_back(bind_winnt_account(domain(), dn, domain_name()));
  return objects;
}

std::vector<ObjectPtr> WinntAccount::Members() {
  domain().store.refresh();
  const Entry& group = require_entry(domain(), entry_.dn());
  std::vector<std::string> names = group.values("member");
  if (domain().config.kind == DomainKind::kNt) {
    for (std::string& name : members_by_primary_group(domain(), group))
      names.push_back(std::move(name));
  }
  return bind_all(names);
}

std::vector<ObjectPtr> WinntAccount::Groups() {
  domain().store.refresh();
  const Entry& user = require_entry(domain(), entry_.dn());
  std::vector<std::string> names;
  if (const Entry* const primary = primary_group(domain(), user))
    names.push_back(primary->dn());
  for (std::string& name : user.values("memberOf"))
    names.push_back(std::move(name));
  return bind_all(names);
}

}  // namespace twk::lab
