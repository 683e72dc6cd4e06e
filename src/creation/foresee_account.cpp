#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "directory/account_expiry.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/read_once.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using Answer = session::KnownValues::Answer;
using session::Session;

bool can_be_bound(Session& session, const std::string& path) {
  base::Trap trap;
  return trap([&] { static_cast<void>(session.platform.directory.GetObject(path)); });
}

std::string domain_path(const Session& session) {
  return "LDAP://" + session.DomainName + "/" + directory::domain_distinguished_name(session.DomainName);
}

bool is_name_in_container(CreationRun& run) {
  Session& session = run.session;
  const auto all = [&] {
    return directory::ValuesWanted{
        "LDAP://" + container_key(run), "(cn=*)", "cn", {}, platform::Scope::kOneLevel};
  };
  if (directory::find_value(session, session.import.lookups.neighbours, all, run.UserId) == Answer::kFree)
    return false;
  return can_be_bound(session, "LDAP://CN=" + run.CnName + "," + container_key(run));
}

bool is_account_name(CreationRun& run) {
  Session& session = run.session;
  const auto all = [&] {
    return directory::ValuesWanted{domain_path(session), "(sAMAccountName=*)", "sAMAccountName", {}};
  };
  if (directory::find_value(session, session.import.lookups.accounts, all, run.SamName) == Answer::kFree)
    return false;
  const auto rows = directory::run_query(session, "<" + domain_path(session) + ">;(sAMAccountName=" +
                                                      platform::escape_filter_value(run.SamName) +
                                                      ");distinguishedName;subtree");
  return !(rows->at_eof() && rows->at_bof());
}

/// The tree shows only the part of the domain that was read, but all names of the domain count.
bool is_in_use(CreationRun& run) {
  if (!session::is_active_directory(run.session))
    return can_be_bound(run.session, directory::winnt_path(run.session, run.UserId));
  return is_name_in_container(run) || is_account_name(run);
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
