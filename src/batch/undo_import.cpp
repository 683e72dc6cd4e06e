#include "batch/undo_import.hpp"

#include <algorithm>
#include <utility>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/account_by_sid.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "lifecycle/account/account_log.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;

/// What is found out on the way.
struct Undo {
  Session& session;
  bool complete = true;
  bool deleted = true;    ///< the account is gone
  bool foreign = false;   ///< its path leads to somebody else's by now, and so may all that bore its name
  bool doubtful = false;  ///< the account may be the person's, and not the import's

  void keep(const std::string& what, std::string_view why) {
    session.log.reason(what + " is kept", why);
    complete = false;
  }
  /// Runs a step; a failure is told, and what it was about is kept.
  template <typename Step>
  bool attempt(const std::string& what, Step step) {
    base::Trap trap;
    if (trap([&] { step(); }))
      return true;
    keep(what, base::in_words(trap.number(), trap.description()));
    return false;
  }
};

ObjectPtr bind(Session& session, const std::string& path) {
  ObjectPtr object;
  base::Trap missing;
  missing([&] { object = session.platform.directory.GetObject(path); });
  return object;
}

/// Raises for an account that did not come into being while the line was made, by the clock of its server:
/// somebody else may have made it, before or, by hand, when the import had failed. A WinNT domain does not
/// tell.
void require_age_of_line(Undo& undo, const ObjectPtr& account, const RecordedLine& line) {
  constexpr std::int64_t kAllowedSkew = std::int64_t{5} * 60 * 10'000'000;
  constexpr std::int64_t kLongestAnswer = std::int64_t{5} * 60 * 10'000'000;
  std::int64_t made_at = 0;
  base::Trap unknown;
  undo.doubtful = true;
  if (!unknown([&] { made_at = base::to_filetime(account->Get("whenCreated").date()); }))
    base::raise(base::error::kPermissionDenied,
                "the domain does not tell when it was made: delete it if it is the import's");
  if (made_at > line.begun_at + kAllowedSkew + kLongestAnswer)
    base::raise(base::error::kPermissionDenied, "it was made later than by the import: someone else made it");
  undo.doubtful = false;
  if (made_at + kAllowedSkew < line.begun_at)
    base::raise(base::error::kPermissionDenied, "it is older than the import: someone else made it");
}

/// The account that a line made; none when it is gone. One without an identifier, because the run was broken
/// off while it was made, is the one at its path; raises when that may be somebody else's.
ObjectPtr find_account(Undo& undo, const RecordedLine& line) {
  const auto made = std::ranges::find(line.things, "account", &RecordedThing::kind);
  const bool recorded = made != line.things.end();
  const std::string path = recorded ? made->path : line.may_have_account() ? line.begun : std::string();
  ObjectPtr there = path.empty() ? nullptr : bind(undo.session, path);
  if (recorded && !made->sid.empty()) {
    if (there != nullptr && platform::readable_sid(there) == made->sid)
      return there;
    undo.foreign = there != nullptr;
    return account_by_sid(undo.session, made->sid);
  }
  if (there != nullptr && !recorded)
    require_age_of_line(undo, there, line);
  return there;
}

/// A Samba server has no drives: it tells "C:\Users\jo" of a share that was made for "D:\Users\jo".
bool is_folder_as_told(std::string_view told, std::string_view folder) {
  const bool of_samba = base::starts_with_fold(told, "C:\\") && folder.size() > 2 && folder[1] == ':';
  return base::equals_fold(told, folder) || (of_samba && base::equals_fold(told.substr(2), folder.substr(2)));
}

void remove_share(Undo& undo, const RecordedThing& thing) {
  platform::Network& network = undo.session.platform.network;
  const std::string name = "The share \\\\" + thing.server + "\\" + thing.share;
  std::string folder;
  base::Trap missing;
  if (!missing([&] { folder = network.NetShareGetInfo("\\\\" + thing.server, thing.share).shi502_path; }))
    return;
  if (!is_folder_as_told(folder, thing.path))
    return undo.keep(name, "it leads to " + folder + " now");
  if (undo.attempt(name, [&] { network.NetShareDel("\\\\" + thing.server, thing.share); }))
    undo.session.log.line("Deleted Share: " + thing.share);
}

void remove_object(Undo& undo, const ObjectPtr& object, const std::string& what) {
  undo.attempt(what, [&] {
    const ObjectPtr parent = undo.session.platform.directory.GetObject(object->Parent());
    parent->Delete(object->Class(), object->Name());
  });
}

void remove_mailbox(Undo& undo, const RecordedThing& thing) {
  if (const ObjectPtr mailbox = bind(undo.session, thing.path))
    remove_object(undo, mailbox, "The mailbox " + thing.path);
}

void remove_folder(Undo& undo, const RecordedThing& thing) {
  platform::Files& files = undo.session.platform.files;
  const std::string name = "The folder " + thing.path;
  if (!files.exists(thing.path))
    return;
  std::size_t entries = 0;
  if (!undo.attempt(name, [&] { entries = files.list(thing.path).size(); }))
    return;
  if (entries != 0)
    return undo.keep(name, "someone has put " + base::to_text(static_cast<std::int64_t>(entries)) +
                               (entries == 1 ? " entry into it" : " entries into it"));
  if (undo.attempt(name, [&] { files.remove_directory(thing.path); }))
    undo.session.log.line("Deleted Directory: " + thing.path);
}

/// The name is free again for the next user, and nobody sees the old one.
void forget_account(Session& session, const ObjectPtr& account, const std::string& dn) {
  const bool active_directory = session::is_active_directory(session);
  lifecycle::remove_from_views(
      session, active_directory ? "LDAP://" + session.DomainName + "/" + dn : account->Name());
}

void remove_account(Undo& undo, const ObjectPtr& account, const std::string& user) {
  const std::string dn = platform::readable_text(account, "distinguishedName");
  const bool before = std::exchange(undo.complete, true);
  remove_object(undo, account, "The account " + user);
  undo.deleted = undo.complete;
  undo.complete = undo.complete && before;
  if (!undo.deleted)
    return;
  undo.session.log.line("Deleted User: " + account->ADsPath());
  forget_account(undo.session, account, dn);
}

void for_each(const RecordedLine& line, std::string_view kind, const auto& step) {
  std::for_each(line.things.rbegin(), line.things.rend(), [&](const RecordedThing& thing) {
    if (thing.kind == kind)
      step(thing);
  });
}

}  // namespace

bool has_account(Session& session, const RecordedLine& line) {
  Undo undo{session};
  ObjectPtr account;
  base::Trap of_others;
  of_others([&] { account = find_account(undo, line); });
  return account != nullptr || undo.doubtful;
}

session::RunOutcome take_back(Session& session, const RecordedLine& line) {
  session::begin_outcome(session.log);
  session.log.begin_block();
  session.log.line("Taking back the import of: " + line.user);
  Undo undo{session};
  ObjectPtr account;
  undo.deleted = undo.attempt("The account " + line.user, [&] { account = find_account(undo, line); });
  if (undo.foreign)
    undo.keep("What bore the name " + line.user, "another account has that path by now");
  {
    platform::WriteBatch batch(session.platform.directory);
    const bool own = undo.deleted && !undo.foreign;
    if (own) {
      for_each(line, "share", [&](const RecordedThing& thing) { remove_share(undo, thing); });
      for_each(line, "mailbox", [&](const RecordedThing& thing) { remove_mailbox(undo, thing); });
    }
    if (account != nullptr)
      remove_account(undo, account, line.user);
    if (own && undo.deleted)
      for_each(line, "folder", [&](const RecordedThing& thing) { remove_folder(undo, thing); });
    undo.attempt("What was changed", [&] { batch.commit(); });
  }
  session.log.close();
  const std::string_view light = !undo.deleted   ? session::kRed
                                 : undo.complete ? session::kGreen
                                                 : session::kYellow;
  session::LOG_TAB(session, light, line.user + (undo.deleted ? " Taken Back " : " Not Taken Back "));
  session::RunOutcome outcome = session::take_outcome(session.log);
  outcome.done = undo.deleted;
  return outcome;
}

session::RunOutcome take_back_recorded(Session& session, const RecordedRun& run, const RecordedLine& line) {
  session::RunOutcome outcome = take_back(session, line);
  if (!outcome.done)
    return outcome;
  base::Trap trap;
  if (!trap([&] {
        note_in_record(session.platform.files, run.path,
                       {{"line", std::int64_t{line.number}}, {"ended", std::string(kTakenBack)}});
      }))
    session::LOG_TAB(session, session::kYellow, "Import files: " + trap.description());
  return outcome;
}

void undo_import(Session& session, const RecordedRun& run,
                 const std::function<bool(const UndoneLine&)>& done) {
  for (auto line = run.lines.rbegin(); line != run.lines.rend(); ++line) {
    const bool made = !line->things.empty() || line->may_have_account();
    if (!made || line->ended == kTakenBack)
      continue;
    const UndoneLine undone{*line, take_back_recorded(session, run, *line)};
    if (!done(undone))
      return;
  }
}

std::string undo_question(const RecordedRun& run) {
  const auto count = [&run](std::string_view kind, const char* plural) {
    std::int64_t number = 0;
    for (const RecordedLine& line : run.lines) {
      if (line.ended == kTakenBack)
        continue;
      number += std::ranges::count(line.things, kind, &RecordedThing::kind);
    }
    return base::to_text(number) + " " + std::string(kind) + (number == 1 ? "" : plural);
  };
  return "Take back the import of " + run.order.text("begun") + ": " + count("account", "s") + ", " +
         count("folder", "s") + ", " + count("share", "s") + " and " + count("mailbox", "es") + "?";
}

std::string refused_record(const Session& session, const RecordedRun& run) {
  const std::string domain = run.order.text("domain");
  if (base::equals_fold(domain, session.DomainName))
    return {};
  return "The import was into the domain " + domain + ", this is " + session.DomainName;
}

}  // namespace twk::batch
