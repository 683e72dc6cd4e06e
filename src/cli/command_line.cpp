#include "cli/command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>

#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/completion.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/logon_password.hpp"
#include "cli/parser/examples.hpp"
#include "cli/parser/manual.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/parser/prose.hpp"
#include "cli/plan/plan_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "local/private_memory.hpp"
#include "local/refused_writes.hpp"

namespace twk::cli {
namespace {

constexpr std::string_view kFooter =
    "Exit code: 0 GREEN, 1 YELLOW, 2 RED, 64 usage, 65 bad input data, 70 a fault of the program,\n"
    "77 not permitted. A value that begins with \"-\" is given as --option=-value, or after \"--\".\n"
    "`twk help COMMAND` says more about a command, `man twk` is the manual.";

void add_connection_options(Command& app, GlobalOptions& options) {
  constexpr const char* kHeading = "A real domain";
  for (const world::ConnectionOption& one : world::connection_options())
    app.add_option(one.name, options.connection.*one.text, one.help)->type_name(one.type)->heading(kHeading);
  app.add_option("--logon-password-file", options.logon_password_file,
                 "That password, the first line of a file; - for standard input")
      ->type_name("FILE")
      ->heading(kHeading);
  app.add_flag("--live", options.live, "The real domain, whatever TWK_LAB says")->heading(kHeading);
}

void add_global_options(Command& app, GlobalOptions& options) {
  app.add_option("--lab", options.lab, "Folder of the lab to work in; default: TWK_LAB from the environment")
      ->type_name("DIR");
  add_connection_options(app, options);
  app.add_option("--db", options.db, "Database directory for this run")->type_name("DIR");
  app.add_flag("--json", options.json, "Results as one JSON object a line");
  auto* yes = app.add_flag("--yes", options.yes, "Answer every question with Yes");
  app.add_flag("--no-input", options.no_input, "Never ask; every question gets No")->excludes(yes);
  app.add_flag("--debug", options.debug, "Details in Log.txt, passwords included; errors are not trapped");
}

/// Refuses what no name, path or text may contain.
void check_arguments(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (!base::is_valid_utf8(argument))
      throw UsageError("argument " + std::to_string(i) + " is not valid UTF-8");
    if (const auto control = base::find_control_character(argument)) {
      throw UsageError("argument " + std::to_string(i) + " holds the control character " + *control);
    }
  }
}

/// The command that the words lead to.
const CLI::App& innermost(const CLI::App& app) {
  const CLI::App* command = &app;
  while (!command->get_subcommands().empty())
    command = command->get_subcommands().front();
  return *command;
}

/// The error is the unknown word, not the missing command.
std::string fault_text(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> unknown = app.remaining(true);
  const bool named = !unknown.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  if (named)
    return "unknown command or option " + unknown.front();
  const std::string text = error.what();
  const std::size_t word = text.rfind(": ");
  const bool is_extra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && word != std::string::npos;
  return is_extra ? "unknown command or option " + text.substr(word + 2) : text;
}

struct CommandGroup {
  std::string_view name;
  void (*add)(Command& app, Context& context);
};

/// In the order of the help.
constexpr CommandGroup kGroups[] = {
    {"lab", add_lab_commands},
    {"doctor", add_doctor_command},
    {"settings", add_settings_commands},
    {"site", add_site_commands},
    {"template", add_template_commands},
    {"table", add_table_commands},
    {"hours", add_hours_commands},
    {"custom", add_custom_commands},
    {"format", add_format_command},
    {"user", add_user_commands},
    {"users", add_users_commands},
    {"profile", add_profile_commands},
    {"mailbox", add_mailbox_commands},
    {"group", add_group_commands},
    {"ou", add_ou_commands},
    {"ts", add_ts_commands},
    {"options", add_options_commands},
    {"acl", add_acl_commands},
    {"owner", add_owner_commands},
    {"share", add_share_commands},
    {"log", add_log_commands},
    {"db", add_database_commands},
};

bool asks_for_help(const std::vector<std::string>& words) {
  const auto has = [&words](std::string_view word) { return std::ranges::find(words, word) != words.end(); };
  return has("--help") || has("-h") || (!words.empty() && words[0] == "help");
}

/// The groups that are named by any word of the line, since making the options of all of them takes most of
/// the time of a short command. All groups for a line that names none, whose fault or help lists them, and
/// for help of any kind.
void add_commands(Command& app, Context& context, const std::vector<std::string>& words) {
  const auto has = [&words](std::string_view word) { return std::ranges::find(words, word) != words.end(); };
  const bool is_asked = asks_for_help(words) || (!words.empty() && words[0].starts_with("__"));
  const bool all = is_asked || std::ranges::none_of(kGroups, has, &CommandGroup::name);
  for (const CommandGroup& group : kGroups) {
    if (all || has(group.name))
      group.add(app, context);
  }
}

/// Raises `CLI::ParseError`, and `UsageError` with where to find help.
void parse_words(CLI::App& app, const Command& commands, int argc, const char* const* argv) {
  std::vector<std::string> words = commands.words_of(argc, argv);
  std::reverse(words.begin(), words.end());  // the parser takes them from the end
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0)
      throw;
    throw UsageError(with_help(innermost(app), fault_text(app, error)));
  } catch (const UsageError& error) {
    throw UsageError(with_help(innermost(app), error.what()));
  }
}

std::vector<std::string> names_of(const CLI::App& group) {
  std::vector<std::string> names;
  for (const CLI::App* const one : group.get_subcommands([](const CLI::App*) { return true; }))
    names.push_back(one->get_name());
  return names;
}

/// `twk help user import`: what --help prints, and what the documentation says about the command.
int print_help(const CLI::App& line, const std::vector<std::string>& words) {
  const CLI::App* group = &line;
  const CLI::App* command = &line;
  std::string before;
  for (const std::string& word : words) {
    group = command;
    before += (before.empty() ? "" : " ") + group->get_name();
    const auto names = names_of(*group);
    if (std::ranges::find(names, word) == names.end()) {
      const std::string fault = no_such_text("command", word, names);
      throw UsageError(with_help(*group, fault.substr(0, fault.size() - 1)));
    }
    command = group->get_subcommand(word);
  }
  std::cout << command->help(before);
  if (!words.empty() && names_of(*command).empty())
    std::cout << prose_of(words.front(), words.size() > 1 ? words.back() : "", names_of(*group));
  else if (!words.empty())
    std::cout << "`twk help " << words.front() << " SUBCOMMAND` says more about one of them.\n";
  std::cout.flush();
  return kExitGreen;
}

/// True when a command should run; false when help or the version was requested and printed.
bool parse(CLI::App& app, const Command& commands, int argc, char** argv) {
  try {
    parse_words(app, commands, argc, argv);
    return true;
  } catch (const CLI::ParseError& error) {
    app.exit(error, std::cout, std::cerr);
    std::cout.flush();
    return false;
  }
}

/// A command of a plan, which has the program's own options from the plan's command line. The action lives as
/// long as what it was parsed by.
std::function<int()> parse_line(Context& context, const std::vector<std::string>& given, bool dry_run) {
  struct Line {
    CLI::App app{"A command of a plan", "twk"};
    Command commands{app};
  };
  constexpr const char* kDryRun = "--dry-run";
  const auto line = std::make_shared<Line>();
  line->app.require_subcommand(1);
  add_commands(line->commands, context, given);
  std::vector<const char*> words = {"twk"};
  for (const std::string& word : given)
    words.push_back(word.c_str());
  try {
    parse_words(line->app, line->commands, static_cast<int>(words.size()), words.data());
  } catch (const CLI::ParseError&) {
    throw UsageError("a plan runs commands; help is no line of one");
  }
  auto action = context.take_action();
  const CLI::App& command = innermost(line->app);
  const CLI::Option* const option = command.get_option_no_throw(kDryRun);
  if (dry_run && option == nullptr)
    throw UsageError("this command has no --dry-run, so that the plan cannot be rehearsed");
  if (dry_run && option->count() == 0) {
    std::vector<std::string> rehearsed = given;
    rehearsed.insert(std::ranges::find(rehearsed, "--"), kDryRun);
    return parse_line(context, rehearsed, dry_run);
  }
  return [line, action = std::move(action)] { return action(); };
}

int run(int argc, char** argv) {
  local::keep_memory_private();
  check_arguments(argc, argv);
  Context context;
  context.options().logon_password = take_password_of_environment();
  CLI::App line("User accounts of Windows domains", "twk");
  line.footer(std::string(kFooter));
  line.set_version_flag(
      "--version", std::string("twk ") + TWK_VERSION + "\nLicense GPL-3.0-or-later; there is no warranty.");
  line.require_subcommand(1);
  line.fallthrough();
  Command app(line);
  add_global_options(app, context.options());
  add_commands(app, context, {argv + std::min(argc, 1), argv + argc});
  add_plan_commands(app, context, [&context](const std::vector<std::string>& words, bool dry_run) {
    return parse_line(context, words, dry_run);
  });
  if (asks_for_help({argv + std::min(argc, 1), argv + argc}))
    show_examples(line);
  if (argc > 1 && std::string_view(argv[1]) == "__complete")
    return print_completions(context, line, {argv + 2, argv + argc});
  if (argc > 1 && std::string_view(argv[1]) == "__manual")
    return print_manual(context.output(), line);
  if (argc > 1 && std::string_view(argv[1]) == "help")
    return print_help(line, {argv + 2, argv + argc});
  if (!parse(line, app, argc, argv))
    return kExitGreen;
  catch_interrupts();
  local::outlive_refused_writes();
  const int exit_code = context.run();
  context.output().finish();
  return exit_code;
}

}  // namespace

int run_command_line(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (...) {
    return report_failure();
  }
}

}  // namespace twk::cli
