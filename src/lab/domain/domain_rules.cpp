#include "lab/domain/domain_rules.hpp"

#include <functional>
#include <optional>

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/random.hpp"
#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/group_rules.hpp"
#include "lab/domain/membership.hpp"
#include "lab/domain/rid_pool.hpp"
#include "lab/store/draft.hpp"
#include "lab/store/errors.hpp"
#include "platform/group_type.hpp"

namespace twk::lab {
namespace {

bool is_account_class(std::string_view object_class) {
  return base::equals_fold(object_class, "user") || base::equals_fold(object_class, "group");
}

std::uint32_t exists_number(ads::Provider provider, bool user) {
  if (provider != ads::Provider::kWinnt)
    return ads_error::kObjectExists;
  return user ? ads_error::kUserExists : ads_error::kGroupExists;
}

/// Raises unless the account name is free or is `own_dn`'s.
void check_account_name_free(const LabDomain& domain, ads::Provider provider, bool user,
                             const std::string& name, std::string_view own_dn) {
  const Entry* const holder = domain.store.find_account(name);
  if (holder == nullptr)
    return;
  if (!own_dn.empty() && ads::normalize_dn(holder->dn()) == ads::normalize_dn(own_dn))
    return;
  raise(exists_number(provider, user), "The account name " + name + " is in use");
}

void check_name_free(const LabDomain& domain, ads::Provider provider, bool user, const std::string& dn) {
  if (domain.store.find(dn) != nullptr)
    raise(exists_number(provider, user), "The name is in use: " + dn);
}

/// Units go below units and the domain; everything else may also be in containers.
void check_place(const LabDomain& domain, std::string_view object_class, std::string_view parent_dn) {
  const Entry& parent = require_entry(domain, parent_dn);
  const bool unit = has_class(parent, "organizationalUnit") || has_class(parent, "domainDNS");
  const bool container = has_class(parent, "container") || has_class(parent, "builtinDomain");
  if (unit || (container && !base::equals_fold(object_class, "organizationalUnit")))
    return;
  raise(ads_error::kUnwilling,
        std::string(parent_dn) + " cannot hold an object of class " + std::string(object_class));
}

void check_not_needed(const Entry& entry) {
  if (entry.value("isCriticalSystemObject") == "TRUE" || has_class(entry, "domainDNS")) {
    raise(ads_error::kUnwilling, "The domain needs " + entry.dn());
  }
}

std::vector<std::string> class_chain(const ads::ClassSchema& schema) {
  return base::split(schema.chain, ' ');
}

void add_user_defaults(Draft& draft) {
  draft.set_default("userAccountControl", "512");
  draft.set_default("primaryGroupID", base::to_text(kDomainUsersRid));
  draft.set_default("pwdLastSet", "0");
  draft.set_default("accountExpires", std::string(kNeverExpires));
  draft.set("badPwdCount", "0");
  draft.set("sAMAccountType", "805306368");
}

void add_group_defaults(Draft& draft) {
  draft.set_default("groupType", base::to_text(platform::group_type::kGlobalSecurity));
  draft.set_default("sAMAccountType", group_account_type(platform::group_type::kGlobalSecurity));
}

std::optional<std::string> staged_value(const std::vector<Modification>& changes,
                                        std::string_view attribute) {
  for (const Modification& change : changes) {
    if (change.attribute == attribute && !change.values.empty())
      return change.values.front();
  }
  return std::nullopt;
}

/// An object to be made, and what must hold at that moment.
struct NewObject {
  Draft draft;
  bool user = false;
  bool account = false;
  std::function<void()> check;
};

NewObject drafted(const LabDomain& domain, ads::Provider provider, std::string_view object_class,
                  const std::string& dn, const std::vector<ads::StagedChange>& values,
                  const std::vector<Modification>& own) {
  const ads::ClassSchema* const schema = ads::find_class(object_class);
  NewObject object;
  object.user = base::equals_fold(object_class, "user");
  object.account = is_account_class(object_class);
  if (schema == nullptr ||
      !(object.account || schema->name == "organizationalUnit" || schema->name == "contact")) {
    raise(ads_error::kUnwilling, "An object of class " + std::string(object_class) + " cannot be made");
  }
  Draft& draft = object.draft;
  draft.set("objectClass", class_chain(*schema));
  draft.set(base::lower(schema->rdn_type), ads::parse_rdn(ads::first_rdn(dn)).value);
  for (const Modification& change : own)
    draft.apply(change);
  for (const Modification& change : to_modifications(domain, nullptr, schema->name, provider, values))
    draft.apply(change);
  const auto name = draft.value("sAMAccountName");
  if (object.account && !name)
    raise(ads_error::kConstraint, "An account needs a samAccountName");
  if (object.user && draft.value("primaryGroupID").value_or("513") != base::to_text(kDomainUsersRid)) {
    raise(ads_error::kUnwilling, "A new user's primary group is Domain Users");
  }
  draft.set("objectCategory",
            "CN=" + std::string(schema->category) + ",CN=Schema," + domain.configuration_dn);
  object.check = [&domain, provider, user = object.user, name, dn, kind = schema->name] {
    check_place(domain, kind, ads::parent_dn(dn));
    check_name_free(domain, provider, user, dn);
    if (name)
      check_account_name_free(domain, provider, user, *name, {});
  };
  return object;
}

/// Changes of a stored object, and what must hold at that moment.
struct ObjectChange {
  std::vector<Modification> modifications;
  std::optional<PrimaryGroupChange> primary;
  std::function<void()> check;
};

ObjectChange change_of(LabDomain& domain, ads::Provider provider, const std::string& dn,
                       const std::vector<ads::StagedChange>& changes) {
  domain.store.refresh();
  const Entry& entry = require_entry(domain, dn);
  ObjectChange change{to_modifications(domain, &entry, entry_class(entry), provider, changes), {}, {}};
  if (const auto rid = staged_value(change.modifications, "primaryGroupID"))
    change.primary.emplace(domain, entry, base::val(*rid));
  change.check = [&domain, provider, user = is_user(entry), dn,
                  name = staged_value(change.modifications, "sAMAccountName"),
                  type = staged_value(change.modifications, "groupType")] {
    if (type)
      check_group_type(domain, require_entry(domain, dn), base::val(*type));
    if (name)
      check_account_name_free(domain, provider, user, *name, dn);
  };
  return change;
}

}  // namespace

void add_object(LabDomain& domain, ads::Provider provider, std::string_view object_class,
                const std::string& dn, const std::vector<ads::StagedChange>& values,
                const std::vector<Modification>& own) {
  NewObject object = drafted(domain, provider, object_class, dn, values, own);
  Draft& draft = object.draft;
  domain.store.refresh();
  object.check();
  if (object.account)
    draft.set("objectSid", next_sid(domain));
  const base::Bytes guid = base::random_bytes(16);
  draft.set("objectGUID", std::string(guid.begin(), guid.end()));
  draft.set("whenCreated", ads::to_raw(*ads::find_attribute("whenCreated"), domain.clock.utc_now()));
  if (object.user)
    add_user_defaults(draft);
  if (object.account && !object.user)
    add_group_defaults(draft);
  domain.store.add(dn, draft.take(), object.check);
}

void check_new_object(LabDomain& domain, ads::Provider provider, std::string_view object_class,
                      const std::string& dn, const std::vector<ads::StagedChange>& values) {
  domain.store.refresh();
  drafted(domain, provider, object_class, dn, values, {}).check();
}

void modify_object(LabDomain& domain, ads::Provider provider, const std::string& dn,
                   const std::vector<ads::StagedChange>& changes) {
  ObjectChange change = change_of(domain, provider, dn, changes);
  if (change.modifications.empty())
    return;
  if (change.primary)
    change.primary->begin();
  try {
    domain.store.modify(dn, change.modifications, change.check);
  } catch (const base::RuntimeError&) {
    if (change.primary)
      change.primary->undo();
    throw;
  }
  if (change.primary)
    change.primary->finish();
}

void check_changes(LabDomain& domain, ads::Provider provider, const std::string& dn,
                   const std::vector<ads::StagedChange>& changes) {
  change_of(domain, provider, dn, changes).check();
}

void delete_object(LabDomain& domain, const std::string& dn) {
  domain.store.remove(dn, [&] {
    const Entry& entry = require_entry(domain, dn);
    check_not_needed(entry);
    if (has_class(entry, "group") && !members_by_primary_group(domain, entry).empty()) {
      raise(ads_error::kUnwilling, dn + " is the primary group of a user");
    }
    domain.store.children(
        entry, [&](const Entry&) -> bool { raise(ads_error::kNotOnNonLeaf, dn + " still holds objects"); });
  });
}

void move_object(LabDomain& domain, const std::string& dn, const std::string& new_dn) {
  const std::string new_parent(ads::parent_dn(new_dn));
  domain.store.rename(dn, std::string(ads::first_rdn(new_dn)), new_parent, [&] {
    const Entry& entry = require_entry(domain, dn);
    check_not_needed(entry);
    check_place(domain, entry_class(entry), new_parent);
    const std::string own = ads::normalize_dn(dn);
    const std::string target_parent = ads::normalize_dn(new_parent);
    if (target_parent == own || target_parent.ends_with("," + own)) {
      raise(ads_error::kUnwilling, dn + " cannot be moved below itself");
    }
    const Entry* const holder = domain.store.find(new_dn);
    if (holder != nullptr && holder != &entry)
      raise(ads_error::kObjectExists, "The name is in use: " + new_dn);
  });
}

}  // namespace twk::lab
