#pragma once

#include <string>
#include <string_view>

#include "ads/basic_object.hpp"
#include "ads/staged_values.hpp"

/// What the objects of a WinNT domain have in common, whatever stores the accounts.
namespace twk::ads {

/// Classes of accounts.
inline constexpr std::string_view kWinntUser = "User";
inline constexpr std::string_view kWinntGroup = "Group";

/// The class of a new account: true for a user, False for a group. Raises kUnwilling for any other class, and
/// what `check_account_name` raises.
bool is_new_user(std::string_view object_class, std::string_view name);
/// Raises kGroupNotFound where a group was asked for, else kUserNotFound.
[[noreturn]] void raise_no_account(std::string_view object_class, std::string_view name);

/// A domain: "WinNT://TWK".
class WinntDomainObject : public BasicObject {
 public:
  explicit WinntDomainObject(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Class() const override { return "Domain"; }
  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override { return "WinNT:"; }

 private:
  std::string name_;
};

/// An account: "WinNT://TWK/jo".
class WinntAccountObject : public BasicObject {
 public:
  /// `domain_name` as written in the paths.
  explicit WinntAccountObject(std::string domain_name) : domain_name_(std::move(domain_name)) {}

  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override;

  platform::Value Get(std::string_view property) override;
  void Put(std::string_view property, const platform::Value& value) override;
  void PutEx(int control, std::string_view property, const platform::Value& value) override;

 protected:
  [[nodiscard]] const std::string& domain_name() const { return domain_name_; }

 private:
  /// The attributes under the properties.
  virtual AttributeAccess& attributes() = 0;

  std::string domain_name_;
};

}  // namespace twk::ads
