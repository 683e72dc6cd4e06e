#pragma once

#include <functional>

#include "batch/run_controls.hpp"
#include "cli/frame/selection_arguments.hpp"
#include "cli/terminal/progress.hpp"

namespace twk::cli {

/// The counts of a run over users. A user is counted by outcome, and the light shows how it went.
struct RunCounts {
  std::size_t done = 0;
  std::size_t warnings = 0;  ///< among those done
  std::size_t failed = 0;
  std::size_t unknown = 0;  ///< unknown names
  bool whole = true;        ///< no file of names was empty

  std::string worst{session::kGreen};

  void add(std::string_view light, bool is_done);
  [[nodiscard]] std::size_t all() const { return done + failed + unknown; }
  /// The worst light of a user. An unknown name, Ctrl-C and a run without users make it YELLOW; a run with
  /// nothing but unknown names makes it RED.
  [[nodiscard]] std::string_view light() const;
};

/// "CN=…" after the domain of an ADsPath; nothing in a WinNT domain.
std::string dn_of_user(const session::Session& session, const std::string& path);
/// The counts as the last result, { light, done, warned, failed, unknown, message }; returns the exit code.
int tell_counts(Context& context, const RunCounts& counts, bool rehearsed = false);

/// A run on a terminal: a line that shows its progress. Ctrl-C stops the run.
class ConsoleView : public session::RunView {
 public:
  ConsoleView(Context& context, session::Session& session);
  ConsoleView(const ConsoleView&) = delete;
  ConsoleView& operator=(const ConsoleView&) = delete;
  ~ConsoleView() override;

  void status(std::string_view text) override;
  void step(std::string_view caption) override { progress_.show(caption); }
  void progress(int /*percent*/) override {}
  void files(std::string_view text, int /*percent*/) override { progress_.show(text); }
  bool going_on() override;

  /// Removes the line, so that a result can be written.
  void clear() { progress_.clear(); }

 private:
  Context& context_;
  session::Session& session_;
  Progress progress_;
};

/// A run over the selection, with the view that it reports to and the hooks that let it go on after a
/// failure.
using SelectionRun = std::function<void(session::RunView& view, const batch::RunHooks& hooks)>;

/// The light of a user about whom nothing was done is YELLOW.
std::string_view light_of(const batch::UserOutcome& outcome);
/// Runs over the selection and prints the outcome of each user; for a rehearsal only what would fail. Returns
/// `counts` with those users added.
RunCounts run_counted(Context& context, session::Session& session, RunCounts counts, bool rehearsed,
                      const SelectionRun& run,
                      const std::function<void(const batch::UserOutcome& outcome)>& print);

/// Fills the selection and runs over it. Each user's outcome is a result, { user, dn, light, message
/// }, and the counts are the last one, see `tell_counts`. A terminal shows the progress; Ctrl-C
/// stops after the current user, and the counts say so.
///
/// The exit code is that of the counts.
int run_over_selection(Context& context, session::Session& session, const SelectionArguments& arguments,
                       bool rehearsed, const SelectionRun& run);

}  // namespace twk::cli
