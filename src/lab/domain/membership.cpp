#include "lab/domain/membership.hpp"

#include "ads/dn.hpp"
#include "ads/sid.hpp"
#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/rid_pool.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

const Entry* group_of_rid(const LabDomain& domain, std::int64_t rid) {
  const Entry* const group =
      domain.store.find_sid(ads::append_rid(domain_sid(domain), static_cast<std::uint32_t>(rid)));
  return group != nullptr && has_class(*group, "group") ? group : nullptr;
}

bool by_primary_group(const Entry& group, const Entry& member) {
  const auto own = member.value("primaryGroupID");
  const auto sid = group.value("objectSid");
  const auto rid = sid ? ads::rid_of(*sid) : std::nullopt;
  return own && rid && ads::without_rid(*sid) == ads::without_rid(member.value("objectSid").value_or("")) &&
         static_cast<std::uint32_t>(base::val(*own)) == *rid;
}

const Entry& require_group(const LabDomain& domain, const std::string& dn) {
  const Entry& group = require_entry(domain, dn);
  if (!has_class(group, "group"))
    raise(ads_error::kUnwilling, dn + " is not a group");
  return group;
}

bool can_be_member(const Entry& entry) {
  return has_class(entry, "person") || has_class(entry, "group") || has_class(entry, "contact");
}

void require_can_join(const LabDomain& domain, const Entry& group, const std::string& member_dn) {
  const Entry& member = require_entry(domain, member_dn);
  if (&group == &member)
    raise(ads_error::kUnwilling, member_dn + " cannot be a member of itself");
  if (!can_be_member(member))
    raise(ads_error::kUnwilling, member_dn + " is not an account");
  if (domain.store.is_member(group, member) || by_primary_group(group, member))
    raise(ads_error::kObjectExists, member_dn + " is a member of " + group.dn() + " already");
}

void change_link(LabDomain& domain, const std::string& group_dn, ModifyKind kind,
                 const std::string& member_dn) {
  domain.store.modify(group_dn, {{kind, "member", {member_dn}}}, [] {});
}

}  // namespace

void add_members(LabDomain& domain, const std::string& group_dn, const std::vector<std::string>& member_dns) {
  domain.store.modify(group_dn, {{ModifyKind::kAdd, "member", member_dns}}, [&] {
    const Entry& group = require_group(domain, group_dn);
    for (const std::string& member_dn : member_dns)
      require_can_join(domain, group, member_dn);
  });
}

void remove_members(LabDomain& domain, const std::string& group_dn,
                    const std::vector<std::string>& member_dns) {
  domain.store.modify(group_dn, {{ModifyKind::kDelete, "member", member_dns}}, [&] {
    const Entry& group = require_group(domain, group_dn);
    for (const std::string& member_dn : member_dns) {
      if (!domain.store.is_member(group, require_entry(domain, member_dn)))
        raise(ads_error::kMemberNotInGroup, member_dn + " is not a member of " + group_dn);
    }
  });
}

bool is_member(const LabDomain& domain, const std::string& group_dn, const std::string& member_dn) {
  const Entry& group = require_group(domain, group_dn);
  const Entry* const member = domain.store.find(member_dn);
  return member != nullptr && (domain.store.is_member(group, *member) || by_primary_group(group, *member));
}

const Entry* primary_group(const LabDomain& domain, const Entry& user) {
  const auto rid = user.value("primaryGroupID");
  return rid ? group_of_rid(domain, base::val(*rid)) : nullptr;
}

std::vector<std::string> members_by_primary_group(const LabDomain& domain, const Entry& group) {
  std::vector<std::string> names;
  const auto sid = group.value("objectSid");
  const auto rid = sid ? ads::rid_of(*sid) : std::nullopt;
  if (!rid || ads::without_rid(*sid) != domain_sid(domain))
    return names;
  for (const Entry* const user :
       domain.store.with_primary_group(base::to_text(static_cast<std::int32_t>(*rid)))) {
    names.push_back(user->dn());
  }
  return names;
}

PrimaryGroupChange::PrimaryGroupChange(LabDomain& domain, const Entry& user, std::int32_t new_rid)
    : domain_(domain), user_dn_(user.dn()) {
  const std::int64_t old_rid = read_number(user, "primaryGroupID", -1);
  if (old_rid == new_rid)
    return;
  const Entry* const group = group_of_rid(domain, new_rid);
  if (group == nullptr || !domain.store.is_member(*group, user)) {
    raise(ads_error::kUnwilling, user_dn_ + " is not a member of the group that is to be its primary one");
  }
  new_group_dn_ = group->dn();
  if (const Entry* const old_group = group_of_rid(domain, old_rid))
    old_group_dn_ = old_group->dn();
}

void PrimaryGroupChange::begin() {
  if (new_group_dn_.empty() || old_group_dn_.empty())
    return;
  change_link(domain_, old_group_dn_, ModifyKind::kAdd, user_dn_);
}

void PrimaryGroupChange::undo() {
  if (new_group_dn_.empty() || old_group_dn_.empty())
    return;
  change_link(domain_, old_group_dn_, ModifyKind::kDelete, user_dn_);
}

void PrimaryGroupChange::finish() {
  if (!new_group_dn_.empty())
    change_link(domain_, new_group_dn_, ModifyKind::kDelete, user_dn_);
}

}  // namespace twk::lab
