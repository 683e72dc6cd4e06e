#include <map>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/change_property.hpp"
#include "batch/property_file.hpp"
#include "batch/schema_properties.hpp"
#include "cli/terminal/display.hpp"
#include "session/ad_properties.hpp"
#include "session/multi_user.hpp"

#include <utility>
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/users/users_commands.hpp"

namespace twk::cli {
namespace {

using session::PropertyOutcome;
using session::Session;

struct Arguments {
  std::string property;
  std::optional<std::string> value;
  bool append = false;
  bool replace = false;
  SelectionArguments selection;
};

/// Without a value, the file has one for each user.
bool takes_values_from_file(const Arguments& arguments) {
  const SelectionArguments& selection = arguments.selection;
  if (arguments.value)
    return false;
  if (selection.files.empty())
    throw UsageError("say what to set it to: a VALUE, or --from-file with lines \"Username,ADValue\"");
  if (selection.files.size() > 1 || !selection.groups.empty() || !selection.ous.empty())
    throw UsageError("a file with values excludes other users: give one --from-file and nothing else");
  return true;
}

/// Sets property and mode in the window's tab, as spelled there for this domain.
void choose_property(Session& session, const Arguments& arguments) {
  if (!session::is_active_directory(session))
    throw Refused(session.DomainName +
                  " is not an Active Directory domain: its users have no such properties.");
  session::ADProperties& tab = session.ad_properties;
  batch::fill_properties(session);
  std::vector<std::string> names = tab.AD_Properties.items();
  if (const auto number = batch::terminal_server_number(arguments.property))
    tab.AD_Properties.text = names.at(static_cast<std::size_t>(*number) - 1);
  else
    tab.AD_Properties.text = find_name("property of users", arguments.property, names);
  batch::AD_Properties_Click(session);
  if (tab.Syntax.caption.get().empty())
    throw Refused(session.multi_user.Label3.caption);
  if (arguments.append && !tab.multi_value)
    throw UsageError(tab.AD_Properties.text.get() +
                     " has a single value: --append is for those with several");
  controls::choose(tab.AD_Append, tab.AD_Replace, arguments.append);
}

void check_value(const Session& session, const std::string& value) {
  const std::string& property = session.ad_properties.AD_Properties.text;
  const std::string fault = batch::value_fault(session, value);
  if (!fault.empty())
    throw UsageError(property + ": " + fault);
  if (value.empty() && !batch::terminal_server_number(property))
    throw UsageError(property + ": the directory cannot store an empty value");
}

std::string_view light_of(const PropertyOutcome& outcome) {
  return outcome.changed ? session::kGreen : session::kRed;
}

std::string message_of(const Session& session, const PropertyOutcome& outcome) {
  if (outcome.skipped)
    return "There is no user \"" + outcome.user + "\".";
  return outcome.changed ? session.ad_properties.AD_Properties.text.get() + " is \"" + outcome.value + "\""
                         : outcome.reason;
}

/// A run that could not continue is not a success, however it began.
int exit_code_of(const Session& session, int exit_code) {
  if (session.ad_properties.failure.empty())
    return exit_code;
  complain(session.ad_properties.failure);
  return kExitRed;
}

int change_selected(Context& context, Session& session, const Arguments& arguments) {
  check_value(session, *arguments.value);
  session.multi_user.AD_CHANGE.text = *arguments.value;
  const int exit_code =
      run_over_selection(context, session, arguments.selection, [&](const batch::RunHooks& hooks) {
        session.ad_properties.user_done = [&](const PropertyOutcome& outcome) {
          hooks.done(
              {outcome.user, outcome.path, light_of(outcome), message_of(session, outcome), outcome.changed});
        };
        batch::CHANGE_AD_Click(session);
        session.ad_properties.user_done = {};
      });
  return exit_code_of(session, exit_code);
}

/// Finds users by any of their names, each name once.
class Finder {
 public:
  explicit Finder(Domain domain) : domain_(std::move(domain)) {}

  std::optional<std::string> operator()(const std::string& name) {
    const auto [place, fresh] = found_.try_emplace(base::upper(name));
    if (fresh && !name.empty())
      place->second = look_up(name);
    return place->second;
  }

 private:
  [[nodiscard]] std::optional<std::string> look_up(const std::string& name) const {
    try {
      const auto dn = find_user(domain_, name);
      return dn ? std::optional("LDAP://" + domain_.name + "/" + *dn) : std::nullopt;
    } catch (const Refused& refusal) {
      throw base::RuntimeError(platform::ads_error::kNoSuchObject, refusal.what());
    }
  }

  Domain domain_;
  std::map<std::string, std::optional<std::string>> found_;  ///< by name in capitals
};

void print_line(Context& context, const Session& session, const PropertyOutcome& outcome) {
  const std::string_view light = light_of(outcome);
  const std::string message = message_of(session, outcome);
  context.output().result({{"line", outcome.line},
                           {"user", outcome.user},
                           {"dn", dn_of_user(session, outcome.path)},
                           {"light", light},
                           {"message", message},
                           {"warnings", warnings_of(light, message, {})}},
                          pad(std::to_string(outcome.line), 6) + context.output().light(light) +
                              std::string(8 - light.size(), ' ') + pad(printable(outcome.user), 20) + "  " +
                              printable(message));
}

int change_from_file(Context& context, Session& session, const std::string& file) {
  const std::string bytes = read_input(file);
  const std::string title = file == "-" ? "standard input" : file;
  RunCounts counts;
  RunProgress progress(context, session);
  session.ad_properties.user_done = [&](const PropertyOutcome& outcome) {
    progress.clear();
    if (outcome.skipped)
      ++counts.unknown;
    else
      counts.add(light_of(outcome), outcome.changed);
    print_line(context, session, outcome);
  };
  batch::change_from_file(session, title, bytes, {.find = Finder(context.domain()), .strict = true});
  session.ad_properties.user_done = {};
  progress.clear();
  return exit_code_of(session, tell_counts(context, counts));
}

int set_attribute(Context& context, const Arguments& arguments) {
  const bool from_file = takes_values_from_file(arguments);
  Session& session = resource_session(context);
  choose_property(session, arguments);
  return from_file ? change_from_file(context, session, arguments.selection.files.front())
                   : change_selected(context, session, arguments);
}

}  // namespace

void add_users_set_attribute(Command& users, Context& context) {
  auto arguments = std::make_shared<Arguments>();
  auto* command = users.add_subcommand("set-attribute", "Set a property of the users");
  command
      ->add_option("PROPERTY", arguments->property,
                   "Name of a directory attribute, or of a terminal-server setting")
      ->required();
  command->add_option("VALUE", arguments->value,
                      "The new value; %UserName% is replaced by the user's name. Numbers separated by commas "
                      "for bytes. Without it --from-file names a file of lines \"Username,ADValue\"");
  add_selection_options(*command, arguments->selection);
  auto* replace = command->add_flag("--replace", arguments->replace,
                                    "Replace all other values by this one, which is the default");
  command->add_flag("--append", arguments->append, "Add the value to those of a property that has several")
      ->excludes(replace);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return set_attribute(context, *arguments); }); });
}

}  // namespace twk::cli
