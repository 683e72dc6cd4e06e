#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "platform/user_parameters.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/activity_log.hpp"

namespace twk::cli {
namespace {

using platform::WtsConfigValue;
using records::TerminalServerRow;

struct TsArguments {
  std::string user;
  std::vector<std::string> assignments;
  bool dry_run = false;
};

/// A row's name here, and for people.
struct Name {
  std::string_view alias;
  std::string_view title;
};

/// In the order of the rows.
constexpr std::array<Name, records::kTerminalServerRows.size()> kNames = {
    {{"profile", "Profile path"},
     {"home", "Home directory"},
     {"drive", "Home drive"},
     {"allowLogon", "May log on"},
     {"inheritProgram", "Program of own choice"},
     {"program", "Program at logon"},
     {"startIn", "Start in"},
     {"drives", "Client drives"},
     {"printers", "Client printers"},
     {"defaultPrinter", "Default client printer"},
     {"activeLimit", "Active session limit"},
     {"disconnectedLimit", "Disconnected session limit"},
     {"idleLimit", "Idle session limit"}}};

struct Change {
  std::size_t row;
  WtsConfigValue value;
};

std::string known_settings() {
  std::string list;
  for (const Name& name : kNames)
    list += (list.empty() ? "" : ", ") + std::string(name.alias);
  return list;
}

/// A row by its name here or in the table, whose "WTS" may be omitted. Raises `UsageError`.
std::size_t find_row(const std::string& name) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    const std::string full(records::kTerminalServerRows.at(i).name);
    if (base::equals_fold(name, kNames.at(i).alias) || base::equals_fold(name, full) ||
        base::equals_fold("WTS" + name, full))
      return i;
    all.emplace_back(kNames.at(i).alias);
    all.push_back(full);
  }
  throw UsageError(no_such_text("terminal-server setting", name, all) + " Settings: " + known_settings());
}

std::uint32_t parse_time(const std::string& name, const std::string& value) {
  std::vector<std::string> words;
  std::string list;
  for (const records::TimeWord& time : records::kTimeWords) {
    if (base::equals_fold(time.word, value))
      return time.milliseconds;
    words.emplace_back(time.word);
    list += (list.empty() ? "" : ", ") + words.back();
  }
  std::string text = name + " does not take the time \"" + value + "\", but " + list + ".";
  const std::vector<std::string> near = near_matches(value, words);
  throw UsageError(near.empty() ? text : text + " Near: \"" + near.front() + "\".");
}

std::uint32_t parse_switch(const std::string& name, const std::string& value) {
  constexpr std::array<std::string_view, 6> kWords = {"no", "yes", "false", "true", "0", "1"};
  for (std::size_t i = 0; i < kWords.size(); ++i) {
    if (base::equals_fold(kWords.at(i), value))
      return i % 2 == 0 ? 0 : 1;
  }
  throw UsageError(name + " takes yes or no, not \"" + value + "\".");
}

void check_drive(const std::string& name, const std::string& value) {
  const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  if (!value.empty() && (value.size() != 2 || !is_letter(value.front()) || value.back() != ':'))
    throw UsageError(name + " takes a letter and a colon, such as W:, not \"" + value + "\".");
}

WtsConfigValue parse_value(const TerminalServerRow& row, const std::string& name, const std::string& value) {
  if (row.is_time())
    return parse_time(name, value);
  if (row.is_number())
    return parse_switch(name, value);
  if (row.key.ends_with('d'))
    check_drive(name, value);
  try {
    platform::UserParameters trial;
    platform::set_wts_setting(trial, row.setting, value);
  } catch (const base::RuntimeError&) {
    throw UsageError(name + " takes a text of at most 256 characters.");
  }
  return value;
}

Change parse_change(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == base::npos || equals == 0)
    throw UsageError("\"" + assignment + "\" is not NAME=VALUE. Settings: " + known_settings());
  const std::string name = assignment.substr(0, equals);
  const std::size_t row = find_row(name);
  return {row, parse_value(records::kTerminalServerRows.at(row), name, assignment.substr(equals + 1))};
}

/// The account name of a user in any of its forms.
std::string account_of(const Domain& domain, const std::string& name) {
  return describe_user(domain, name).text_at("samAccountName");
}

/// The name of the domain's controller, for the settings' calls.
std::string controller_of(const Domain& domain) {
  return domain.services.network.NetGetDCName("", domain.name);
}

Json json_value(const TerminalServerRow& row, const WtsConfigValue& value) {
  if (const auto* const text = std::get_if<std::string>(&value))
    return *text;
  const std::uint32_t number = std::get<std::uint32_t>(value);
  return row.is_time() ? Json(number) : Json(number != 0);
}

/// A time as its word; without a word, in milliseconds.
std::string time_text(std::uint32_t milliseconds) {
  for (const records::TimeWord& time : records::kTimeWords) {
    if (time.milliseconds == milliseconds)
      return std::string(time.word);
  }
  return base::to_text(milliseconds) + " ms";
}

int show_settings(Context& context, const std::string& name) {
  const Domain domain = context.domain();
  const std::string user = account_of(domain, name);
  const std::string controller = controller_of(domain);
  std::vector<Column> columns = {{"user", "User"}};
  Json settings = {{"user", user}};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    const TerminalServerRow& row = records::kTerminalServerRows.at(i);
    const std::string key(kNames.at(i).alias);
    columns.push_back({key, std::string(kNames.at(i).title)});
    try {
      settings[key] =
          json_value(row, domain.services.network.WTSQueryUserConfig(controller, user, row.setting));
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != platform::user_parameters_error::kInvalidData)
        throw;
      throw Refused("The terminal-server settings of " + user + " cannot be read: " + failure.description() +
                    ".");
    }
    if (row.is_time() && !context.output().json())
      settings[key] = time_text(static_cast<std::uint32_t>(*settings[key].number()));
  }
  context.output().details(columns, settings);
  return kExitGreen;
}

/// True for a controller's errors about user and value; anything else is a different fault.
bool is_refusal(std::uint32_t number) {
  using namespace platform::user_parameters_error;
  return number == kInvalidData || number == kInvalidParameter ||
         number == platform::network_error::kUserNotFound;
}

/// Makes the changes one after the other, up to the first refusal; all of them have been parsed before.
int set_settings(Context& context, const TsArguments& arguments) {
  std::vector<Change> changes;
  for (const std::string& assignment : arguments.assignments)
    changes.push_back(parse_change(assignment));
  if (arguments.dry_run)
    print_steps(context);
  const Domain domain = context.domain();
  const std::string user = account_of(domain, arguments.user);
  const std::string controller = controller_of(domain);
  std::string_view light = session::kGreen;
  std::string message = "Saved...";
  std::size_t done = 0;
  try {
    for (const auto& [row, value] : changes) {
      domain.services.network.WTSSetUserConfig(controller, user, records::kTerminalServerRows.at(row).setting,
                                               value);
      ++done;
    }
  } catch (const base::RuntimeError& failure) {
    if (done == 0 && !is_refusal(failure.number()))
      throw;
    light = done == 0 ? session::kRed : session::kYellow;
    message = std::string(kNames.at(changes.at(done).row).alias) + " is refused: " + failure.description() +
              " (error " + base::to_text(failure.number()) + ")";
  }
  if (arguments.dry_run && light == session::kGreen)
    return kExitGreen;
  context.output().result({{"user", user}, {"light", light}, {"message", message}},
                          context.output().light(light) + "  " + user + ": " + message);
  return exit_code_of_light(light);
}

Command* add_command(Command& ts, const char* verb, const char* what, std::string& user) {
  Command* const command = ts.add_subcommand(verb, what);
  command->add_option("USER", user, "Account name, common name, principal name or distinguished name")
      ->required();
  return command;
}

}  // namespace

void add_ts_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<TsArguments>();
  auto* ts = app.add_subcommand("ts", "Terminal-server settings of a user");
  ts->require_subcommand();
  auto* show = add_command(*ts, "show", "Print the settings of a user", arguments->user);
  show->callback([=, &context] {
    context.set_action([=, &context] { return show_settings(context, arguments->user); });
  });

  auto* set = add_command(*ts, "set", "Change settings of a user", arguments->user);
  set->add_option("NAME=VALUE", arguments->assignments, "A setting and its new value")
      ->required()
      ->type_name("");
  add_dry_run(*set, arguments->dry_run);
  set->footer("Settings: " + known_settings() +
              ".\nTimes are Never, 1 min, 5 mins, 10 mins, 15 mins, 30 mins, 1 hour, 2 hours, 3 hours, "
              "1 day, 2 days.");
  set->callback(
      [=, &context] { context.set_action([=, &context] { return set_settings(context, *arguments); }); });
}

}  // namespace twk::cli
