#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/ldif.hpp"
#include "platform/value.hpp"

namespace twk::lab {

/// A change of one attribute as a caller staged it.
struct StagedChange {
  ModifyKind kind = ModifyKind::kReplace;  ///< a replace by no values clears
  std::string attribute;
  platform::ValueList values;
};

/// What `Put` and `PutEx` staged on an object since its last `SetInfo`.
class StagedChanges {
 public:
  /// By the control codes of `PutEx`. Raises kConstraint for another code.
  void stage(int control, std::string_view attribute, const platform::Value& value);
  /// The attribute with what is staged on it; `stored` gives its values and is not asked when they are
  /// replaced. Empty when it has none.
  [[nodiscard]] platform::Value view(std::string_view attribute,
                                     const std::function<platform::ValueList()>& stored) const;

  [[nodiscard]] const std::vector<StagedChange>& all() const { return changes_; }
  void clear() { changes_.clear(); }

 private:
  std::vector<StagedChange>::iterator find(std::string_view attribute, ModifyKind kind);

  std::vector<StagedChange> changes_;
};

}  // namespace twk::lab
