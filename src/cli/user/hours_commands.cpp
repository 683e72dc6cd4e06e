#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/template_fields.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "directory/hours_of_week.hpp"
#include "directory/hours_zone.hpp"
#include "platform/adsi.hpp"
#include "platform/logon_hours.hpp"
#include "session/settings.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct HoursArguments {
  std::string template_name;
  std::string user;
  std::string file = "-";
  std::string zone;
  bool dry_run = false;
};

/// A template, or an account, and its hours as lines of text.
void print_hours(Context& context, const char* kind, std::string_view name, const base::Bytes& hours) {
  const platform::Platform& services = context.services();
  const directory::HoursZone zone = directory::zone_in_force(services);
  const std::vector<std::string> lines =
      directory::text_of_cells(directory::cells_of_bytes(hours, directory::hours_ahead(services, zone)));
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string day(directory::day_name(static_cast<int>(i) + 1));
    day.resize(10, ' ');
    text += (i == 0 ? "" : "\n") + day + lines[i];
  }
  if (context.output().json())
    context.output().result({{kind, name}, {"zone", directory::zone_word(zone)}, {"hours", lines}}, {});
  else
    context.output().raw(text + "\n");
}

std::vector<bool> read_hours(const std::string& file) {
  directory::HoursText hours = directory::parse_hours(text_lines(read_input(file)));
  if (!hours.error.empty())
    throw BadInput(hours.error);
  return std::move(hours.cells);
}

/// Reports what was stored while no zone has been chosen, if that makes a difference.
void warn_of_zone(Context& context, const std::vector<bool>& cells) {
  const std::string readings = directory::two_readings(context.services(), cells);
  if (!readings.empty() && !directory::chosen_zone(context.services())) {
    complain("warning: " + readings + ". They " + (context.rehearses() ? "would be" : "were") +
             " stored as hours of UTC+12. To choose, and to end this warning, run \"twk hours zone "
             "workstation\" and set them again, or \"twk hours zone utc+12\".");
  }
}

directory::HoursZone read_zone(const std::string& word) {
  if (const auto zone = directory::zone_of_word(word))
    return *zone;
  throw UsageError("a zone is utc+12 or workstation, not \"" + word + "\"");
}

/// A zone for this run only.
void override_zone(Context& context, const std::string& word) {
  if (!word.empty())
    context.override_setting(session::kPreferences, "LogonHoursZone",
                             std::string(directory::zone_word(read_zone(word))));
}

/// Shows the zone, or stores another one.
int hours_zone(Context& context, const std::string& word) {
  const platform::Platform& services = context.services();
  if (!word.empty() && !directory::choose_zone(services, read_zone(word)))
    throw Refused("The choice cannot be written in " + context.world().settings_folder());
  const directory::HoursZone zone = directory::zone_in_force(services);
  const bool chosen = directory::chosen_zone(services).has_value();
  const std::string note = directory::zone_note(services, zone);
  context.output().result({{"zone", directory::zone_word(zone)},
                           {"hoursAhead", directory::hours_ahead(services, zone)},
                           {"chosen", chosen}},
                          directory::zone_name(services, zone) + (chosen ? "" : " (not chosen yet)") +
                              (note.empty() ? "" : "\n" + note));
  return kExitGreen;
}

int show_template_hours(Context& context, const std::string& name) {
  Session& session = context.session(Depth::kDatabases);
  load_named_template(session, name);
  print_hours(context, "template", session.ActiveTemplate.Name, session.TemplateLogonHours);
  return kExitGreen;
}

/// The domain must be loaded, because a save writes the groups that it has.
int set_template_hours(Context& context, const std::string& name, const base::Bytes& hours) {
  Session& session = context.session(Depth::kDomain);
  const std::string found = load_named_template(session, name);
  if (context.rehearses()) {
    const std::string step = "Replace the logon hours of the template " + std::string(base::trim(found));
    context.output().result({{"step", step}}, printable(step));
    return kExitGreen;
  }
  stores::TemplateEdit edit = stores::edit_of(session.ActiveTemplate);
  edit.Name = found;
  session.TemplateLogonHours = hours;
  stores::StoreOutcome outcome;
  act(session,
      [&] { stores::tell(session, outcome = stores::save_template(session, edit, stores::SaveAs::kLive)); });
  if (!outcome.done)
    return kExitRed;
  if (context.output().json())
    print_hours(context, "template", session.ActiveTemplate.Name, hours);
  return kExitGreen;
}

int show_user_hours(Context& context, const std::string& name) {
  base::Bytes hours = platform::User(bind_user(context.domain(), name)).LoginHours();
  // An account without stored hours may log on at any.
  if (hours.empty())
    hours.assign(platform::kLogonHoursSize, 255);
  print_hours(context, "user", locate_user(context.domain(), name), hours);
  return kExitGreen;
}

int set_user_hours(Context& context, const std::string& name, const base::Bytes& hours) {
  platform::User user(bind_user(context.domain(), name));
  user.put_LoginHours(hours);
  user.SetInfo();
  if (context.output().json() && !context.rehearses())
    print_hours(context, "user", locate_user(context.domain(), name), hours);
  return kExitGreen;
}

void check_target(const HoursArguments& arguments) {
  if (arguments.template_name.empty() == arguments.user.empty())
    throw UsageError("give either a TEMPLATE or --user NAME");
}

int show_hours(Context& context, const HoursArguments& arguments) {
  check_target(arguments);
  override_zone(context, arguments.zone);
  return arguments.user.empty() ? show_template_hours(context, arguments.template_name)
                                : show_user_hours(context, arguments.user);
}

/// With --user the only word given is the file.
int set_hours(Context& context, HoursArguments arguments, bool has_file) {
  if (!arguments.user.empty() && !arguments.template_name.empty() && !has_file)
    arguments.file = std::exchange(arguments.template_name, {});
  check_target(arguments);
  override_zone(context, arguments.zone);
  const std::vector<bool> cells = read_hours(arguments.file);
  if (arguments.dry_run)
    print_steps(context);
  const platform::Platform& services = context.services();
  const base::Bytes hours =
      directory::bytes_of_cells(cells, directory::hours_ahead(services, directory::zone_in_force(services)));
  const int exit_code = arguments.user.empty() ? set_template_hours(context, arguments.template_name, hours)
                                               : set_user_hours(context, arguments.user, hours);
  if (exit_code == kExitGreen)
    warn_of_zone(context, cells);
  return exit_code;
}

}  // namespace

void add_hours_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<HoursArguments>();
  auto* hours = app.add_subcommand("hours", "The hours at which users may log on");
  hours->require_subcommand();
  const auto add = [&](const char* name, const char* what) {
    auto* command = hours->add_subcommand(name, what);
    command->add_option("TEMPLATE", arguments->template_name, "Name of the template");
    command->add_option("--user", arguments->user, "An account instead of a template")->type_name("NAME");
    command->add_option("--zone", arguments->zone, "Time zone of the hours, for this run only")
        ->type_name("utc+12|workstation");
    return command;
  };
  auto* show = add("show", "Print the week, in the form that set reads");
  show->callback(
      [=, &context] { context.set_action([=, &context] { return show_hours(context, *arguments); }); });

  auto* set = add("set", "Set the week from a file or standard input");
  auto* file = set->add_option("FILE", arguments->file, "The file; standard input if not given");
  add_dry_run(*set, arguments->dry_run);
  set->footer(
      "Seven lines, Sunday first, of 24 characters, 12am first: # 1 X permitted, . 0 - denied. A line may "
      "begin\nwith the name of its day. The hours are those of UTC+12, 12 hours ahead of UTC, wherever this "
      "workstation\nstands, unless \"twk hours zone\" says otherwise.");
  set->callback([=, &context] {
    const bool has_file = file->is_given();
    context.set_action([=, &context] { return set_hours(context, *arguments, has_file); });
  });

  auto word = std::make_shared<std::string>();
  auto* zone =
      hours->add_subcommand("zone", "Show or choose the time zone of the hours, here and in the window");
  zone->add_option("ZONE", *word, "utc+12, or workstation for its time zone")
      ->type_name("utc+12|workstation");
  zone->callback([=, &context] { context.set_action([=, &context] { return hours_zone(context, *word); }); });
}

}  // namespace twk::cli
