#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/directory.hpp"

/// Accessors for the ADSI property names, over the narrow object interface. A wrapper holds no state of its
/// own.
namespace twk::platform {

/// Bits of "UserFlags" (WinNT) and "userAccountControl" (LDAP).
inline constexpr std::int32_t kFlagAccountDisabled = 0x2;
inline constexpr std::int32_t kFlagLockedOut = 0x10;
inline constexpr std::int32_t kFlagPasswordNotRequired = 0x20;
inline constexpr std::int32_t kFlagCannotChangePassword = 0x40;
inline constexpr std::int32_t kFlagNormalAccount = 0x200;
inline constexpr std::int32_t kFlagPasswordNeverExpires = 0x10000;

/// The attribute's value, empty when it has none. Raises every other failure.
Value value_or_empty(DirectoryObject& object, std::string_view attribute);
std::string text_or_empty(DirectoryObject& object, std::string_view attribute);
/// For a text that is offered or compared only: empty also when it cannot be read, and for no object.
std::string readable_text(const ObjectPtr& object, std::string_view attribute);
/// The account's identifier, "S-1-5-21-…"; empty when it cannot be read.
std::string readable_sid(const ObjectPtr& account);

/// "WinNT://TWK", "WinNT://TWK/jo".
std::string winnt_path(std::string_view domain);
std::string winnt_path(std::string_view domain, std::string_view name);
/// "WinNT://FS1/lanmanserver", the container of a server's shares, and "WinNT://FS1/lanmanserver/Users".
std::string shares_path(std::string_view server);
std::string share_path(std::string_view server, std::string_view share);

/// The LDAP attribute behind a user property name ("FullName" is "displayName", "LoginScript" "scriptPath",
/// "Profile" "profilePath", "FirstName" "givenName", "LastName" "sn", "OfficeLocations"
/// "physicalDeliveryOfficeName", "EmailAddress" and "EMailAddress" "mail", "LoginHours" "logonHours",
/// "HomeDrive", "HomeDirectory", "Description" under their own names …); any other name is returned
/// unchanged. Folds case.
std::string_view ldap_attribute(std::string_view property);

/// True when "msDS-User-Account-Control-Computed" says that an account is not locked out, although
/// "lockoutTime" still holds the time of a lockout that is over. Always false in a directory without that
/// attribute.
bool is_lapsed_lock(const Value& computed_control);

/// The sentinel of an account that does not expire, as an LDAP object reads back and as it is written.
base::Date never_expires();

/// IADsUser.
class User {
 public:
  explicit User(ObjectPtr object) : object_(std::move(object)) {}

  [[nodiscard]] const ObjectPtr& object() const { return object_; }
  [[nodiscard]] std::string Name() const { return object_->Name(); }
  [[nodiscard]] std::string ADsPath() const { return object_->ADsPath(); }

  // Each getter gives the empty text when the property has no value; each `put_` stages, `SetInfo` writes.
  [[nodiscard]] std::string FullName() const { return text("FullName"); }
  [[nodiscard]] std::string Description() const { return text("Description"); }
  [[nodiscard]] std::string FirstName() const { return text("FirstName"); }
  [[nodiscard]] std::string LastName() const { return text("LastName"); }
  [[nodiscard]] std::string EmailAddress() const { return text("EmailAddress"); }
  [[nodiscard]] std::string HomeDirectory() const { return text("HomeDirectory"); }
  [[nodiscard]] std::string Profile() const { return text("Profile"); }
  [[nodiscard]] std::string LoginScript() const { return text("LoginScript"); }
  [[nodiscard]] Value OfficeLocations() const { return value("OfficeLocations"); }
  /// 21 bytes, or none when the account has no restriction stored.
  [[nodiscard]] base::Bytes LoginHours() const;
  [[nodiscard]] bool AccountDisabled() const;
  [[nodiscard]] bool IsAccountLocked() const;
  /// The LDAP object returns a sentinel for an account that does not expire; the WinNT object raises an
  /// error.
  [[nodiscard]] base::Date AccountExpirationDate() const;

  void put_FullName(std::string_view text) { object_->Put("FullName", text); }
  void put_Description(std::string_view text) { object_->Put("Description", text); }
  void put_FirstName(std::string_view text) { object_->Put("FirstName", text); }
  void put_LastName(std::string_view text) { object_->Put("LastName", text); }
  void put_HomeDirectory(std::string_view text) { object_->Put("HomeDirectory", text); }
  void put_Profile(std::string_view text) { object_->Put("Profile", text); }
  void put_LoginScript(std::string_view text) { object_->Put("LoginScript", text); }
  void put_LoginHours(const base::Bytes& hours) { object_->Put("LoginHours", hours); }
  void put_AccountDisabled(bool disabled);
  /// Only False is accepted by a directory.
  void put_IsAccountLocked(bool locked);
  /// The sentinel of `never_expires` (LDAP) or a serial of -1 (WinNT) stores "never".
  void put_AccountExpirationDate(base::Date date);

  [[nodiscard]] Value Get(std::string_view attribute) const { return object_->Get(attribute); }
  void Put(std::string_view attribute, const Value& value) { object_->Put(attribute, value); }
  void PutEx(int control, std::string_view attribute, const Value& value) {
    object_->PutEx(control, attribute, value);
  }
  void SetInfo() { object_->SetInfo(); }
  void SetPassword(std::string_view password) { object_->SetPassword(password); }
  bool SetInfoWithPassword(std::string_view password) { return object_->SetInfoWithPassword(password); }
  [[nodiscard]] std::vector<ObjectPtr> Groups() const { return object_->Groups(); }

 private:
  [[nodiscard]] Value value(std::string_view property) const { return value_or_empty(*object_, property); }
  [[nodiscard]] std::string text(std::string_view property) const { return value(property).text(); }
  [[nodiscard]] bool is_winnt() const;
  /// Sets or clears one bit of the account's flags, on top of what is staged.
  void put_flag(std::int32_t bit, bool on);

  ObjectPtr object_;
};

}  // namespace twk::platform
