#include "platform/adsi.hpp"

#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/sid.hpp"

namespace twk::platform {
namespace {

struct PropertyName {
  std::string_view property;
  std::string_view attribute;
};

constexpr std::array<PropertyName, 12> kProperties = {{
    {"FullName", "displayName"},
    {"FirstName", "givenName"},
    {"LastName", "sn"},
    {"OfficeLocations", "physicalDeliveryOfficeName"},
    {"EmailAddress", "mail"},
    {"LoginScript", "scriptPath"},
    {"Profile", "profilePath"},
    {"LoginHours", "logonHours"},
    {"TelephoneNumber", "telephoneNumber"},
    {"HomePage", "wWWHomePage"},
    {"AccountExpirationDate", "accountExpires"},
    {"HomeDirDrive", "homeDrive"},
}};

/// "accountExpires" of an account that never expires; 0 means the same.
constexpr std::string_view kNeverExpires = "9223372036854775807";

std::int64_t to_int64(std::string_view text) {
  std::int64_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9' || number > (INT64_MAX - 9) / 10)
      return number;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

Value value_or_empty(DirectoryObject& object, std::string_view attribute) {
  try {
    return object.Get(attribute);
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == ads_error::kPropertyNotFound)
      return {};
    throw;
  }
}

std::string text_or_empty(DirectoryObject& object, std::string_view attribute) {
  return value_or_empty(object, attribute).text();
}

std::string readable_text(const ObjectPtr& object, std::string_view attribute) {
  std::string text;
  base::Trap unreadable;
  if (object != nullptr)
    unreadable([&] { text = object->Get(attribute).text(); });
  return text;
}

std::string readable_sid(const ObjectPtr& account) {
  std::string text;
  base::Trap unreadable;
  unreadable([&] {
    if (const auto sid = Sid::decode(account->Get("objectSid").bytes()))
      text = sid->text();
  });
  return text;
}

std::string winnt_path(std::string_view domain) {
  return "WinNT://" + std::string(domain);
}

std::string winnt_path(std::string_view domain, std::string_view name) {
  return winnt_path(domain) + "/" + std::string(name);
}

std::string shares_path(std::string_view server) {
  return winnt_path(server, "lanmanserver");
}

std::string share_path(std::string_view server, std::string_view share) {
  return shares_path(server) + "/" + std::string(share);
}

std::string_view ldap_attribute(std::string_view property) {
  for (const PropertyName& name : kProperties) {
    if (base::equals_fold(name.property, property))
      return name.attribute;
  }
  return property;
}

base::Date never_expires() {
  return base::make_date({1970, 1, 1});
}

bool User::is_winnt() const {
  return base::starts_with_fold(object_->ADsPath(), "WinNT://");
}

base::Bytes User::LoginHours() const {
  const Value hours = value("LoginHours");
  return hours.is_empty() ? base::Bytes{} : hours.bytes();
}

bool is_lapsed_lock(const Value& computed_control) {
  return !computed_control.is_empty() && (computed_control.integer() & kFlagLockedOut) == 0;
}

bool User::AccountDisabled() const {
  const Value flags = value(is_winnt() ? "UserFlags" : "userAccountControl");
  return !flags.is_empty() && (flags.integer() & kFlagAccountDisabled) != 0;
}

bool User::IsAccountLocked() const {
  if (is_winnt()) {
    const Value flags = value("UserFlags");
    return !flags.is_empty() && (flags.integer() & kFlagLockedOut) != 0;
  }
  const std::string since = value("lockoutTime").text();
  return !since.empty() && since != "0" && !is_lapsed_lock(value("msDS-User-Account-Control-Computed"));
}

base::Date User::AccountExpirationDate() const {
  if (is_winnt())
    return object_->Get("AccountExpirationDate").date();
  const std::string expires = value("accountExpires").text();
  if (expires.empty() || expires == "0" || expires == kNeverExpires)
    return never_expires();
  return base::from_filetime(to_int64(expires));
}

void User::put_flag(std::int32_t bit, bool on) {
  const std::string_view attribute = is_winnt() ? "UserFlags" : "userAccountControl";
  const Value before = value(attribute);
  const std::int32_t flags = before.is_empty() ? kFlagNormalAccount : before.integer();
  object_->Put(attribute, on ? flags | bit : flags & ~bit);
}

void User::put_AccountDisabled(bool disabled) {
  put_flag(kFlagAccountDisabled, disabled);
}

void User::put_IsAccountLocked(bool locked) {
  if (locked)
    throw base::RuntimeError(ads_error::kUnwilling, "An account cannot be locked by setting a property");
  if (is_winnt()) {
    put_flag(kFlagLockedOut, false);
  } else {
    object_->Put("lockoutTime", "0");
  }
}

void User::put_AccountExpirationDate(base::Date date) {
  if (is_winnt()) {
    object_->Put("AccountExpirationDate", date);
  } else if (date == never_expires()) {
    object_->Put("accountExpires", kNeverExpires);
  } else {
    object_->Put("accountExpires", base::to_text(base::to_filetime(date)));
  }
}

}  // namespace twk::platform
