#include "lab/domain/staged_entry.hpp"

#include <algorithm>

#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/domain/domain_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/passwords.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

using platform::Value;

/// There may be many links; they are read on demand.
bool is_link(std::string_view attribute) {
  return base::equals_fold(attribute, "member") || base::equals_fold(attribute, "memberOf");
}

/// What an entry is given once and keeps: it is read without all the others.
bool is_identity(std::string_view attribute) {
  return base::equals_fold(attribute, "objectSid");
}

}  // namespace

StagedEntry::StagedEntry(LabDomain& domain, ads::Provider provider, std::string_view dn)
    : domain_(domain), provider_(provider) {
  const Entry& entry = require_entry(domain, dn);
  dn_ = entry.dn();
  object_class_ = entry_class(entry);
}

StagedEntry::StagedEntry(LabDomain& domain, ads::Provider provider, std::string dn, std::string object_class)
    : domain_(domain),
      provider_(provider),
      dn_(std::move(dn)),
      object_class_(std::move(object_class)),
      new_(true) {}

void StagedEntry::fetch() {
  const Entry& entry = require_entry(domain_, dn_);
  cache_.clear();
  for (const std::string_view name : computed_attributes())
    cache_.push_back({std::string(name), read_attribute(domain_, entry, name)});
  for (const std::string& name : entry.attribute_names()) {
    if (!is_link(name))
      cache_.push_back({name, read_attribute(domain_, entry, name)});
  }
  fetched_ = true;
}

std::vector<std::string> StagedEntry::stored_values(std::string_view attribute) {
  if (new_)
    return {};
  if (is_link(attribute))
    return require_entry(domain_, dn_).values(attribute);
  if (!fetched_ && is_identity(attribute))
    return read_attribute(domain_, require_entry(domain_, dn_), attribute);
  if (!fetched_)
    fetch();
  for (const Fetched& one : cache_) {
    if (base::equals_fold(one.attribute, attribute))
      return one.values;
  }
  return {};
}

std::vector<std::string> StagedEntry::attribute_names() {
  if (new_)
    return {};
  if (!fetched_)
    fetch();
  std::vector<std::string> names;
  for (const Fetched& one : cache_) {
    if (!one.values.empty())
      names.push_back(one.attribute);
  }
  for (const char* const link : {"member", "memberOf"}) {
    if (!stored_values(link).empty())
      names.emplace_back(link);
  }
  return names;
}

Value StagedEntry::get(std::string_view attribute) {
  if (staged_.hides_stored(attribute))
    return staged_.over(attribute, {});
  const ads::AttributeSchema* const schema = ads::find_attribute(attribute);
  return staged_.over(attribute, ads::to_value(schema, stored_values(attribute)).list());
}

void StagedEntry::stage(int control, std::string_view attribute, const Value& value) {
  staged_.stage(control, attribute, value);
}

void StagedEntry::commit() {
  if (new_)
    return add({});
  modify_object(domain_, provider_, dn_, staged_.changes());
  staged_.clear();
  fetched_ = false;
}

void StagedEntry::foresee() const {
  if (new_)
    check_new_object(domain_, provider_, object_class_, dn_, staged_.changes());
  else
    check_changes(domain_, provider_, dn_, staged_.changes());
}

void StagedEntry::add_with_password(std::string_view password) {
  if (!new_ || !base::equals_fold(object_class_, "user"))
    raise(ads_error::kUnwilling, dn_ + " is not a new account");
  add(password_changes(domain_, password, get("sAMAccountName").text()));
}

void StagedEntry::add(const std::vector<Modification>& own) {
  add_object(domain_, provider_, object_class_, dn_, staged_.changes(), own);
  new_ = false;
  staged_.clear();
}

}  // namespace twk::lab
