#include "batch/recorded_import.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "resources/share502.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using records::JsonLine;

std::string kind_of(creation::MadeThing::Kind kind) {
  switch (kind) {
    case creation::MadeThing::Kind::kAccount:
      return "account";
    case creation::MadeThing::Kind::kFolder:
      return "folder";
    case creation::MadeThing::Kind::kShare:
      return "share";
    case creation::MadeThing::Kind::kGroup:
      return "group";
    case creation::MadeThing::Kind::kMailbox:
      return "mailbox";
  }
  return {};
}

}  // namespace

template <typename Step>
void RecordedImport::keep(Step step) {
  if (!remaining_)
    return;
  base::Trap trap;
  if (trap([&] { step(*remaining_); }))
    return;
  remaining_.reset();
  session::LOG_TAB(session_, session::kYellow, "Import files: " + trap.description());
}

void RecordedImport::write(const JsonLine& entry) {
  if (!record_)
    return;
  base::Trap trap;
  if (!trap([&] { record_->write(entry.bytes()); }))
    stop(trap.description());
}

void RecordedImport::stop(const std::string& reason) {
  record_.reset();
  session_.import.ImportStopped = true;
  session::LOG_TAB(
      session_, session::kYellow,
      "Import files: " + reason + ". The import stops, as nobody could go on with it or take it back.");
}

void RecordedImport::open(const JsonLine& order, std::string_view bytes) {
  platform::Files& files = session_.platform.files;
  remaining_ = std::make_unique<RemainingLines>();
  keep([&](RemainingLines& lines) { lines.open(files, session_.import.remaining_path, bytes); });
  base::Trap trap;
  if (!trap([&] { record_ = files.open_append(session_.import.record_path); }))
    stop(trap.description());
  write(order);
}

void RecordedImport::begin_line(std::int32_t number, std::string_view raw) {
  number_ = number;
  raw_ = raw;
  made_account_ = false;
  lacks_files_ = false;
}

void RecordedImport::pass_line(std::int32_t number, std::string_view raw) {
  write({{"line", std::int64_t{number}}, {"ended", std::string(kMadeBefore)}});
  keep([&](RemainingLines& lines) { lines.take(raw); });
}

void RecordedImport::end_line(const session::CreationOutcome& outcome) {
  if (record_) {
    JsonLine entry{{"line", number_},
                   {"user", outcome.user},
                   {"ended", outcome.is_known        ? std::string("known")
                             : outcome.light.empty() ? std::string("refused")
                                                     : outcome.light}};
    if (outcome.is_unsure)
      entry.add("unsure", true);
    const std::string server(base::trim(session_.ActiveSite.NTServer));
    if (made_account_ && lacks_files_ && !server.empty() &&
        resources::is_without_answer(session_, server, "IPC$"))
      entry.add("unfinished", true);
    write(entry);
  }
}

void RecordedImport::finish(std::string_view end) {
  keep([](RemainingLines& lines) { lines.finish(); });
  write({{"ended", std::string(end)}});
  record_.reset();
}

void RecordedImport::names(const creation::NewUserRequest& request) {
  watcher_.names(request);
}

void RecordedImport::stage(creation::Stage stage, creation::StageState state) {
  using creation::Stage;
  const bool is_of_files =
      stage == Stage::kDirectories || stage == Stage::kShares || stage == Stage::kPermissions;
  lacks_files_ = lacks_files_ || (is_of_files && state != creation::StageState::kCompleted);
  watcher_.stage(stage, state);
}

void RecordedImport::makes_account(std::string_view account, std::string_view path) {
  watcher_.makes_account(account, path);
  if (record_)
    write({{"line", number_},
           {"user", std::string(account)},
           {"begins", std::string(path)},
           {"utc", base::to_filetime(session_.platform.clock.utc_now())}});
}

void RecordedImport::makes(const creation::MadeThing& thing) {
  watcher_.makes(thing);
  write({{"line", number_}, {"makes", kind_of(thing.kind)}, {"path", thing.path}});
}

void RecordedImport::made(const creation::MadeThing& thing) {
  watcher_.made(thing);
  const bool is_account = thing.kind == creation::MadeThing::Kind::kAccount;
  made_account_ = made_account_ || is_account;
  if (record_) {
    JsonLine entry{{"line", number_}, {"made", kind_of(thing.kind)}, {"path", thing.path}};
    if (is_account)
      entry.add("sid", platform::readable_sid(thing.account));
    if (thing.kind == creation::MadeThing::Kind::kShare) {
      entry.add("server", thing.server);
      entry.add("share", thing.share);
    }
    write(entry);
  }
  if (is_account)
    keep([&](RemainingLines& lines) { lines.take(raw_); });
}

}  // namespace twk::batch
