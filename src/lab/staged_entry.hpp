#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lab/ads_path.hpp"
#include "lab/lab_domain.hpp"
#include "lab/staged_changes.hpp"

namespace twk::lab {

/// One entry, or one to be, with the changes staged on it. Reads give staged values first, then those that
/// the entry had at the first read; after `commit` they are fetched anew.
class StagedEntry {
 public:
  /// A stored entry. Raises kNoSuchObject.
  StagedEntry(LabDomain& domain, Provider provider, std::string_view dn);
  /// A new one.
  StagedEntry(LabDomain& domain, Provider provider, std::string dn, std::string object_class);

  [[nodiscard]] LabDomain& domain() const { return domain_; }
  [[nodiscard]] const std::string& dn() const { return dn_; }
  [[nodiscard]] const std::string& object_class() const { return object_class_; }
  [[nodiscard]] bool is_new() const { return new_; }

  /// Empty when the attribute has no value.
  platform::Value get(std::string_view attribute);
  /// By the control codes of `PutEx`. Raises kConstraint for another code.
  void stage(int control, std::string_view attribute, const platform::Value& value) {
    staged_.stage(control, attribute, value);
  }
  /// All staged changes or none; on failure they stay staged.
  void commit();

 private:
  struct Fetched {
    std::string attribute;
    std::vector<std::string> values;
  };

  void fetch();
  [[nodiscard]] std::vector<std::string> stored_values(std::string_view attribute);

  LabDomain& domain_;
  Provider provider_;
  std::string dn_;
  std::string object_class_;
  bool new_ = false;
  bool fetched_ = false;
  std::vector<Fetched> cache_;
  StagedChanges staged_;
};

}  // namespace twk::lab
