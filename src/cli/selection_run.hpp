#pragma once

#include <functional>

#include "batch/run_controls.hpp"
#include "cli/progress.hpp"
#include "cli/selection_arguments.hpp"

namespace twk::cli {

/// What a run over users came to.
struct RunCounts {
  std::size_t done = 0;
  std::size_t failed = 0;
  std::size_t unknown = 0;  ///< names that nobody has
  bool whole = true;        ///< no file of names was empty

  [[nodiscard]] std::size_t all() const { return done + failed + unknown; }
  /// GREEN when all came through, RED when none did, YELLOW for what lies between and when there was nobody.
  [[nodiscard]] std::string_view light() const;
};

/// "CN=…" behind the domain of an ADsPath; nothing in a WinNT domain.
std::string dn_of_user(const session::Session& session, const std::string& path);
/// The counts as the last result, { light, done, failed, unknown, message }; gives the exit code.
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

/// Fills the selection and runs a function of the multi-user window over it: gives it the hooks to pass on,
/// which let it go on behind a user who failed. Each user's outcome is a result, { user, dn, light, message
/// }, and the counts are the last one, { light, done, failed, unknown, message }. A terminal shows how far it
/// is; Ctrl-C stops behind the user in hand, and the counts say so.
///
/// The exit code is that of the counts.
int run_over_selection(Context& context, session::Session& session, const SelectionArguments& arguments,
                       const std::function<void(const batch::RunHooks& hooks)>& run);

/// Lets Ctrl-C in, and tells whether to go on: for functions that ask before each user.
std::function<bool()> until_interrupted(session::Session& session);

}  // namespace twk::cli
