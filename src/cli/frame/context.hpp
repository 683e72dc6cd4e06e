#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "batch/account_change.hpp"
#include "cli/frame/directory_reader.hpp"
#include "cli/frame/global_options.hpp"
#include "cli/terminal/console_dialogs.hpp"
#include "cli/terminal/output.hpp"
#include "session/session.hpp"
#include "world/world.hpp"

namespace twk::lifecycle {
class Rehearsal;
}

namespace twk::cli {

class Command;

/// How much of a session a command needs.
enum class Depth {
  kSettings,   ///< the settings are read
  kDatabases,  ///< the database directory is read, too
  kNamed,      ///< so are users, units and groups of the domain, when they are named
  kUnits,      ///< the tree contains the domain, groups are read when they are named
  kDomain,     ///< the tree and the lists of groups contain the domain, too
  kUserLists,  ///< the whole start-up: so do the lists of users
};

/// What one run of the program works with. The lab or the domain and the session are opened on first
/// use.
class Context {
 public:
  Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context();

  GlobalOptions& options() { return options_; }
  Output& output() { return output_; }
  ConsoleDialogs& dialogs() { return dialogs_; }

  /// The parsed command's action; it returns the exit code.
  void set_action(std::function<int()> action) { action_ = std::move(action); }
  [[nodiscard]] std::function<int()> take_action() { return std::exchange(action_, nullptr); }
  /// Applies the options and runs the action.
  int run();
  /// Runs the action of one more command, in the same world but in a session of its own.
  int run_further(const std::function<int()>& action);

  /// The folder of the lab from the command line or the environment; empty when none is named.
  [[nodiscard]] std::filesystem::path named_lab() const;
  /// The folder of the lab, from the command line or the environment. Raises `UsageError` without one.
  [[nodiscard]] std::filesystem::path lab_folder() const;
  /// The named lab, otherwise the real domain. Raises `BadInput` for a folder that is not a lab,
  /// `UsageError` for options that do not go together.
  world::World& world();
  /// Raises `UsageError` when the world is not a lab.
  lab::Lab& lab();
  /// The real domain, after checking that it answers. Raises what is wrong with the connection.
  world::RealDomain& connected_domain();
  /// What a connection to a real domain asks and reports: the password of the logon, from where the options
  /// say or from the terminal.
  live::Prompts prompts();
  const platform::Platform& services();
  /// The registry as stored, and all its contents.
  platform::RegistryAccess& registry();
  platform::RegistryListing& registry_listing();
  /// The domain, after checking that it answers. Raises what is wrong with the connection.
  Domain domain();
  /// Sets a value of a machine setting for this run; the stored value stays as it is.
  void override_setting(std::string_view sub_key, std::string_view name, std::string value);
  /// From here on nothing is changed: the next session reports each step instead. What it would make, later
  /// ones find.
  void rehearse(std::function<void(const std::string&)> tell);
  /// What one rehearsed command changes in the directory, further ones find: all of it in a lab, in a real
  /// domain the units and groups that would be made.
  void rehearse_as_one();
  [[nodiscard]] bool rehearses() const { return rehearsal_ != nullptr; }
  /// Whom the session's run is at; empty between users.
  [[nodiscard]] std::string user_of_run() const;
  /// From here on `keep` is called with what runs over many users change.
  void record_changes(std::function<void(const batch::AccountChange&)> keep) { changed_ = std::move(keep); }
  /// Empty when nothing is recorded.
  [[nodiscard]] const std::function<void(const batch::AccountChange&)>& changed() const { return changed_; }
  /// The exit code of the action is final: rows of the log tab that are not GREEN do not make it
  /// YELLOW.
  void keep_exit_code() { keeps_exit_code_ = true; }
  /// Opens the session. Raises `Refused` when the domain is needed but cannot be loaded.
  session::Session& session(Depth depth);

 private:
  int run_action(const std::function<int()>& action);

  GlobalOptions options_;
  Output output_;
  ConsoleDialogs dialogs_;
  std::function<int()> action_;
  std::function<void(const batch::AccountChange&)> changed_;
  bool keeps_exit_code_ = false;
  std::unique_ptr<world::World> world_;
  bool tries_changes_ = false;
  std::function<void(const std::string&)> tell_step_;
  std::unique_ptr<lifecycle::Rehearsal> rehearsal_;
  std::optional<platform::Platform> rehearsed_;  ///< its services
  std::unique_ptr<session::Session> session_;
};

/// "--csv", for a command that prints a list or a report.
void add_csv_option(Command& command, Context& context);

/// Runs an operation. What it leaves in the status bar goes to standard error, and so do
/// the faults that it adds to the log tab.
void act(session::Session& session, const std::function<void()>& operation);

/// Runs an operation that reports its outcome on the log tab and returns False when it did nothing. The tab's
/// last row is the result, with the given further keys, but for a rehearsal's GREEN one; the exit code is
/// that of its light, or of a refusal. Raises `Refused` with the text of the status bar when the operation
/// added no row.
int act_and_tell(Context& context, session::Session& session, const std::function<bool()>& operation,
                 const std::function<Json()>& further);

}  // namespace twk::cli
