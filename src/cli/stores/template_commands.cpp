#include <algorithm>

#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/template_fields.hpp"
#include "cli/parser/field_checks.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "platform/value.hpp"
#include "session/loaded_database.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"
#include "stores/template_store.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct TemplateArguments {
  std::string name;
  std::string new_name;
  TemplateFields fields;
};

const std::vector<Column> kTemplateFields = {{"name", "Name"},
                                             {"profilePath", "Profile path"},
                                             {"homeDir", "Home directory"},
                                             {"profileDirPath", "Profile directory to make"},
                                             {"homeDirPath", "Home directory to make"},
                                             {"profileShare", "Profile share"},
                                             {"homeShare", "Home share"},
                                             {"profileSharePoint", "Profile share point"},
                                             {"homeSharePoint", "Home share point"},
                                             {"logonScript", "Logon script"},
                                             {"homeDrive", "Home drive"},
                                             {"logonHours", "Logon hours"},
                                             {"primaryGroup", "Primary group"},
                                             {"groups", "Groups"},
                                             {"variables", "Variables"}};
const std::vector<Column> kTemplateColumns = {{"name", "Name"},
                                              {"homeDir", "Home directory"},
                                              {"profilePath", "Profile path"},
                                              {"logonScript", "Logon script"},
                                              {"primaryGroup", "Primary group"},
                                              {"groups", "Groups"}};

Json to_json(const records::TemplateRecord& record) {
  Json groups = Json::array();
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.GroupCount); ++i)
    groups.push_back(record.Groups.at(i));
  Json variables = Json::array();
  for (std::size_t i = 1; i < records::kVariableSlots; ++i) {
    if (!record.VariableNames.at(i).empty() || !record.VariableValues.at(i).empty())
      variables.push_back(record.VariableNames.at(i) + "=" + record.VariableValues.at(i));
  }
  return {{"name", record.Name},
          {"profilePath", record.ProfilePath},
          {"homeDir", record.HomeDir},
          {"profileDirPath", record.ProfileDirPath},
          {"homeDirPath", record.HomeDirPath},
          {"profileShare", record.ProfileShare},
          {"homeShare", record.HomeShare},
          {"profileSharePoint", record.ProfileSharePoint},
          {"homeSharePoint", record.HomeSharePoint},
          {"logonScript", record.LogonScript},
          {"homeDrive", record.HomeDrive},
          {"logonHours", platform::Value(record.LogonHours).text()},
          {"primaryGroup", record.PrimaryGroup},
          {"groups", groups},
          {"variables", variables}};
}

int list_templates(Context& context) {
  Session& session = context.session(Depth::kDatabases);
  std::vector<Json> rows;
  stores::each_template(session, [&rows](const records::TemplateRecord& record) {
    rows.push_back(to_json(record));
    return false;
  });
  context.output().table(kTemplateColumns, rows);
  return kExitGreen;
}

int show_template(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  load_named_template(session, arguments.name);
  context.output().details(kTemplateFields, to_json(session.ActiveTemplate));
  return kExitGreen;
}

/// The elements of a list that the other lacks; another value whole.
Json own_part(const Json& value, const Json& other) {
  if (value.list() == nullptr || other.list() == nullptr)
    return value;
  Json out = Json::array();
  for (const Json& element : *value.list()) {
    const auto same = [&](const Json& one) { return text_of(one) == text_of(element); };
    if (std::ranges::none_of(*other.list(), same))
      out.push_back(element);
  }
  return out;
}

int compare_templates(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  load_named_template(session, arguments.name);
  const Json first = to_json(session.ActiveTemplate);
  load_named_template(session, arguments.new_name);
  const Json second = to_json(session.ActiveTemplate);
  const bool keyed = context.output().json() || context.output().csv();
  std::vector<Json> rows;
  for (const Column& field : kTemplateFields) {
    const Json& a = *first.find(field.key);
    const Json& b = *second.find(field.key);
    if (field.key != "name" && text_of(a) != text_of(b))
      rows.push_back(
          {{"what", keyed ? field.key : field.title}, {"first", own_part(a, b)}, {"second", own_part(b, a)}});
  }
  context.output().table({{"what", "Field"}, {"first", arguments.name}, {"second", arguments.new_name}},
                         rows);
  if (rows.empty())
    complain(arguments.name + " and " + arguments.new_name + " do not differ");
  return kExitGreen;
}

/// Saves the template, then the variables when there are new ones.
int save_template(Context& context, Session& session, const stores::TemplateEdit& edit, stores::SaveAs as,
                  bool with_variables) {
  stores::StoreOutcome outcome;
  act(session, [&] { stores::tell(session, outcome = stores::save_template(session, edit, as)); });
  if (outcome.done && with_variables)
    act(session, [&] { stores::tell(session, outcome = stores::save_variables(session, edit.Name)); });
  if (!outcome.done)
    return kExitRed;
  load_named_template(session, session.ActiveTemplate.Name);
  if (context.output().json())
    context.output().details(kTemplateFields, to_json(session.ActiveTemplate));
  return kExitGreen;
}

int add_template(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDomain);
  stores::TemplateEdit edit{.Name = arguments.name};
  fill_template(session, edit, arguments.fields);
  fill_variables(session, arguments.fields.variables);
  return save_template(context, session, edit, stores::SaveAs::kNew, true);
}

int edit_template(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDomain);
  const std::string name = load_named_template(session, arguments.name);
  stores::TemplateEdit edit = stores::edit_of(session.ActiveTemplate);
  edit.Name = name;
  fill_template(session, edit, arguments.fields);
  const bool with_variables = !arguments.fields.variables.empty();
  if (with_variables)
    fill_variables(session, arguments.fields.variables);
  return save_template(context, session, edit, stores::SaveAs::kLive, with_variables);
}

int copy_template(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDomain);
  load_named_template(session, arguments.name);
  stores::TemplateEdit edit = stores::edit_of(session.ActiveTemplate);
  edit.Name = arguments.new_name;
  return save_template(context, session, edit, stores::SaveAs::kNew, true);
}

int delete_template(Context& context, const TemplateArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  const std::string name = load_named_template(session, arguments.name);
  const bool asks = session::read_switch(session, session::kPreferences, "ConfirmDeletes");
  if (asks && !stores::agrees_to_delete_template(session))
    return kExitRed;
  stores::StoreOutcome outcome;
  act(session, [&] { stores::tell(session, outcome = stores::delete_template(session, name)); });
  if (outcome.done && context.output().json())
    context.output().result({{"name", name}, {"deleted", true}}, {});
  return outcome.done ? kExitGreen : kExitRed;
}

}  // namespace

void add_template_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<TemplateArguments>();
  auto* group = app.add_subcommand("template", "Show and change templates");
  group->require_subcommand();
  const auto add = [&](const char* name, const char* what, auto action) {
    auto* command = group->add_subcommand(name, what);
    command->add_option("NAME", arguments->name, "Name of the template")
        ->required()
        ->check(at_most(records::kTemplateNameLength));
    command->callback(
        [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
    return command;
  };
  auto* list = group->add_subcommand("list", "List the templates");
  add_csv_option(*list, context);
  list->callback([&context] { context.set_action([&context] { return list_templates(context); }); });
  add("show", "Show a template", show_template);
  add_template_options(*add("add", "Add a template", add_template), arguments->fields);
  add_template_options(*add("edit", "Change the given fields of a template", edit_template),
                       arguments->fields);
  add("copy", "Copy a template under a new name", copy_template)
      ->add_option("NEW", arguments->new_name, "Name of the copy")
      ->required()
      ->check(at_most(records::kTemplateNameLength));
  auto* diff = add("diff", "Show where two templates differ", compare_templates);
  diff->add_option("OTHER", arguments->new_name, "The other template")
      ->required()
      ->check(at_most(records::kTemplateNameLength));
  add_csv_option(*diff, context);
  add("delete", "Delete a template; asks first", delete_template);
}

}  // namespace twk::cli
