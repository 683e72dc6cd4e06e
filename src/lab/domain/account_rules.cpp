#include "lab/domain/account_rules.hpp"

#include "ads/object_rules.hpp"
#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"

namespace twk::lab {
namespace {

using platform::Value;

constexpr std::int32_t kAccountKinds = 0x3B00;  ///< normal, trusts, workstation, server

[[noreturn]] void constraint(std::string_view attribute, const std::string& what) {
  raise(ads_error::kConstraint, "The value of " + std::string(attribute) + " " + what);
}

const ads::AttributeSchema& writable_attribute(std::string_view name) {
  const ads::AttributeSchema* const attribute = ads::find_attribute(name);
  if (attribute == nullptr)
    raise(ads_error::kNoSuchAttribute, "The schema has no attribute " + std::string(name));
  if (attribute->system_only) {
    raise(ads_error::kUnwilling, "Only the directory itself writes " + std::string(attribute->name));
  }
  return *attribute;
}

bool is_mandatory(std::string_view attribute) {
  return attribute == "sAMAccountName" || attribute == "userAccountControl" ||
         attribute == "primaryGroupID" || attribute == "groupType" || attribute == "objectCategory";
}

/// A single-valued attribute must not end up with several values.
void check_count(const Entry* entry, const ads::AttributeSchema& attribute, const Modification& change) {
  if (attribute.multi_valued || change.kind == ModifyKind::kDelete)
    return;
  std::size_t count = change.values.size();
  if (change.kind == ModifyKind::kAdd && entry != nullptr)
    count += entry->values(attribute.name).size();
  if (count > 1)
    constraint(attribute.name, "is a list, but the attribute holds a single value");
}

std::string stored_flags(const Entry* entry, ads::Provider provider, std::int32_t wanted) {
  std::int32_t flags = wanted & ~platform::kFlagLockedOut;
  if ((flags & kAccountKinds) == 0)
    flags |= platform::kFlagNormalAccount;
  if (provider != ads::Provider::kWinnt && entry != nullptr) {
    const auto stored = static_cast<std::int32_t>(read_number(*entry, "userAccountControl"));
    flags = (flags & ~platform::kFlagCannotChangePassword) | (stored & platform::kFlagCannotChangePassword);
  }
  return base::to_text(flags);
}

/// The rules of single attributes; may append accompanying changes.
void apply_rules(const LabDomain& domain, const Entry* entry, bool user, ads::Provider provider,
                 Modification& change, std::vector<Modification>& along) {
  const bool removes = change.kind == ModifyKind::kDelete || change.values.empty();
  if (removes && is_mandatory(change.attribute))
    constraint(change.attribute, "cannot be removed");
  if (removes)
    return;
  std::string& value = change.values.front();
  ads::check_value(change.attribute, value, user);
  if (change.attribute == "userAccountControl") {
    value = stored_flags(entry, provider, *base::to_number(value));
  } else if (change.attribute == "pwdLastSet") {
    if (value == "-1")
      value = filetime_now(domain);
  } else if (change.attribute == "lockoutTime") {
    along.push_back({ModifyKind::kReplace, "badPwdCount", {"0"}});
  } else if (change.attribute == "groupType") {
    along.push_back({ModifyKind::kReplace, "sAMAccountType", {group_account_type(*base::to_number(value))}});
  }
}

}  // namespace

Modification to_modification(const Entry* entry, const ads::AttributeSchema& attribute,
                             const ads::StagedChange& change) {
  Modification out{change.kind, std::string(attribute.name), {}};
  for (const Value& value : change.values)
    out.values.push_back(ads::to_raw(attribute, value));
  check_count(entry, attribute, out);
  return out;
}

std::vector<Modification> to_modifications(const LabDomain& domain, const Entry* entry,
                                           std::string_view object_class, ads::Provider provider,
                                           const std::vector<ads::StagedChange>& changes) {
  const bool user = !base::equals_fold(object_class, "group");
  std::vector<Modification> out;
  std::vector<Modification> along;
  for (const ads::StagedChange& change : changes) {
    const ads::AttributeSchema& attribute = writable_attribute(change.attribute);
    Modification converted = to_modification(entry, attribute, change);
    apply_rules(domain, entry, user, provider, converted, along);
    out.push_back(std::move(converted));
  }
  out.insert(out.end(), along.begin(), along.end());
  return out;
}

std::string filetime_now(const LabDomain& domain) {
  return base::to_text(base::to_filetime(domain.clock.utc_now()));
}

std::string group_account_type(std::int32_t bits) {
  const std::int64_t kind = (bits & platform::group_type::kLocal) != 0 ? 0x20000000 : 0x10000000;
  return base::to_text(kind + ((bits & platform::group_type::kSecurity) != 0 ? 0 : 1));
}

}  // namespace twk::lab
