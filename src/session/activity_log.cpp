#include "session/activity_log.hpp"

#include <algorithm>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::session {
namespace {

std::string log_path(const Session& session) {
  return session.dbpath + "Log.txt";
}

/// A text that ends in a blank keeps it.
std::string with_reasons(std::string_view message, const std::vector<std::string>& reasons) {
  constexpr std::size_t kMost = 5;
  std::string text(message);
  const char* separator = message.ends_with(' ') ? "- " : ": ";
  for (std::size_t i = 0; i < std::min(reasons.size(), kMost); ++i) {
    text += separator + reasons[i];
    separator = "; ";
  }
  return reasons.size() > kMost ? text + "; and " + std::to_string(reasons.size() - kMost) + " more" : text;
}

}  // namespace

std::string LOG_TAB(Session& session, std::string_view severity, std::string_view message) {
  if (severity != kGreen && severity != kYellow && severity != kRed) {
    throw base::RuntimeError(base::error::kOutOfBounds, "No such light: " + std::string(severity));
  }
  if (severity == kRed)
    session.platform.dialogs.beep();
  const std::vector<std::string> reasons = session.log.take_reasons(severity != kGreen);
  std::string text =
      session.log.concealed(severity == kGreen ? std::string(message) : with_reasons(message, reasons));
  session.form1.ListView1.add({}, text, std::string(severity), {date_and_time(session)});
  return text;
}

void ActivityLog::open(Session& session) {
  session_ = &session;
  if (file_)
    return;
  base::Trap trap;
  if (!trap([&] { file_ = session.platform.files.open_append(log_path(session)); }))
    fail(trap.description());
}

void ActivityLog::begin_block(Session& session) {
  reasons_.clear();
  open(session);
  line(kAsterisks);
  line(date_and_time(session));
  line("User:" + session.platform.environment.variable("USERNAME"));
}

void ActivityLog::line(std::string_view text) {
  if (!file_)
    return;
  base::Trap trap;
  if (!trap([&] { file_->write(log_line(concealed(text))); }))
    fail(trap.description());
}

void ActivityLog::reason(std::string_view text) {
  line(text);
  remember(text);
}

void ActivityLog::reason(std::string_view text, std::string_view why) {
  line(text);
  line(why);
  remember(why.empty() ? std::string(text) : std::string(text) + ": " + std::string(why));
}

void ActivityLog::remember(std::string_view text) {
  const std::string shown = concealed(text);
  const std::string_view trimmed = base::trim(shown);
  if (!trimmed.empty() && std::find(reasons_.begin(), reasons_.end(), trimmed) == reasons_.end())
    reasons_.emplace_back(trimmed);
}

std::vector<std::string> ActivityLog::take_reasons(bool told) {
  if (told)
    told_.insert(told_.end(), reasons_.begin(), reasons_.end());
  return std::exchange(reasons_, {});
}

std::vector<std::string> ActivityLog::take_told() {
  return std::exchange(told_, {});
}

std::string ActivityLog::concealed(std::string_view text) const {
  constexpr std::size_t kShortest = 6;
  std::string shown(text);
  if (secret_.size() < kShortest)
    return shown;
  constexpr std::string_view kStars = "********";
  for (std::size_t at = shown.find(secret_); at != base::npos; at = shown.find(secret_, at + kStars.size()))
    shown.replace(at, secret_.size(), kStars);
  return shown;
}

void ActivityLog::fail(const std::string& reason) {
  file_.reset();
  LOG_TAB(*session_, kYellow, "Cannot write to Log.txt: " + reason);
}

void ActivityLog::close() {
  file_.reset();
}

std::string date_and_time(Session& session) {
  const base::Date now = session.platform.clock.now();
  return base::format_date(now) + " " + base::format_time(now);
}

void write_run_file(Session& session, RunFile& file, std::string_view text) {
  base::Trap trap;
  if (trap([&] { file.line(text); }))
    return;
  file.close();
  LOG_TAB(session, kYellow, "Import files: " + trap.description());
}

void Clear_log(Session& session) {
  session.form1.ListView1.clear();
}

void Log_Detail(Session& session) {
  std::string path = log_path(session);
  std::replace(path.begin(), path.end(), '\\', '/');
  const std::string failure = session.platform.process.run({"xdg-open", path}, false, 1).failure;
  if (!failure.empty())
    session.form1.StatusBar1.panel1 = "Log.txt cannot be shown: " + failure;
}

void Delete_Log_File(Session& session) {
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      "Sure to delete the log file", platform::Buttons::kYesNo, platform::Icon::kQuestion, "Delete Log File");
  if (answer != platform::Answer::kYes)
    return;
  base::Trap trap;
  trap([&] { session.platform.files.remove(log_path(session)); });
}

}  // namespace twk::session
