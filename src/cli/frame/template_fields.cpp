#include "cli/frame/template_fields.hpp"

#include "base/text.hpp"
#include "cli/parser/field_checks.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "stores/template_store.hpp"

namespace twk::cli {
namespace {

using session::Session;
using OptionalText = std::optional<std::string>;

constexpr std::size_t kPathLength = 75;
constexpr std::size_t kShareLength = 20;
constexpr std::size_t kSharePointLength = 100;
constexpr std::size_t kVariableNameLength = 15;
constexpr std::size_t kVariableValueLength = 30;

controls::ListRow* row_of(controls::ListView& list, std::string_view name) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (base::equals_fold(base::trim(list.at(i).text), base::trim(name)))
      return &list.at(i);
  }
  return nullptr;
}

[[noreturn]] void refuse_group(Session& session, std::string_view name) {
  if (!stores::groups_are_loaded(session)) {
    throw Refused("The groups of the domain are not loaded (SkipGroups), so \"" + std::string(name) +
                  "\" cannot be looked up.");
  }
  const controls::ListView& groups = session.domain.template_choice;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < groups.size(); ++i)
    names.push_back(groups.at(i).text);
  throw Refused(no_such_text("group", name, names));
}

void choose_groups(Session& session, const std::vector<std::string>& names) {
  controls::ListView& choice = session.domain.template_choice;
  controls::ListView& groups = session.domain.template_groups;
  stores::release_template(session);
  for (const std::string& name : names) {
    if (name.empty() || row_of(groups, name) != nullptr)
      continue;
    controls::ListRow* const row = row_of(choice, name);
    if (row == nullptr)
      refuse_group(session, name);
    const std::size_t before = groups.size();
    choice.select(row);
    stores::add_selected_groups(session);
    if (groups.size() == before)
      throw Refused("The group \"" + name + "\" was not added.");
  }
}

/// The name as the template's list has it.
std::string chosen_primary_group(Session& session, const std::string& name) {
  if (name.empty())
    return {};
  const controls::ListRow* const row = row_of(session.domain.template_groups, name);
  if (row == nullptr && row_of(session.domain.template_choice, name) == nullptr)
    refuse_group(session, name);
  if (row == nullptr)
    throw Refused("The primary group must be one of the template's groups: give --group \"" + name +
                  "\" too.");
  if (const std::string refusal = stores::primary_group_refusal(*row); !refusal.empty())
    throw Refused(refusal);
  return row->text;
}

base::Bytes hours_of(const std::string& digits) {
  base::Bytes hours;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    hours.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  return hours;
}

}  // namespace

void add_template_options(Command& command, TemplateFields& fields) {
  const auto add = [&](const char* name, OptionalText& text, const char* what, std::size_t length) {
    command.add_option(name, text, what)->check(at_most(length))->type_name("TEXT");
  };
  add("--profile-path", fields.profile_path, "Profile path of the account", kPathLength);
  add("--home-dir", fields.home_dir, "Home directory of the account", kPathLength);
  add("--profile-dir-path", fields.profile_dir_path, "Directory to make for the profile", kPathLength);
  add("--home-dir-path", fields.home_dir_path, "Directory to make for the home", kPathLength);
  add("--profile-share", fields.profile_share, "Share of the profile", kShareLength);
  add("--home-share", fields.home_share, "Share of the home directory", kShareLength);
  add("--home-share-point", fields.home_share_point, "Share point of the home directory", kSharePointLength);
  add("--profile-share-point", fields.profile_share_point, "Share point of the profile", kSharePointLength);
  add("--logon-script", fields.logon_script, "Logon script", kShareLength);
  add("--home-drive", fields.home_drive, "Drive letter of the home directory, such as H:", 2);
  command
      .add_option("--logon-hours", fields.logon_hours,
                  "The 168 hours of a week of UTC as 42 hexadecimal digits")
      ->check(logon_hours())
      ->type_name("HEX");
  add("--primary-group", fields.primary_group, "Primary group; one of the template's groups",
      kShareLength + 1);
  command
      .add_option("--group", fields.groups,
                  "A group of the template; repeat it for each. Together they replace all that it has")
      ->type_name("NAME")
      ->may_be_empty();
  command
      .add_option("--variable", fields.variables,
                  "A variable of the template; repeat it for each. Together they replace all that it has")
      ->type_name("NAME=VALUE")
      ->may_be_empty();
}

std::string load_named_template(Session& session, std::string_view name) {
  std::string found = find_name("template", name, session.database.templates);
  stores::tell(session, stores::load_template(session, found));
  return found;
}

void fill_template(Session& session, stores::TemplateEdit& edit, const TemplateFields& fields) {
  const std::initializer_list<std::pair<const OptionalText&, std::string&>> texts = {
      {fields.profile_path, edit.ProfilePath},        {fields.home_dir, edit.HomeDir},
      {fields.profile_dir_path, edit.ProfileDirPath}, {fields.home_dir_path, edit.HomeDirPath},
      {fields.profile_share, edit.ProfileShare},      {fields.home_share, edit.HomeShare},
      {fields.home_share_point, edit.HomeSharePoint}, {fields.profile_share_point, edit.ProfileSharePoint},
      {fields.logon_script, edit.LogonScript},        {fields.home_drive, edit.HomeDrive}};
  for (const auto& [text, field] : texts) {
    if (text)
      field = *text;
  }
  if (fields.home_drive && !fields.home_drive->empty() && base::trim(edit.HomeDir).empty())
    throw UsageError("--home-drive needs a home directory: give --home-dir, too");
  if (fields.logon_hours)
    session.TemplateLogonHours = hours_of(*fields.logon_hours);
  if (!fields.groups.empty())
    choose_groups(session, fields.groups);
  if (fields.primary_group)
    edit.PrimaryGroup = chosen_primary_group(session, *fields.primary_group);
}

void fill_variables(Session& session, const std::vector<std::string>& variables) {
  controls::ListView& rows = session.database.variables;
  rows.clear();
  if (variables.size() > records::kVariableSlots - 1)
    throw UsageError("a template holds at most 50 variables");
  for (const std::string& variable : variables) {
    const std::size_t equals = variable.find('=');
    if (variable.empty() && variables.size() == 1)
      return;
    if (equals == base::npos || equals == 0)
      throw UsageError("--variable takes NAME=VALUE, not \"" + variable + "\"");
    const std::string name = variable.substr(0, equals);
    const std::string value = variable.substr(equals + 1);
    if (base::length(name) > kVariableNameLength || base::length(value) > kVariableValueLength)
      throw UsageError("a variable's name has at most 15 characters and its value at most 30: " + variable);
    if (const std::string refusal = records::code_page_refusal(variable); !refusal.empty())
      throw Refused(refusal);
    rows.add({}, name, {}, {value});
  }
}

}  // namespace twk::cli
