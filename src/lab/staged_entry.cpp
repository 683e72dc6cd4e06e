#include "lab/staged_entry.hpp"

#include <algorithm>
#include <array>

#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/domain_rules.hpp"
#include "lab/entry_view.hpp"
#include "lab/errors.hpp"

namespace twk::lab {
namespace {

using platform::Value;
using platform::ValueList;

/// Links may be many; they are read when asked for.
bool is_link(std::string_view attribute) {
  return base::equals_fold(attribute, "member") || base::equals_fold(attribute, "memberOf");
}

constexpr std::array<std::string_view, 6> kComputed = {"distinguishedName", "name",         "cn", "ou",
                                                       "primaryGroupToken", "nTMixedDomain"};

Value from_list(ValueList list) {
  if (list.empty())
    return {};
  if (list.size() == 1)
    return std::move(list.front());
  return list;
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
  for (const std::string_view name : kComputed)
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
  if (!fetched_)
    fetch();
  for (const Fetched& one : cache_) {
    if (base::equals_fold(one.attribute, attribute))
      return one.values;
  }
  return {};
}

std::vector<StagedChange>::iterator StagedEntry::find_staged(std::string_view attribute, ModifyKind kind) {
  return std::find_if(staged_.begin(), staged_.end(), [&](const StagedChange& change) {
    return change.kind == kind && base::equals_fold(change.attribute, attribute);
  });
}

Value StagedEntry::get(std::string_view attribute) {
  const ads::AttributeSchema* const schema = ads::find_attribute(attribute);
  const auto replaced = find_staged(attribute, ModifyKind::kReplace);
  ValueList values =
      replaced != staged_.end() ? replaced->values : ads::to_value(schema, stored_values(attribute)).list();
  for (const StagedChange& change : staged_) {
    if (!base::equals_fold(change.attribute, attribute))
      continue;
    if (change.kind == ModifyKind::kAdd)
      values.insert(values.end(), change.values.begin(), change.values.end());
    if (change.kind != ModifyKind::kDelete)
      continue;
    for (const Value& gone : change.values)
      std::erase(values, gone);
  }
  return from_list(std::move(values));
}

void StagedEntry::stage(int control, std::string_view attribute, const Value& value) {
  if (control < 1 || control > 4)
    raise(ads_error::kConstraint, "PutEx has no control code " + base::to_text(control));
  if (control <= 2) {
    std::erase_if(staged_,
                  [&](const StagedChange& change) { return base::equals_fold(change.attribute, attribute); });
    staged_.push_back(
        {ModifyKind::kReplace, std::string(attribute), control == 1 ? ValueList{} : value.list()});
    return;
  }
  const ModifyKind kind = control == 3 ? ModifyKind::kAdd : ModifyKind::kDelete;
  // On top of a staged replacement the change is made on its values, so that one change of the attribute is
  // left.
  const auto replaced = find_staged(attribute, ModifyKind::kReplace);
  const auto target = replaced != staged_.end() ? replaced : find_staged(attribute, kind);
  if (target == staged_.end()) {
    staged_.push_back({kind, std::string(attribute), value.list()});
    return;
  }
  for (Value& one : value.list()) {
    if (target->kind == ModifyKind::kReplace && kind == ModifyKind::kDelete) {
      std::erase(target->values, one);
    } else {
      target->values.push_back(std::move(one));
    }
  }
}

void StagedEntry::commit() {
  if (new_) {
    add_object(domain_, provider_, object_class_, dn_, staged_);
    new_ = false;
  } else {
    modify_object(domain_, provider_, dn_, staged_);
  }
  staged_.clear();
  fetched_ = false;
}

}  // namespace twk::lab
