#include "lifecycle/deletion/delete_user.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "records/record_file.hpp"
#include "session/log_tab.hpp"
#include "stores/database_files.hpp"
#include "stores/site_store.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

/// The first live site of that server.
std::optional<records::SiteRecord> find_exchange_site(Session& session, std::string_view server) {
  auto file = records::RecordFile::open_read(
      session.platform.files, stores::database_path(session, stores::kSiteFile), records::kSiteRecordSize);
  const records::RecordSearch search = file.search([&](std::string_view bytes) {
    return !records::is_deleted(bytes) &&
           base::equals_fold(base::trim(records::decode_site(bytes).ExchangeServer), base::trim(server));
  });
  return search.found ? std::optional(records::decode_site(search.bytes)) : std::nullopt;
}

bool is_in_store(const DeleteRun& run) {
  return base::equals_fold(run.order.mail.server, kStoreOfTheAccount);
}

mail::MailboxDeletion mailbox_request(const DeleteRun& run) {
  Session& session = run.session;
  const std::string& server = run.order.mail.server;
  const auto site = find_exchange_site(session, server);
  if (!site)
    base::raise(base::error::kOutOfBounds, "No site has the Exchange server " + server);
  mail::MailboxDeletion request;
  request.SamName = run.logon_name;
  request.administrator = run.order.mail.administrator;
  request.confirm = run.order.confirm;
  request.silent = run.order.terms.silent;
  request.choose = run.order.mail.choose;
  request.place = {.Server = site->ExchangeServer, .Site = site->ExchangeSite, .Org = site->ExchangeOrg};
  request.path = run.order.mail.path;
  return request;
}

bool delete_mailbox(DeleteRun& run) {
  if (is_in_store(run))
    return mail::DeleteMailbox2000(run.session, run.user);
  return mail::delete_found_mailbox(run.session, run.mail_request, run.mailbox);
}

/// What a rehearsal says instead of deleting; false for a missing mailbox, which would fail.
bool rehearse(DeleteRun& run) {
  Session& session = run.session;
  const bool stored = is_in_store(run);
  if (!session.run.terms.rehearse || !(stored ? mail::has_stored_mailbox(*run.user) : run.mailbox.there))
    return false;
  session.run.terms.rehearse("Delete the mailbox of " + run.logon_name + " on " + run.order.mail.server +
                             (stored ? std::string() : ": " + path_of(run.mailbox)));
  return true;
}

}  // namespace

std::vector<std::string> mailbox_servers(Session& session) {
  std::vector<std::string> servers{std::string(kStoreOfTheAccount)};
  records::RecordFile::open_read(session.platform.files, stores::database_path(session, stores::kSiteFile),
                                 records::kSiteRecordSize)
      .search([&](std::string_view bytes) {
        std::string server;
        if (!records::is_deleted(bytes))
          server = base::trim(records::decode_site(bytes).ExchangeServer);
        if (!server.empty() && std::find(servers.begin(), servers.end(), server) == servers.end())
          servers.push_back(std::move(server));
        return false;
      });
  return servers;
}

void decide_mailbox(DeleteRun& run) {
  Session& session = run.session;
  if (!run.order.mailbox || is_in_store(run))
    return;
  const std::string failure =
      "Nothing Deleted of " + run.display_name + ": Unable to decide which mailbox to delete";
  prepare_failure(session, failure, failure);
  run.mail_request = mailbox_request(run);
  run.mailbox = mail::find_mailbox_to_delete(session, run.mail_request);
}

void delete_mail(DeleteRun& run) {
  Session& session = run.session;
  if (rehearse(run))
    return;
  bool deleted = false;
  base::Trap trap;
  if (!trap([&] { deleted = delete_mailbox(run); }))
    session.log.reason(trap.description());
  session.log.line(deleted ? "Deleted mail account" : "Failed to delete mail account");
  if (deleted)
    return;
  run.Success = false;
  session::LOG_TAB(session, session::kRed, "Failed to delete mail account for " + run.logon_name);
}

}  // namespace twk::lifecycle
