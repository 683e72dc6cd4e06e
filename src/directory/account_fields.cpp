#include "directory/account_fields.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::User;

/// Reads one thing after another. A failure that is not an attribute without a value is kept, the first one.
class Reader {
 public:
  explicit Reader(std::optional<base::RuntimeError>& fault) : fault_(fault) {}

  template <typename Step>
  void operator()(Step&& step) {
    try {
      std::forward<Step>(step)();
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != platform::ads_error::kPropertyNotFound && !fault_)
        fault_ = failure;
    }
  }

 private:
  std::optional<base::RuntimeError>& fault_;
};

bool has_bit(std::int32_t flags, std::int32_t bit) {
  return (flags & bit) != 0;
}

void read_principal_name(UserDetails& details, const User& user) {
  const std::string principal = user.Get("userPrincipalName").text();
  const std::size_t at = std::min(principal.find('@'), principal.size());
  details.LogonName = principal.substr(0, at);
  if (at < principal.size())
    details.LogonSuffix = base::left(std::string_view(principal).substr(at), 100);
}

/// What only the WinNT object of an account in Active Directory has.
void read_winnt_flags(UserDetails& details, const AccountDomain& domain, Reader& read) {
  ObjectPtr account;
  read([&] {
    account =
        domain.services.directory.GetObject(platform::winnt_path(domain.nt_name, details.PreW2K) + ",user");
  });
  if (account == nullptr)
    return;
  read([&] { details.must_change = account->Get("PasswordExpired").integer() != 0; });
  read([&] {
    details.cannot_change = has_bit(account->Get("userFlags").integer(), platform::kFlagCannotChangePassword);
  });
  read([&] { details.locked_out = User(account).IsAccountLocked(); });
}

UserDetails read_ad_account(const AccountDomain& domain, const User& user,
                            std::optional<base::RuntimeError>& fault) {
  Reader read(fault);
  UserDetails details;
  details.name = platform::plain_name(user.Name());
  details.LogonSuffix = "@" + domain.name;
  const auto take = [&](std::string& field, std::string_view property) {
    read([&] { field = user.Get(property).text(); });
  };
  take(details.FullName, "FullName");
  take(details.Description, "Description");
  take(details.FirstName, "FirstName");
  take(details.LastName, "LastName");
  take(details.Office, "OfficeLocations");
  take(details.Initials, "initials");
  take(details.Profile, "Profile");
  take(details.HomeDirectory, "HomeDirectory");
  take(details.LoginScript, "LoginScript");
  take(details.HomeDrive, "HomeDrive");
  take(details.Mail, "EmailAddress");
  take(details.PreW2K, "samAccountName");
  read([&] { read_principal_name(details, user); });
  read([&] {
    details.ends = expiry_of(user);
    details.Expires = expiry_text(domain.services.clock, details.ends);
  });
  read_winnt_flags(details, domain, read);
  read([&] {
    details.never_expires =
        has_bit(user.Get("UserAccountControl").integer(), platform::kFlagPasswordNeverExpires);
  });
  read([&] { details.disabled = user.AccountDisabled(); });
  return details;
}

UserDetails read_nt_account(const AccountDomain& domain, const User& user) {
  UserDetails details;
  details.name = user.Name();
  details.FullName = user.FullName();
  details.Description = user.Description();
  details.Profile = user.Profile();
  details.HomeDirectory = user.HomeDirectory();
  details.LoginScript = user.LoginScript();
  details.HomeDrive = platform::text_or_empty(*user.object(), "HomeDirDrive");
  details.Expires = "Never";
  base::Trap unknown;
  unknown([&] {
    details.ends = expiry_of(user);
    details.Expires = expiry_text(domain.services.clock, details.ends);
  });
  details.must_change = user.Get("PasswordExpired").integer() != 0;
  const std::int32_t flags = user.Get("userFlags").integer();
  details.cannot_change = has_bit(flags, platform::kFlagCannotChangePassword);
  details.never_expires = has_bit(flags, platform::kFlagPasswordNeverExpires);
  details.disabled = user.AccountDisabled();
  details.locked_out = user.IsAccountLocked();
  return details;
}

}  // namespace

UserDetails read_account(const AccountDomain& domain, const ObjectPtr& account,
                         std::optional<base::RuntimeError>& fault) {
  const User user(account);
  return domain.active_directory ? read_ad_account(domain, user, fault) : read_nt_account(domain, user);
}

ChangedParts parts_that_differ(const UserDetails& before, const UserDetails& after) {
  const auto differ = [&](std::initializer_list<std::string UserDetails::*> fields) {
    return std::any_of(fields.begin(), fields.end(),
                       [&](auto field) { return before.*field != after.*field; });
  };
  using D = UserDetails;
  ChangedParts changed;
  changed.Account = differ({&D::PreW2K, &D::LogonName, &D::LogonSuffix, &D::Mail, &D::Expires});
  changed.Profile = differ({&D::HomeDirectory, &D::LoginScript, &D::Profile, &D::HomeDrive});
  changed.General =
      differ({&D::Description, &D::FirstName, &D::FullName, &D::Initials, &D::LastName, &D::Office});
  changed.Flags = before.disabled != after.disabled || before.locked_out != after.locked_out ||
                  before.cannot_change != after.cannot_change || before.must_change != after.must_change ||
                  before.never_expires != after.never_expires;
  for (std::size_t i = 0; i < changed.Custom.size(); ++i)
    changed.Custom.at(i) = before.Custom.at(i) != after.Custom.at(i);
  return changed;
}

}  // namespace twk::directory
