#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "session/settings.hpp"
#include "stores/backup.hpp"
#include "stores/compact_database.hpp"
#include "stores/conversion.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct DatabaseArguments {
  bool prune_groups = false;
  bool keep_groups = false;
  std::string from;
};

const std::vector<std::string> kVersions = {"1", "2.0", "2.1", "2.2", "2.3"};

bool compact(Session& session, const DatabaseArguments& arguments) {
  if (arguments.prune_groups || arguments.keep_groups) {
    return stores::compact_database(
        session, arguments.prune_groups ? stores::Pruning::kRemoveGroups : stores::Pruning::kKeepGroups);
  }
  return stores::agrees_to_compact(session) && stores::compact_database(session, stores::Pruning::kAsk);
}

int compact_databases(Context& context, const DatabaseArguments& arguments) {
  // What keeps the domain from being read is reported as such.
  static_cast<void>(context.domain());
  Session& session = context.session(Depth::kDatabases);
  bool done = false;
  act(session, [&] { done = compact(session, arguments); });
  if (!done)
    return kExitRed;
  context.output().result({{"compacted", true}}, "Databases compacted.");
  return kExitGreen;
}

/// Reads only the settings, so that files of an older generation are copied as they are.
int back_up_databases(Context& context, const DatabaseArguments& /*arguments*/) {
  Session& session = context.session(Depth::kSettings);
  bool complete = false;
  act(session, [&] { complete = stores::Backup_Databases(session); });
  if (!complete)
    return kExitRed;
  context.output().result({{"backedUp", true}}, "Databases backed up.");
  return kExitGreen;
}

int convert_databases(Context& context, const DatabaseArguments& arguments) {
  Session& session = context.session(Depth::kSettings);
  bool converted = false;
  act(session, [&] {
    converted = arguments.from.empty() ? stores::convert_old_database(session)
                                       : stores::convert_database_from(session, arguments.from);
  });
  if (!converted && !arguments.from.empty())
    return kExitRed;
  context.output().result(
      {{"converted", converted}, {"version", session::read_setting(session, session::kVersion, "DBVersion")}},
      converted ? "Databases converted." : "No database is of an older generation; nothing was converted.");
  return kExitGreen;
}

}  // namespace

void add_database_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<DatabaseArguments>();
  auto* database = app.add_subcommand("db", "Compact, back up and convert the database files");
  database->require_subcommand();
  const auto add = [&](const char* name, const char* what, auto action) {
    auto* command = database->add_subcommand(name, what);
    command->callback(
        [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
    return command;
  };
  auto* compaction =
      add("compact", "Remove deleted sites and templates; asks, unless an option says what to do with groups",
          compact_databases);
  auto* prune = compaction->add_flag("--prune-groups", arguments->prune_groups,
                                     "Remove groups that the domain no longer has from the templates");
  compaction->add_flag("--keep-groups", arguments->keep_groups, "Keep all groups in the templates")
      ->excludes(prune);
  add("backup", "Copy the database files to *.bak next to them", back_up_databases);
  add("convert", "Convert database files of an older generation, as named by DBVersion", convert_databases)
      ->add_option("--from", arguments->from, "Convert from this generation, whatever DBVersion says")
      ->check(Check::one_of(kVersions));
}

}  // namespace twk::cli
