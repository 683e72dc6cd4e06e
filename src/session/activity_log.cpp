#include "session/activity_log.hpp"

#include <algorithm>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/text_file.hpp"

namespace twk::session {
namespace {

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

void ActivityLog::open() {
  if (file_ || rehearses_)
    return;
  base::Trap trap;
  if (!trap([&] { file_ = services_.files.open_append(path()); }))
    fail(trap.description());
}

void ActivityLog::begin_block() {
  reasons_.clear();
  open();
  if (!file_)
    return;
  gather(true);
  line(kAsterisks);
  line(date_and_time(services_.clock));
  line("User:" + services_.environment.variable("USERNAME"));
  gather(false);
}

void ActivityLog::line(std::string_view text) {
  if (!file_)
    return;
  const std::string shown = concealed(text);
  follow_block(shown);
  if (gathers_)
    gathered_ += log_line(shown);
  else
    write(log_line(shown));
}

void ActivityLog::follow_block(std::string_view text) {
  if (block_.needs(text) && block_.take(text_in_log(text)))
    block_has_row_ = false;
}

void ActivityLog::write(std::string_view text) {
  base::Trap trap;
  if (!trap([&] { file_->write(text); }))
    fail(trap.description());
}

void ActivityLog::gather(bool on) {
  write_gathered();
  gathers_ = on && file_;
}

void ActivityLog::write_gathered() {
  const std::string text = std::exchange(gathered_, {});
  if (file_ && !text.empty())
    write(text);
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

std::vector<LogRow> ActivityLog::take_rows() {
  return std::exchange(added_, {});
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
  gathers_ = false;
  block_ = {};
  add_row(kYellow, "Cannot write to Log.txt: " + reason);
}

void ActivityLog::close() {
  gather(false);
  file_.reset();
}

std::string ActivityLog::add_row(std::string_view severity, std::string_view message, std::string key) {
  if (severity != kGreen && severity != kYellow && severity != kRed)
    throw base::RuntimeError(base::error::kOutOfBounds, "No such light: " + std::string(severity));
  if (severity == kRed)
    services_.dialogs.beep();
  const std::vector<std::string> reasons = take_reasons(severity != kGreen);
  std::string text = concealed(severity == kGreen ? std::string(message) : with_reasons(message, reasons));
  if (rehearses_)
    return text;
  added_.push_back({std::string(severity), text});
  rows_.add(std::move(key), text, std::string(severity), columns_of_row());
  return text;
}

std::vector<std::string> ActivityLog::columns_of_row() {
  std::vector<std::string> columns = {date_and_time(services_.clock)};
  if (!block_.name().empty() && (file_ || !block_has_row_))
    columns.push_back(block_.name());
  block_has_row_ = true;
  return columns;
}

std::string date_and_time(platform::Clock& clock) {
  const base::Date now = clock.now();
  return base::format_date(now) + " " + base::format_time(now);
}

}  // namespace twk::session
