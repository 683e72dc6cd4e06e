#include "windows/multi_user/run_watch.hpp"

#include "base/text.hpp"
#include "windows/account/run_history.hpp"
#include "windows/multi_user/selection_aside.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::windows {
namespace {

/// A first user says little about the others.
constexpr std::size_t kFirstGuess = 3;

std::string time_text(std::chrono::seconds left) {
  const auto seconds = left.count();
  if (seconds < 60)
    return std::to_string(seconds) + (seconds == 1 ? " second" : " seconds");
  const auto minutes = (seconds + 30) / 60;
  return std::to_string(minutes) + (minutes == 1 ? " minute" : " minutes");
}

}  // namespace

std::string pace_text(std::size_t seen, std::size_t users, std::size_t failed, std::chrono::seconds elapsed) {
  std::string text = std::to_string(seen) + (users == 0 ? " done" : " of " + std::to_string(users));
  if (failed > 0)
    text += ", " + std::to_string(failed) + " failed";
  if (seen >= kFirstGuess && seen < users)
    text += ", about " + time_text(elapsed * (users - seen) / seen) + " left";
  return text;
}

RunWatch::RunWatch(Desktop& session, void (*start)(Desktop&))
    : session_(session), users_(session.run_preview.asks ? session.run_preview.users : 0) {
  RunCourse& course = session.multi_user.course;
  course.pace.caption = std::string();
  course.failures.clear();
  course.start = start;
}

batch::RunHooks RunWatch::hooks() {
  batch::RunHooks hooks;
  hooks.done = [this](const batch::UserOutcome& outcome) { take(outcome); };
  hooks.changed = [this](const batch::AccountChange& change) { changes_.push_back(change); };
  return hooks;
}

void RunWatch::log(std::string_view what) {
  if (changes_.empty())
    return;
  const std::string text = std::string(what) + ": " + std::to_string(changes_.size()) +
                           (changes_.size() == 1 ? " user" : " users");
  log_run(session_, session::kGreen, text, std::move(changes_));
  changes_.clear();
}

void RunWatch::take(const batch::UserOutcome& outcome) {
  RunCourse& course = session_.multi_user.course;
  ++seen_;
  const std::string& key = session::is_active_directory(session_) ? outcome.path : outcome.user;
  if (!outcome.done && course.failures.find_key(key) == nullptr)
    course.failures.add(key, outcome.user, outcome.light, {std::string(base::trim(outcome.message))});
  const auto elapsed = std::chrono::steady_clock::now() - begun_;
  course.pace.caption = pace_text(seen_, users_, course.failures.size(),
                                  std::chrono::duration_cast<std::chrono::seconds>(elapsed));
  if (users_ > 0)
    session_.multi_user.ProgressBar1.value = static_cast<int>(seen_ * 100 / users_);
}

void retry_failed_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  if (is_running(window) || window.course.failures.empty())
    return;
  put_back(window, rows_of(window.ListView1));
  window.ListView1.clear();
  std::vector<const controls::ListRow*> listed;
  for (const controls::ListRow* const failed : rows_of(window.course.failures)) {
    if (const controls::ListRow* const row = window.ListView2.find_key(failed->key))
      listed.push_back(row);
    else
      window.ListView1.add(failed->key, failed->text, "USER");
  }
  controls::move_rows(window.ListView2, listed, window.ListView1);
  window.course.start(session);
}

}  // namespace twk::windows
