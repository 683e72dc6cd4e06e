#pragma once

#include <functional>

#include "batch/run_controls.hpp"
#include "cli/frame/selection_arguments.hpp"
#include "cli/terminal/progress.hpp"

namespace twk::cli {

/// What a run over users came to. A user counts by what came of it, and the light tells how.
struct RunCounts {
  std::size_t done = 0;
  std::size_t warnings = 0;  ///< of those that are done
  std::size_t failed = 0;
  std::size_t unknown = 0;  ///< names that nobody has
  bool whole = true;        ///< no file of names was empty

  std::string_view worst = session::kGreen;

  void add(std::string_view light, bool is_done);
  [[nodiscard]] std::size_t all() const { return done + failed + unknown; }
  /// The worst light of a user. A name that nobody has, a Ctrl-C and a run without anybody make it YELLOW,
  /// and nobody but such names RED.
  [[nodiscard]] std::string_view light() const;
};

/// "CN=…" behind the domain of an ADsPath; nothing in a WinNT domain.
std::string dn_of_user(const session::Session& session, const std::string& path);
/// The counts as the last result, { light, done, warned, failed, unknown, message }; gives the exit code.
int tell_counts(Context& context, const RunCounts& counts, bool rehearsed = false);
/// Shows on a terminal how far a run of the window is, and lets Ctrl-C stop it, until it goes.
class RunProgress {
 public:
  RunProgress(Context& context, session::Session& session);
  RunProgress(const RunProgress&) = delete;
  RunProgress& operator=(const RunProgress&) = delete;
  ~RunProgress();
  /// Takes the line away, so that a result can be written.
  void clear() { progress_.clear(); }

 private:
  Context& context_;
  Progress progress_;
  controls::Watch step_;
  controls::Watch file_;
};

/// The light of one about whom nothing was done is YELLOW.
std::string_view light_of(const batch::UserOutcome& outcome);
/// Runs a function of the multi-user window over the selection, gives it the hooks to pass on, and prints
/// what came of each user; of a rehearsal only what would not come through. Gives `counts` with those users
/// in them.
RunCounts run_counted(Context& context, session::Session& session, RunCounts counts,
                      const std::function<void(const batch::RunHooks& hooks)>& run,
                      const std::function<void(const batch::UserOutcome& outcome)>& print);

/// Fills the selection and runs a function of the multi-user window over it: gives it the hooks to pass on,
/// which let it go on behind a user who failed. Each user's outcome is a result, { user, dn, light, message
/// }, and the counts are the last one, see `tell_counts`. A terminal shows how far it
/// is; Ctrl-C stops behind the user in hand, and the counts say so.
///
/// The exit code is that of the counts.
int run_over_selection(Context& context, session::Session& session, const SelectionArguments& arguments,
                       const std::function<void(const batch::RunHooks& hooks)>& run);

/// Lets Ctrl-C in, and tells whether to go on: for functions that ask before each user.
std::function<bool()> until_interrupted(session::Session& session);

}  // namespace twk::cli
