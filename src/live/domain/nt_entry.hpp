#pragma once

#include <optional>
#include <string>

#include "ads/staged_values.hpp"
#include "live/domain/live_domain.hpp"

namespace twk::live {

/// An account of an NT4-style domain, read and written by the attribute names of a directory entry, so
/// that the rules of WinNT properties (ads/winnt_properties.hpp) hold here too. Stored values
/// are read once, on first use.
///
/// "userAccountControl" lacks the bit "cannot change password", which is an access list
/// here. "pwdLastSet" reads "0" when the password must be changed, "lockoutTime" something other than "0"
/// for a locked account.
class NtEntry final : public ads::AttributeAccess {
 public:
  NtEntry(LiveDomain& domain, SamAccount account, bool is_new)
      : domain_(&domain), account_(std::move(account)), new_(is_new) {}

  [[nodiscard]] LiveDomain& domain() const { return *domain_; }
  [[nodiscard]] AccountService& service() const;
  [[nodiscard]] const SamAccount& account() const { return account_; }

  platform::Value get(std::string_view attribute) override;
  void stage(int control, std::string_view attribute, const platform::Value& value) override;
  /// All staged changes in one call; a new account is made first and removed again when that call fails. A
  /// user is then enabled, or by the first password if the domain's policy requires one. Raises kConstraint,
  /// kNoSuchAttribute for what an account here does not have.
  void commit();
  void set_password(std::string_view password);

 private:
  [[nodiscard]] bool is_user() const { return account_.kind == SamAccount::Kind::kUser; }
  const SamUser& user();
  platform::ValueList stored(std::string_view attribute);
  platform::ValueList stored_of_user(std::string_view attribute);
  SamUserChange user_change();
  void write_group();
  void write_user();
  void create();
  void enable();

  LiveDomain* domain_;
  SamAccount account_;
  bool new_;
  bool awaits_password_ = false;
  std::optional<SamUser> fetched_;
  ads::StagedValues staged_;
};

}  // namespace twk::live
