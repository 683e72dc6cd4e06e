#include "cli/user_runs.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/interrupt.hpp"
#include "cli/progress.hpp"
#include "lifecycle/folder_use.hpp"

namespace twk::cli {
namespace {

using session::Session;

/// The row of the log tab that tells what came of one user; none when nothing was told.
const controls::ListRow* told_since(const Session& session, std::size_t rows) {
  const controls::ListView& log = session.form1.ListView1;
  for (std::size_t i = rows; i + 1 < log.size(); ++i) {
    if (log.at(i).icon != session::kGreen)
      complain(log.at(i).icon + ": " + std::string(base::trim(log.at(i).text)));
  }
  return log.size() == rows ? nullptr : &log.at(log.size() - 1);
}

int tell(Context& context, const std::string& name, const controls::ListRow* row, bool done) {
  if (row == nullptr) {
    complain(name + ": nothing was done.");
    return kExitYellow;
  }
  const std::string message(base::trim(row->text));
  context.output().result({{"user", name}, {"light", row->icon}, {"message", message}, {"done", done}},
                          context.output().light(row->icon) + "  " + message);
  return exit_code_of_light(row->icon);
}

void print_step(Context& context, const std::string& step) {
  context.output().result({{"step", step}}, step);
}

}  // namespace

std::string key_of_user(Context& context, const std::string& name) {
  const Domain domain = context.domain();
  const std::string found = locate_user(domain, name);
  return domain.active_directory ? "LDAP://" + domain.name + "/" + found : found;
}

int run_for_users(Context& context, Session& session, const std::vector<std::string>& names,
                  const std::function<bool(const std::string& key)>& operation) {
  std::vector<std::string> keys;
  keys.reserve(names.size());
  for (const std::string& name : names)
    keys.push_back(key_of_user(context, name));
  const lifecycle::KnownFolders known(session);
  Progress progress;
  context.dialogs().before_text([&] { progress.clear(); });
  context.dialogs().on_events([&] { session.import.ImportStopped = interrupted(); });
  const auto step = session.multi_user.Label3.caption.watch(
      [&] { progress.show(session.multi_user.Label3.caption.get()); });
  const auto file = session.multi_user.progress.caption.watch(
      [&] { progress.show(session.multi_user.progress.caption.get()); });
  int exit_code = kExitGreen;
  for (std::size_t i = 0; i < keys.size() && !interrupted(); ++i) {
    const std::size_t rows = session.form1.ListView1.size();
    session.form1.StatusBar1.panel1 = std::string();
    const bool done = operation(keys[i]);
    progress.clear();
    // Of a run the status bar holds only what failed on files.
    if (!session.form1.StatusBar1.panel1.get().empty()) {
      complain(session.form1.StatusBar1.panel1.get());
      exit_code = std::max(exit_code, kExitYellow);
    }
    if (!session.runs.rehearse || session.form1.ListView1.size() == rows ||
        session.form1.ListView1.at(session.form1.ListView1.size() - 1).icon == session::kRed)
      exit_code = std::max(exit_code, tell(context, names[i], told_since(session, rows), done));
  }
  context.dialogs().before_text({});
  context.dialogs().on_events({});
  if (interrupted()) {
    complain("stopped");
    exit_code = std::max(exit_code, kExitYellow);
  }
  return exit_code;
}

void add_even_if_shared(Command& command, bool& even_if_shared) {
  command.add_flag("--even-if-shared", even_if_shared,
                   "Touch folders and shares even if other accounts or shares use them as well");
}

session::Consent consent_of(bool given) {
  return given ? session::Consent::kYes : session::Consent::kNo;
}

void print_steps(Context& context) {
  context.rehearse([&context](const std::string& step) { print_step(context, step); });
}

void tell_trees(Context& context, Session& session) {
  session.runs.rehearse = [&context](const std::string& step) { print_step(context, step); };
}

}  // namespace twk::cli
