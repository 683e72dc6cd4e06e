#include "cli/commands.hpp"
#include "cli/context.hpp"
#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/input.hpp"
#include "cli/near_matches.hpp"
#include "editors/logon_hours.hpp"
#include "platform/adsi.hpp"
#include "stores/template_tab.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct HoursArguments {
  std::string template_name;
  std::string user;
  std::string file = "-";
};

/// A template, or an account, and its hours as lines of text.
void print_hours(Context& context, const char* kind, std::string_view name, const base::Bytes& hours) {
  const std::vector<std::string> lines = editors::text_of_cells(editors::cells_of_bytes(hours));
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string day(editors::day_name(static_cast<int>(i) + 1));
    day.resize(10, ' ');
    text += (i == 0 ? "" : "\n") + day + lines[i];
  }
  if (context.output().json())
    context.output().result({{kind, name}, {"hours", lines}}, {});
  else
    context.output().raw(text + "\n");
}

base::Bytes read_hours(const std::string& file) {
  const editors::HoursText hours = editors::parse_hours(text_lines(read_input(file)));
  if (!hours.error.empty())
    throw BadInput(hours.error);
  return editors::bytes_of_cells(hours.cells);
}

void select_template(Session& session, std::string_view name) {
  session.form1.templatelst.text = find_name("template", name, session.form1.templatelst.items());
  stores::templatelst_Click(session);
}

int show_template_hours(Context& context, const std::string& name) {
  Session& session = context.session(Depth::kDatabases);
  select_template(session, name);
  print_hours(context, "template", session.ActiveTemplate.Name, session.TemplateLogonHours);
  return kExitGreen;
}

/// Opens the template for an edit, sets the hours and presses Save. The domain must be there, because a save
/// writes the groups that it knows.
int set_template_hours(Context& context, const std::string& name, const base::Bytes& hours) {
  Session& session = context.session(Depth::kDomain);
  select_template(session, name);
  stores::EditTemplate(session);
  session.TemplateLogonHours = hours;
  act(session, [&] { stores::savetemplate(session); });
  if (session.form1.savetemplate.enabled)
    return kExitRed;
  if (context.output().json())
    print_hours(context, "template", session.ActiveTemplate.Name, hours);
  return kExitGreen;
}

int show_user_hours(Context& context, const std::string& name) {
  base::Bytes hours = platform::User(bind_user(context.domain(), name)).LoginHours();
  // An account without stored hours may log on at any.
  if (hours.empty())
    hours.assign(stores::kLogonHoursSize, 255);
  print_hours(context, "user", locate_user(context.domain(), name), hours);
  return kExitGreen;
}

int set_user_hours(Context& context, const std::string& name, const base::Bytes& hours) {
  platform::User user(bind_user(context.domain(), name));
  user.put_LoginHours(hours);
  user.SetInfo();
  if (context.output().json())
    print_hours(context, "user", locate_user(context.domain(), name), hours);
  return kExitGreen;
}

void check_target(const HoursArguments& arguments) {
  if (arguments.template_name.empty() == arguments.user.empty())
    throw UsageError("give either a TEMPLATE or --user NAME");
}

int show_hours(Context& context, const HoursArguments& arguments) {
  check_target(arguments);
  return arguments.user.empty() ? show_template_hours(context, arguments.template_name)
                                : show_user_hours(context, arguments.user);
}

/// With --user the one word that is given is the file.
int set_hours(Context& context, HoursArguments arguments, bool has_file) {
  if (!arguments.user.empty() && !arguments.template_name.empty() && !has_file)
    arguments.file = std::exchange(arguments.template_name, {});
  check_target(arguments);
  const base::Bytes hours = read_hours(arguments.file);
  return arguments.user.empty() ? set_template_hours(context, arguments.template_name, hours)
                                : set_user_hours(context, arguments.user, hours);
}

}  // namespace

void add_hours_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<HoursArguments>();
  auto* hours = app.add_subcommand("hours", "The hours at which users may log on");
  hours->require_subcommand();
  const auto add = [&](const char* name, const char* what) {
    auto* command = hours->add_subcommand(name, what);
    command->add_option("TEMPLATE", arguments->template_name, "Name of the template");
    command->add_option("--user", arguments->user, "An account in place of a template")->type_name("NAME");
    return command;
  };
  auto* show = add("show", "Print the week, in the form that set reads");
  show->callback(
      [=, &context] { context.set_action([=, &context] { return show_hours(context, *arguments); }); });

  auto* set = add("set", "Set the week from a file or standard input");
  auto* file = set->add_option("FILE", arguments->file, "The file; standard input if not given");
  set->footer(
      "Seven lines, Sunday first, of 24 characters, 12am first: # 1 X permitted, . 0 - denied. A line may "
      "begin\nwith the name of its day.");
  set->callback([=, &context] {
    const bool has_file = file->is_given();
    context.set_action([=, &context] { return set_hours(context, *arguments, has_file); });
  });
}

}  // namespace twk::cli
