#include "ads/staged_values.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::ads {

using platform::Value;
using platform::ValueList;

namespace {

Value from_list(ValueList list) {
  if (list.empty())
    return {};
  if (list.size() == 1)
    return std::move(list.front());
  return list;
}

}  // namespace

std::vector<StagedChange>::iterator StagedValues::find(std::string_view attribute, ChangeKind kind) {
  return std::find_if(changes_.begin(), changes_.end(), [&](const StagedChange& change) {
    return change.kind == kind && base::equals_fold(change.attribute, attribute);
  });
}

bool StagedValues::hides_stored(std::string_view attribute) const {
  return std::any_of(changes_.begin(), changes_.end(), [&](const StagedChange& change) {
    return change.kind == ChangeKind::kReplace && base::equals_fold(change.attribute, attribute);
  });
}

Value StagedValues::over(std::string_view attribute, ValueList stored) const {
  ValueList values = std::move(stored);
  for (const StagedChange& change : changes_) {
    if (!base::equals_fold(change.attribute, attribute))
      continue;
    if (change.kind == ChangeKind::kReplace)
      values = change.values;
    if (change.kind == ChangeKind::kAdd)
      values.insert(values.end(), change.values.begin(), change.values.end());
    if (change.kind != ChangeKind::kDelete)
      continue;
    for (const Value& gone : change.values)
      std::erase(values, gone);
  }
  return from_list(std::move(values));
}

void StagedValues::stage(int control, std::string_view attribute, const Value& value) {
  if (control < 1 || control > 4)
    base::raise(platform::ads_error::kConstraint, "PutEx has no control code " + base::to_text(control));
  if (control <= 2) {
    std::erase_if(changes_,
                  [&](const StagedChange& change) { return base::equals_fold(change.attribute, attribute); });
    changes_.push_back(
        {ChangeKind::kReplace, std::string(attribute), control == 1 ? ValueList{} : value.list()});
    return;
  }
  const ChangeKind kind = control == 3 ? ChangeKind::kAdd : ChangeKind::kDelete;
  // A change on top of a staged replacement is made to its values, so that one change of the attribute is
  // left.
  const auto replaced = find(attribute, ChangeKind::kReplace);
  const auto target = replaced != changes_.end() ? replaced : find(attribute, kind);
  if (target == changes_.end()) {
    changes_.push_back({kind, std::string(attribute), value.list()});
    return;
  }
  for (Value& one : value.list()) {
    if (target->kind == ChangeKind::kReplace && kind == ChangeKind::kDelete) {
      std::erase(target->values, one);
    } else {
      target->values.push_back(std::move(one));
    }
  }
}

}  // namespace twk::ads
