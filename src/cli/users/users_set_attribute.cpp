#include <map>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/change_property.hpp"
#include "batch/property_file.hpp"
#include "batch/schema_properties.hpp"
#include "cli/terminal/display.hpp"
#include "session/loaded_domain.hpp"

#include <utility>
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/users/users_commands.hpp"

namespace twk::cli {
namespace {

using batch::PropertyOutcome;
using session::Session;

struct AttributeArguments {
  std::string property;
  std::optional<std::string> value;
  bool append = false;
  bool replace = false;
  SelectionArguments selection;
  bool dry_run = false;
};

/// Without a value, the file has one for each user.
bool takes_values_from_file(const AttributeArguments& arguments) {
  const SelectionArguments& selection = arguments.selection;
  if (arguments.value)
    return false;
  if (selection.files.empty())
    throw UsageError("say what to set it to: a VALUE, or --from-file with lines \"Username,ADValue\"");
  if (selection.files.size() > 1 || selection.has_options())
    throw UsageError("a file with values excludes other users: give one --from-file and nothing else");
  return true;
}

/// The property as spelled for this domain, and the mode.
batch::PropertyOrder order_of(Session& session, const AttributeArguments& arguments) {
  if (!session::is_active_directory(session))
    throw Refused(session.DomainName +
                  " is not an Active Directory domain: its users have no such properties.");
  std::vector<std::string> names;
  batch::read_property_names(session, [&names](std::string name) { names.push_back(std::move(name)); });
  const auto number = batch::terminal_server_number(arguments.property);
  const std::string name = number ? names.at(static_cast<std::size_t>(*number) - 1)
                                  : find_name("property of users", arguments.property, names);
  batch::PropertyOrder order;
  base::Trap trap;
  if (!trap([&] { order.property = batch::look_up_property(session, name); }))
    throw Refused("\"" + name + "\" is not a property: " + trap.description());
  if (arguments.append && !order.property.multi_valued)
    throw UsageError(name + " has a single value: --append is for those with several");
  order.append = arguments.append;
  return order;
}

void check_value(const std::string& property, const std::string& value) {
  const std::string fault = batch::value_fault(property, value);
  if (!fault.empty())
    throw UsageError(property + ": " + fault);
  if (value.empty() && !batch::terminal_server_number(property))
    throw UsageError(property + ": the directory cannot store an empty value");
}

std::string_view light_of(const PropertyOutcome& outcome) {
  return outcome.changed ? session::kGreen : session::kRed;
}

std::string message_of(const std::string& property, const PropertyOutcome& outcome) {
  if (outcome.skipped)
    return "There is no user \"" + outcome.user + "\".";
  return outcome.changed ? property + " is \"" + outcome.value + "\"" : outcome.reason;
}

/// A run that could not continue is not a success, however it began.
int exit_code_of(const batch::PropertyCounts& run, int exit_code) {
  if (run.failure.empty())
    return exit_code;
  complain(run.failure);
  return kExitRed;
}

int change_selected(Context& context, Session& session, batch::PropertyOrder order,
                    const AttributeArguments& arguments) {
  const std::string& property = order.property.name;
  check_value(property, *arguments.value);
  batch::PropertyCounts counts;
  const int exit_code = run_over_selection(
      context, session, arguments.selection, arguments.dry_run,
      [&](session::RunView& view, const batch::RunHooks& hooks) {
        if (session.domain.selection.empty())
          return;
        order.changed = hooks.changed;
        order.user_done = [&](const PropertyOutcome& outcome) {
          hooks.done({{std::string(light_of(outcome)), message_of(property, outcome), outcome.changed, {}},
                      outcome.user,
                      outcome.path});
        };
        counts = batch::change_selection(session, order, *arguments.value, view);
      });
  return exit_code_of(counts, exit_code);
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

void print_line(Context& context, const Session& session, const std::string& property,
                const PropertyOutcome& outcome) {
  const std::string_view light = light_of(outcome);
  const std::string message = message_of(property, outcome);
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

int change_from_file(Context& context, Session& session, batch::PropertyOrder order, const std::string& file,
                     bool dry_run) {
  const std::string bytes = read_input(file);
  const std::string title = file == "-" ? "standard input" : file;
  RunCounts counts;
  ConsoleView view(context, session);
  order.user_done = [&](const PropertyOutcome& outcome) {
    view.clear();
    if (outcome.skipped)
      ++counts.unknown;
    else
      counts.add(light_of(outcome), outcome.changed);
    if (!dry_run || !outcome.changed)
      print_line(context, session, order.property.name, outcome);
    session.run.user.clear();
  };
  if (!dry_run)
    order.changed = context.changed();
  Finder finder(context.domain());
  const auto find = [&](const std::string& name) {
    session.run.user = name;
    return finder(name);
  };
  const batch::PropertyCounts run =
      batch::change_from_file(session, order, title, bytes, view, {.find = find, .strict = true});
  view.clear();
  return exit_code_of(run, tell_counts(context, counts, dry_run));
}

int set_attribute(Context& context, const AttributeArguments& arguments) {
  const bool from_file = takes_values_from_file(arguments);
  if (arguments.dry_run)
    print_steps(context);
  Session& session = resource_session(context);
  const batch::PropertyOrder order = order_of(session, arguments);
  return from_file
             ? change_from_file(context, session, order, arguments.selection.files.front(), arguments.dry_run)
             : change_selected(context, session, order, arguments);
}

}  // namespace

void add_users_set_attribute(Command& users, Context& context) {
  auto arguments = std::make_shared<AttributeArguments>();
  auto* command = users.add_subcommand("set-attribute", "Set a property of the users");
  command
      ->add_option("PROPERTY", arguments->property,
                   "Name of a directory attribute, or of a terminal-server setting")
      ->required();
  command->add_option("VALUE", arguments->value,
                      "The new value; %UserName% is replaced by the user's name. Numbers separated by commas "
                      "for bytes. Without it --from-file names a file of lines \"Username,ADValue\"");
  add_selection_options(*command, arguments->selection);
  add_dry_run(*command, arguments->dry_run);
  auto* replace = command->add_flag("--replace", arguments->replace,
                                    "Replace all other values by this one, which is the default");
  command->add_flag("--append", arguments->append, "Add the value to those of a property that has several")
      ->excludes(replace);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return set_attribute(context, *arguments); }); });
}

}  // namespace twk::cli
