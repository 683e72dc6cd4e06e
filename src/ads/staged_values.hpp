#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/value.hpp"

namespace twk::ads {

enum class ChangeKind { kAdd, kDelete, kReplace };

/// A change of one attribute as a caller staged it.
struct StagedChange {
  ChangeKind kind = ChangeKind::kReplace;  ///< a replace by no values clears
  std::string attribute;
  platform::ValueList values;
};

/// What was put on an object but is not yet written.
class StagedValues {
 public:
  /// By the control codes of `PutEx`. Raises kConstraint for another code.
  void stage(int control, std::string_view attribute, const platform::Value& value);
  /// True when nothing that is stored shows through: the attribute was replaced or cleared.
  [[nodiscard]] bool hides_stored(std::string_view attribute) const;
  /// The attribute as it will be, on top of the stored values. Empty when it has no value.
  [[nodiscard]] platform::Value over(std::string_view attribute, platform::ValueList stored) const;

  [[nodiscard]] const std::vector<StagedChange>& changes() const { return changes_; }
  void clear() { changes_.clear(); }

 private:
  std::vector<StagedChange>::iterator find(std::string_view attribute, ChangeKind kind);

  std::vector<StagedChange> changes_;
};

/// An object's attributes, read with what is staged on top.
class AttributeAccess {
 public:
  virtual ~AttributeAccess() = default;
  /// Empty when the attribute has no value.
  virtual platform::Value get(std::string_view attribute) = 0;
  virtual void stage(int control, std::string_view attribute, const platform::Value& value) = 0;
};

}  // namespace twk::ads
