#include "creation/mailbox_stage.hpp"

#include "base/text.hpp"
#include "creation/creation_run.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "mail/create_mailbox2000.hpp"
#include "mail/create_mailbox55.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

mail::MailboxOwner owner_of(const CreationRun& run) {
  const session::Form1& form = run.session.form1;
  return {run.request.FirstName,
          run.request.MiddleName,
          run.request.LastName,
          run.SamName,
          {std::string(base::trim(form.EXSERVER.text.get())), form.EXSite.text, form.EXorg.text}};
}

bool create_55(CreationRun& run) {
  const session::Session& session = run.session;
  mail::Mailbox55 request;
  request.LookupServer = session::is_active_directory(session) ? session.DnsServerName : run.PdcName;
  request.Domain = directory::winnt_domain(session);
  request.AdminName = session.form1.txtAdmin.text;
  request.AdminPassword = session.form1.txtPassword.text;
  request.owner = owner_of(run);
  return mail::CreateMailbox55(run.session, request);
}

bool create_2000(CreationRun& run) {
  return mail::CreateMailbox2000(run.session, run.CurrentUserObject, owner_of(run),
                                 run.session.form1.Mail_Store.text.get(),
                                 directory::domain_distinguished_name(run.session.DomainName));
}

}  // namespace

Mailbox CreateMailbox(CreationRun& run) {
  const bool exchange_2000 = run.session.form1.EXH5.index == 1;
  if (!(exchange_2000 ? create_2000(run) : create_55(run)))
    return Mailbox::kFailed;
  return run.session.MailWarning ? Mailbox::kCreatedWithWarnings : Mailbox::kCreated;
}

}  // namespace twk::creation
