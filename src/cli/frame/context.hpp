#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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

/// How much of a session a command needs.
enum class Depth {
  kSettings,   ///< the settings are read
  kDatabases,  ///< the database directory is listed too
  kDomain,     ///< the whole start-up: the domain is in the tree and the lists as well
};

/// What one run of the program works with. The lab or the domain and the session are opened when a command
/// asks for them.
class Context {
 public:
  Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context();

  GlobalOptions& options() { return options_; }
  Output& output() { return output_; }
  ConsoleDialogs& dialogs() { return dialogs_; }

  /// What the parsed command does; it gives the exit code.
  void set_action(std::function<int()> action) { action_ = std::move(action); }
  /// Puts the options into force and runs the action.
  int run();

  /// The folder of the lab, from the command line or the environment. Raises `UsageError` without one.
  [[nodiscard]] std::filesystem::path lab_folder() const;
  /// The lab that is named, else the real domain. Raises `BadInput` for a folder that holds no lab,
  /// `UsageError` for options that do not go together.
  world::World& world();
  /// Raises `UsageError` when the world is none.
  lab::Lab& lab();
  /// The real domain, which answers. Raises what is wrong with the connection.
  live::LiveDomain& connected_domain();
  /// What a connection to a real domain asks and tells: the password of the logon, from where the options say
  /// or from the terminal.
  live::Prompts prompts();
  const platform::Platform& services();
  /// The registry as it is stored, and all that is in it.
  platform::RegistryAccess& registry();
  platform::RegistryListing& registry_listing();
  /// The domain, which answers. Raises what is wrong with the connection.
  Domain domain();
  /// Lets a setting of the machine have a value for this run; what is stored stays as it is.
  void override_setting(std::string_view sub_key, std::string_view name, std::string value);
  /// From here on nothing is changed: the session that is opened next tells each step instead.
  void rehearse(std::function<void(const std::string&)> tell);
  /// The exit code of the action tells all there is: rows of the log tab that are no GREEN ones do not make
  /// it YELLOW.
  void keep_exit_code() { keeps_exit_code_ = true; }
  /// Opens the session. Raises `Refused` when the domain is needed and cannot be loaded.
  session::Session& session(Depth depth);

 private:
  /// Empty when none is named.
  [[nodiscard]] std::filesystem::path named_lab() const;

  GlobalOptions options_;
  Output output_;
  ConsoleDialogs dialogs_;
  std::function<int()> action_;
  bool keeps_exit_code_ = false;
  std::unique_ptr<world::World> world_;
  std::unique_ptr<lifecycle::Rehearsal> rehearsal_;
  std::unique_ptr<session::Session> session_;
};

/// Runs an operation of the windows. What it leaves in the status bar reaches standard error, and so do the
/// faults that it puts into the log tab.
void act(session::Session& session, const std::function<void()>& operation);

/// Runs an operation that tells what came of it on the log tab and gives False when it did nothing. The tab's
/// last row is the result, with the further keys given; the exit code is that of its light, or that of a
/// refusal. Raises `Refused` with the text of the status bar when the operation added no row.
int act_and_tell(Context& context, session::Session& session, const std::function<bool()>& operation,
                 const std::function<Json()>& further);

}  // namespace twk::cli
