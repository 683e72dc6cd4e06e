#include "windows/multi_user/chosen_users.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "windows/account/account_view.hpp"
#include "windows/account/run_history.hpp"
#include "windows/multi_user/selection_aside.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

/// Selects the users themselves, for as long as it exists.
class OnlyThese {
 public:
  OnlyThese(Desktop& session, const std::vector<std::string>& keys)
      : session_(session), aside_(session.multi_user) {
    controls::ListView& selection = session.domain.selection;
    for (const std::string& key : keys) {
      const controls::TreeNode* const node = session.domain.tree.find(key);
      if (node != nullptr && node->image == "USER" && selection.find_key(key) == nullptr)
        selection.add(session::is_active_directory(session) ? key : node->text, node->text, "USER");
    }
  }
  OnlyThese(const OnlyThese&) = delete;
  OnlyThese& operator=(const OnlyThese&) = delete;
  // They were never taken from the list of users, so that none goes back to it.
  ~OnlyThese() { session_.domain.selection.clear(); }

 private:
  Desktop& session_;
  SelectionAside aside_;
};

/// What became of the users, one after the other.
struct Course {
  std::size_t users = 0;
  std::size_t seen = 0;
  std::size_t done = 0;
  std::string last;  ///< what was told of the last one
  std::vector<batch::AccountChange> changes;
};

batch::RunHooks hooks_of(Desktop& session, const ChosenRun& order, session::RunView& view, Course& course) {
  batch::RunHooks hooks;
  hooks.goes_on_after_failure = true;
  hooks.changed = [&course](const batch::AccountChange& change) { course.changes.push_back(change); };
  hooks.done = [&](const batch::UserOutcome& outcome) {
    ++course.seen;
    course.last = std::string(base::trim(outcome.message));
    view.files(course.last, static_cast<int>(course.seen * 100 / course.users));
    if (!outcome.done) {
      session::LOG_TAB(session, session::kRed, outcome.user + ": " + course.last);
      return;
    }
    ++course.done;
    if (order.after)
      order.after(outcome);
  };
  return hooks;
}

void tell(Desktop& session, const ChosenRun& order, Course& course, bool whole) {
  const std::string count = order.done + ": " + std::to_string(course.done) + " of " +
                            std::to_string(course.users) + (course.users == 1 ? " user" : " users");
  const bool failed = course.done < course.users;
  const std::string told = course.users == 1 ? course.last : count;
  if (!failed || course.users > 1)
    log_run(session, failed ? session::kYellow : session::kGreen, told + (whole ? "" : ", stopped"),
            std::move(course.changes));
  session.status.panel1 = told + (whole ? "" : ", stopped") + (failed ? ". The log has the reasons." : ".");
}

void run(Desktop& session, const ChosenRun& order) {
  const Hourglass hourglass(session.form1);
  AccountView view(session);
  const session::RunScope scope(session, view);
  Course course;
  course.users = session.domain.selection.size();
  const batch::RunHooks hooks = hooks_of(session, order, view, course);
  const bool many = course.users > 1;
  bool whole = false;
  if (many)
    view.begin_files();
  base::Trap trap;
  trap([&] { whole = order.run(view, hooks); });
  if (many)
    view.end_files();
  if (trap.number() != 0) {
    course.last = base::in_words(trap.number(), trap.description());
    session.log.close();
    session::LOG_TAB(session, session::kRed, course.last);
  }
  tell(session, order, course, whole || trap.number() != 0);
}

}  // namespace

void run_over_users(Desktop& session, const std::vector<std::string>& keys, const ChosenRun& order) {
  const OnlyThese these(session, keys);
  const std::size_t users = session.domain.selection.size();
  if (users == 0)
    return;
  if (users > 1 && !is_run_wanted(session, order.preview)) {
    session.status.panel1 = "Nothing was done.";
    return;
  }
  run(session, order);
}

}  // namespace twk::windows
