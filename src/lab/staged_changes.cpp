#include "lab/staged_changes.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "lab/errors.hpp"

namespace twk::lab {

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

std::vector<StagedChange>::iterator StagedChanges::find(std::string_view attribute, ModifyKind kind) {
  return std::find_if(changes_.begin(), changes_.end(), [&](const StagedChange& change) {
    return change.kind == kind && base::equals_fold(change.attribute, attribute);
  });
}

void StagedChanges::stage(int control, std::string_view attribute, const Value& value) {
  if (control < 1 || control > 4)
    raise(ads_error::kConstraint, "PutEx has no control code " + base::to_text(control));
  if (control <= 2) {
    std::erase_if(changes_,
                  [&](const StagedChange& change) { return base::equals_fold(change.attribute, attribute); });
    changes_.push_back(
        {ModifyKind::kReplace, std::string(attribute), control == 1 ? ValueList{} : value.list()});
    return;
  }
  const ModifyKind kind = control == 3 ? ModifyKind::kAdd : ModifyKind::kDelete;
  // On top of a staged replacement the change is made on its values, so that one change of the attribute is
  // left.
  const auto replaced = find(attribute, ModifyKind::kReplace);
  const auto target = replaced != changes_.end() ? replaced : find(attribute, kind);
  if (target == changes_.end()) {
    changes_.push_back({kind, std::string(attribute), value.list()});
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

Value StagedChanges::view(std::string_view attribute, const std::function<ValueList()>& stored) const {
  const auto replaced = std::find_if(changes_.begin(), changes_.end(), [&](const StagedChange& change) {
    return change.kind == ModifyKind::kReplace && base::equals_fold(change.attribute, attribute);
  });
  ValueList values = replaced != changes_.end() ? replaced->values : stored();
  for (const StagedChange& change : changes_) {
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

}  // namespace twk::lab
