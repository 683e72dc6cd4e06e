#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ads/ads_path.hpp"
#include "ads/staged_values.hpp"
#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// A stored or future entry, with the changes staged on it. Reads return staged values first, then those that
/// the entry had at the first read; after `commit` they are fetched again.
class StagedEntry final : public ads::AttributeAccess {
 public:
  /// A stored entry. Raises kNoSuchObject.
  StagedEntry(LabDomain& domain, ads::Provider provider, std::string_view dn);
  /// A new one.
  StagedEntry(LabDomain& domain, ads::Provider provider, std::string dn, std::string object_class);

  [[nodiscard]] LabDomain& domain() const { return domain_; }
  [[nodiscard]] const std::string& dn() const { return dn_; }
  [[nodiscard]] const std::string& object_class() const { return object_class_; }
  [[nodiscard]] bool is_new() const { return new_; }

  platform::Value get(std::string_view attribute) override;
  void stage(int control, std::string_view attribute, const platform::Value& value) override;
  /// Of the values that are stored, without the secret ones.
  [[nodiscard]] std::vector<std::string> attribute_names();
  /// All staged changes or none; on failure they stay staged.
  void commit();
  /// Raises what `commit` would raise, and changes nothing.
  void foresee() const;
  /// A new account with a password, all or nothing. Raises kUnwilling for an object that is not an account.
  void add_with_password(std::string_view password);

 private:
  struct Fetched {
    std::string attribute;
    std::vector<std::string> values;
  };

  void fetch();
  void add(const std::vector<Modification>& own);
  [[nodiscard]] std::vector<std::string> stored_values(std::string_view attribute);

  LabDomain& domain_;
  ads::Provider provider_;
  std::string dn_;
  std::string object_class_;
  bool new_ = false;
  bool fetched_ = false;
  std::vector<Fetched> cache_;
  ads::StagedValues staged_;
};

}  // namespace twk::lab
