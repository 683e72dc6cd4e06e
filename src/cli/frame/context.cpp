#include "cli/frame/context.hpp"

#include <cstdlib>
#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/logon_password.hpp"
#include "cli/parser/command.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/select_domain.hpp"
#include "lifecycle/rehearsal/rehearsal.hpp"
#include "session/loaded_domain.hpp"
#include "session/session_settings.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"
#include "stores/open_database.hpp"

namespace twk::cli {
namespace {

/// For options or settings that do not make a connection.
constexpr std::uint32_t kInvalidArgument = 5;

/// The rows of the log tab from `first` on that are not GREEN, each text once. The outcome of the last
/// creation is a result and printed as one.
void tell_log_rows(const session::Session& session, std::size_t first) {
  const controls::ListView& rows = session.log_rows;
  std::set<std::string_view> told = {base::trim(session.LastCreation.message)};
  for (std::size_t i = first; i < rows.size(); ++i) {
    const std::string_view text = base::trim(rows.at(i).text);
    if (rows.at(i).icon != session::kGreen && told.insert(text).second)
      complain(rows.at(i).icon + ": " + std::string(text));
  }
}

/// True when the log tab has a row that is not GREEN.
bool met_trouble(const session::Session& session) {
  const controls::ListView& rows = session.log_rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows.at(i).icon != session::kGreen)
      return true;
  }
  return false;
}

std::unique_ptr<world::World> make_real_world(const world::ConnectionOptions& given, live::Prompts prompts,
                                              platform::Dialogs& dialogs) {
  try {
    return world::make_live_world(given, std::move(prompts), dialogs);
  } catch (const base::RuntimeError& failure) {
    if (failure.number() != kInvalidArgument)
      throw;
    throw UsageError(failure.description());
  }
}

void connect_or_say_how(world::World& world) {
  if (world.is_lab())
    return world.connect();
  try {
    world.connect();
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == kInvalidArgument)
      throw UsageError("the settings below Live: " + failure.description());
    if (failure.number() != platform::ads_error::kNoSuchDomain)
      throw;
    throw UsageError(failure.description() +
                     ": give --domain NAME or --lab DIR before the command, or set "
                     "TWK_LAB; `twk lab init DIR --sample` makes a lab");
  }
}

/// True when a load puts users into the tree, where names in use are looked for.
bool shows_users_in_tree(session::Session& session) {
  return !session.ManagedOU.empty() || directory::read_load_options(session).LoadAllUsers;
}

/// Starts the session as far as needed.
void start(session::Session& session, Depth depth) {
  if (depth == Depth::kSettings)
    return;
  Progress progress;
  const auto& text = session.domain.loading;
  const auto watch = text.watch([&] { progress.show(text.get()); });
  if (depth > Depth::kDatabases && !directory::Select_Domain(session, base::trim(session.DomainName)))
    session.status.panel1 = std::string(directory::kNoController);
  stores::open_database(session);
}

}  // namespace

Context::Context() = default;
/// The memory of a lab goes with the program: to free a large one entry by entry would take a twentieth of
/// the time of a command. Nothing else waits for its end.
Context::~Context() {
  [[maybe_unused]] static const world::World* kept = nullptr;
  if (world_ && world_->is_lab())
    kept = world_.release();
}

int Context::run() {
  output_.set_json(options_.json);
  if (options_.json && output_.csv())
    throw UsageError("--json and --csv exclude each other");
  if (options_.yes)
    dialogs_.set_asking(Asking::kYes);
  if (options_.no_input)
    dialogs_.set_asking(Asking::kNoInput);
  return run_action(take_action());
}

int Context::run_further(const std::function<int()>& action) {
  session_.reset();
  keeps_exit_code_ = false;
  dialogs_.begin_command();
  output_.forget_last();
  if (world_) {
    world_->forget_overrides();
    world_->choose_domain_and_database(options_.db);
  }
  return run_action(action);
}

int Context::run_action(const std::function<int()>& action) {
  const int exit_code = action();
  const bool asks_log_tab = exit_code == kExitGreen && session_ && !keeps_exit_code_;
  return asks_log_tab && met_trouble(*session_) ? kExitYellow : exit_code;
}

std::filesystem::path Context::named_lab() const {
  if (!options_.lab.empty()) {
    if (options_.live || world::says_anything(options_.connection))
      throw UsageError("--lab and the options of a real domain exclude each other");
    return options_.lab;
  }
  const char* variable = std::getenv("TWK_LAB");  // NOLINT(concurrency-mt-unsafe): one thread
  const bool real = options_.live || world::says_anything(options_.connection);
  return variable == nullptr || real ? "" : variable;
}

std::filesystem::path Context::lab_folder() const {
  std::filesystem::path folder = named_lab();
  if (folder.empty()) {
    throw UsageError(
        "this needs a lab: give --lab DIR before the command, or set TWK_LAB; `twk lab init DIR "
        "--sample` makes one");
  }
  return folder;
}

world::World& Context::world() {
  if (world_)
    return *world_;
  const std::filesystem::path folder = named_lab();
  if (folder.empty()) {
    world_ = make_real_world(options_.connection, prompts(), dialogs_);
  } else {
    if (!world::may_be_lab(folder))
      throw BadInput(folder.string() +
                     " is not a lab: it has no lab.conf. `twk lab init DIR --sample` makes one");
    world_ = std::make_unique<world::World>(folder, dialogs_,
                                            [](const std::string& warning) { complain(warning); });
  }
  world_->choose_domain_and_database(options_.db);
  return *world_;
}

lab::Lab& Context::lab() {
  static_cast<void>(lab_folder());
  return world().lab();
}

world::RealDomain& Context::connected_domain() {
  connect_or_say_how(world());
  return world().real();
}

live::Prompts Context::prompts() {
  return {.password =
              [this](const std::string& user) {
                // Standard input has it once, and nobody types it twice.
                auto password = logon_password(options_, user);
                if (password)
                  options_.logon_password_file.clear();
                return options_.logon_password = std::move(password);
              },
          .tell = [](const std::string& text) { complain(text); },
          .is_stopped = interrupted};
}

const platform::Platform& Context::services() {
  return world().services();
}

platform::RegistryAccess& Context::registry() {
  return world().stored_registry();
}

platform::RegistryListing& Context::registry_listing() {
  return world().registry_listing();
}

Domain Context::domain() {
  connect_or_say_how(world());
  const world::DomainNames names = world().domain_names();
  return {.services = rehearsed_ ? *rehearsed_ : services(),
          .name = names.name,
          .nt_name = names.nt_name,
          .active_directory = names.active_directory};
}

void Context::override_setting(std::string_view sub_key, std::string_view name, std::string value) {
  world().override_setting(sub_key, name, std::move(value));
}

void Context::rehearse(std::function<void(const std::string&)> tell) {
  tell_step_ = std::move(tell);
  if (rehearsal_)
    return;
  using Changes = lifecycle::Rehearsal::Changes;
  rehearsal_ = std::make_unique<lifecycle::Rehearsal>(
      services(), [this](const std::string& step) { tell_step_(step); },
      tries_changes_ ? Changes::kTried : Changes::kReported);
  rehearsed_.emplace(rehearsal_->services());
}

void Context::rehearse_as_one() {
  tries_changes_ = world().is_lab();
  if (tries_changes_)
    world().lab().begin_trial();
}

std::string Context::user_of_run() const {
  return session_ ? session_->run.user : std::string();
}

session::Session& Context::session(Depth depth) {
  if (session_)
    return *session_;
  // A load skips what they cannot reach; a command reports the reason at once.
  if (depth > Depth::kDatabases)
    connect_or_say_how(world());
  const platform::Platform platform = rehearsed_ ? *rehearsed_ : services();
  session_ = std::make_unique<session::Session>(platform, options_.debug ? "/DEBUG" : "",
                                                world().program_directory());
  session::Session& session = *session_;
  session::read_session_settings(session);
  // A command for one user asks for that one; the users of a large domain take longer to load than all it
  // does.
  const bool lists_users = depth == Depth::kUserLists || shows_users_in_tree(session);
  if (depth > Depth::kDatabases && !lists_users)
    override_setting(session::kADO, "SkipUsers", "TRUE");
  session.domain.looked_up = {.groups = depth == Depth::kNamed || depth == Depth::kUnits,
                              .units = depth == Depth::kNamed && !lists_users,
                              .asked_groups = {}};
  start(session, depth);
  tell_log_rows(session, 0);
  if (depth > Depth::kDatabases && session.domain.tree.first() == nullptr)
    throw Refused(session.status.panel1);
  return session;
}

void act(session::Session& session, const std::function<void()>& operation) {
  const std::string before = session.status.panel1;
  const std::size_t rows = session.log_rows.size();
  operation();
  tell_log_rows(session, rows);
  const std::string& after = session.status.panel1;
  if (after != before && !after.empty() && after != "Ready.")
    complain(after);
}

void add_csv_option(Command& command, Context& context) {
  command.add_flag(
      "--csv", [&context] { context.output().set_csv(true); },
      "Print as CSV (RFC 4180), the keys of --json in the first line");
}

int act_and_tell(Context& context, session::Session& session, const std::function<bool()>& operation,
                 const std::function<Json()>& further) {
  const controls::ListView& log = session.log_rows;
  const std::size_t rows = log.size();
  const bool done = operation();
  if (log.size() == rows)
    throw Refused(session.status.panel1);
  const controls::ListRow& told = log.at(log.size() - 1);
  if (done && context.rehearses() && told.icon == session::kGreen)
    return kExitGreen;
  Json result = {{"light", told.icon}, {"message", told.text}};
  result.update(further());
  context.output().result(result, context.output().light(told.icon) + "  " + told.text);
  return done ? exit_code_of_light(told.icon) : kExitRed;
}

}  // namespace twk::cli
