#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "directory/account_expiry.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

bool can_be_bound(Session& session, const std::string& path) {
  base::Trap trap;
  return trap([&] { static_cast<void>(session.platform.directory.GetObject(path)); });
}

/// The tree shows only the part of the domain that was read, but all names of the domain count.
bool is_in_use(CreationRun& run) {
  Session& session = run.session;
  if (!session::is_active_directory(session))
    return can_be_bound(session, directory::winnt_path(session, run.UserId));
  if (can_be_bound(session, "LDAP://CN=" + run.CnName + "," + container_key(run)))
    return true;
  const auto rows = directory::run_query(
      session,
      "<LDAP://" + session.DomainName + "/" + directory::domain_distinguished_name(session.DomainName) +
          ">;(sAMAccountName=" + platform::escape_filter_value(run.SamName) + ");distinguishedName;subtree");
  return !(rows->at_eof() && rows->at_bof());
}

void require_free_name(CreationRun& run) {
  if (is_in_use(run) || !run.session.import.foreseen_names.add(base::upper(run.SamName)))
    base::raise(platform::ads_error::kObjectExists, "The account name " + run.SamName + " is in use");
}

/// In a WinNT domain no account is made then, in Active Directory one that does not expire.
void foresee_expiry(CreationRun& run) {
  if (directory::is_open_expiry(run.ExpiryText))
    return;
  base::Trap trap;
  if (trap([&] { directory::expiry_of_text(run.session.platform.clock, run.ExpiryText); }))
    return;
  if (!session::is_active_directory(run.session))
    base::raise(trap.number(), "Error setting account expiry: " + trap.description());
  warn(run, "Error setting account expiry", base::in_words(trap.number(), trap.description()));
}

}  // namespace

void ForeseeAccount(CreationRun& run) {
  require_free_name(run);
  foresee_expiry(run);
  ApplyGroups(run);
  if (session::is_active_directory(run.session))
    ForeseePrincipalName(run);
}

}  // namespace twk::creation
