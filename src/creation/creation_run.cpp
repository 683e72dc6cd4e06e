#include "creation/creation_run.hpp"

#include "base/text.hpp"
#include "format/filling.hpp"
#include "session/session.hpp"

namespace twk::creation {

namespace {

std::string trimmed(std::string_view text) {
  return std::string(base::trim(text));
}

}  // namespace

CreationRun::CreationRun(session::Session& owner, NewUserRequest asked, CreationView& watcher)
    : session(owner), request(std::move(asked)), view(watcher), batch(owner.platform.directory) {}

TemplateValues values_of(const records::TemplateRecord& record) {
  return {trimmed(record.ProfileDirPath),    trimmed(record.HomeDirPath),    trimmed(record.ProfilePath),
          trimmed(record.HomeDir),           trimmed(record.ProfileShare),   trimmed(record.HomeShare),
          trimmed(record.ProfileSharePoint), trimmed(record.HomeSharePoint), trimmed(record.LogonScript),
          trimmed(record.HomeDrive),         trimmed(record.PrimaryGroup)};
}

SiteValues values_of(const records::SiteRecord& record) {
  return {trimmed(record.NTServer),    trimmed(record.ExchangeServer), trimmed(record.ExchangeSite),
          trimmed(record.ExchangeOrg), trimmed(record.MailStore),      record.Exchange2000};
}

void log(CreationRun& run, std::string_view text) {
  run.session.log.line(text);
}

void warn(CreationRun& run, std::string_view text) {
  run.session.platform.dialogs.beep();
  run.session.log.reason(text);
  run.RunWarning = 2;
}

void warn(CreationRun& run, std::string_view text, std::string_view why) {
  run.session.platform.dialogs.beep();
  run.session.log.reason(text, why);
  run.RunWarning = 2;
}

const std::string& container_key(const CreationRun& run) {
  return run.request.CopyUser ? run.request.ParentNodeKey : run.request.SelectedNodeKey;
}

platform::ObjectPtr bind_once(CreationRun& run, const std::string& path) {
  session::Session& session = run.session;
  if (!session.import.Importing)
    return session.platform.directory.GetObject(path);
  platform::ObjectPtr& bound = session.import.lookups.bound[path];
  if (bound == nullptr)
    bound = session.platform.directory.GetObject(path);
  return bound;
}

std::string expand_row_value(CreationRun& run, std::string_view value) {
  return format::Filling(run.session, std::string(value))
      .variables()
      .names(run.request.FirstName, run.request.MiddleName, run.request.LastName)
      .tag("%Domain%", run.session.DomainName)
      .tag("%Account%", run.SamName)
      .import_fields()
      .take();
}

}  // namespace twk::creation
