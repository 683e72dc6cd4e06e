#include "creation/mailbox_stage.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/creation_run.hpp"
#include "creation/quiet_view.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "mail/create_mailbox2000.hpp"
#include "mail/create_mailbox55.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

mail::MailboxOwner owner_of(const CreationRun& run) {
  const SiteValues& site = run.site;
  return {run.request.FirstName,
          run.request.MiddleName,
          run.request.LastName,
          run.SamName,
          {site.mail_server, site.mail_site, site.mail_organization},
          run.session.import.Importing && run.request.skip_prompts};
}

bool create_55(CreationRun& run) {
  const session::Session& session = run.session;
  mail::Mailbox55 request;
  request.LookupServer = session::is_active_directory(session) ? session.DnsServerName : run.PdcName;
  request.Domain = directory::winnt_domain(session);
  request.administrator = run.request.mail_administrator;
  request.owner = owner_of(run);
  const auto mailbox = [](const std::string& path) {
    return MadeThing{MadeThing::Kind::kMailbox, path, {}, {}, nullptr};
  };
  request.makes = [&](const std::string& path) { run.view.makes(mailbox(path)); };
  request.made = [&](const std::string& path) { run.view.made(mailbox(path)); };
  return mail::CreateMailbox55(run.session, request);
}

bool create_2000(CreationRun& run) {
  return mail::CreateMailbox2000(run.session, run.CurrentUserObject, owner_of(run), run.site.mail_store,
                                 directory::domain_distinguished_name(run.session.DomainName));
}

/// An account of a WinNT domain has only its full name: the first word, and the rest.
void split_full_name(NewUserRequest& request, const std::string& full_name) {
  const std::size_t blank = full_name.find(' ');
  request.FirstName = full_name.substr(0, blank);
  if (blank != base::npos)
    request.LastName = base::trim(std::string_view(full_name).substr(blank));
}

/// A run that is past its account stage.
void take_account(CreationRun& run, const platform::ObjectPtr& user) {
  run.CurrentUserObject = user;
  run.request.MiddleName.clear();
  if (!session::is_active_directory(run.session)) {
    run.SamName = user->Name();
    return split_full_name(run.request, platform::readable_text(user, "FullName"));
  }
  run.SamName = platform::readable_text(user, "samAccountName");
  run.request.FirstName = platform::readable_text(user, "FirstName");
  run.request.LastName = platform::readable_text(user, "LastName");
}

}  // namespace

session::CreationOutcome CreateMailboxFor(session::Session& session, const platform::ObjectPtr& user,
                                          const session::MailAdministrator& administrator) {
  session.log.begin_block();
  NewUserRequest request;
  request.mail_administrator = administrator;
  QuietView view;
  CreationRun run(session, std::move(request), view);
  run.site = values_of(session.ActiveSite);
  take_account(run, user);
  log(run, "Creating Mailbox:" + run.SamName);
  const Mailbox mailbox = CreateMailbox(run);
  log(run, mailbox == Mailbox::kFailed ? "Failed to create Mail Account" : "Created Mail Account");
  session.log.close();
  const bool made = mailbox != Mailbox::kFailed;
  const std::string_view light = !made                          ? session::kRed
                                 : mailbox == Mailbox::kCreated ? session::kGreen
                                                                : session::kYellow;
  session::CreationOutcome outcome;
  outcome.user = run.SamName;
  outcome.light = light;
  outcome.message = session::LOG_TAB(
      session, light,
      (made ? "Created Mail Account for " : "Failed to create Mail Account for ") + run.SamName);
  return outcome;
}

Mailbox CreateMailbox(CreationRun& run) {
  if (!(run.site.exchange_2000 ? create_2000(run) : create_55(run)))
    return Mailbox::kFailed;
  return run.session.MailWarning ? Mailbox::kCreatedWithWarnings : Mailbox::kCreated;
}

}  // namespace twk::creation
