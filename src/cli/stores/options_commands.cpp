#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/loading/ad_options.hpp"
#include "session/directory_windows.hpp"

namespace twk::cli {
namespace {

using session::frmADOptions;

const std::vector<Column> kFields = {{"pageSize", "PageSize"},
                                     {"userLimit", "UserLimit"},
                                     {"skipUsers", "SkipUsers"},
                                     {"skipGroups", "SkipGroups"},
                                     {"loadAllUsers", "LoadAllUsers"},
                                     {"templateGroupsOnly", "TemplateGroupsOnly"},
                                     {"search", "Search"},
                                     {"sort", "Sort"}};

Json number_of(const controls::TextBox& field) {
  return base::to_number(field.text.get()).value_or(0);
}

Json to_json(const frmADOptions& window) {
  return {{"pageSize", number_of(window.PageSize)},
          {"userLimit", number_of(window.UserLimit)},
          {"skipUsers", window.SkipUsers.on()},
          {"skipGroups", window.SkipGroups.on()},
          {"loadAllUsers", window.LoadAllUsersoption.value.get()},
          {"templateGroupsOnly", window.TemplateGroups.on()},
          {"search", window.UseLDAP.value ? "LDAP://" : "GC://"},
          {"sort", window.Sorton.value.get()}};
}

int show_options(Context& context) {
  session::Session& session = context.session(Depth::kSettings);
  directory::frmADOptions_Load(session);
  context.output().details(kFields, to_json(session.ad_options));
  return kExitGreen;
}

bool to_flag(const std::string& name, const std::string& value) {
  const std::string word = base::lower(value);
  if (word == "true" || word == "yes" || word == "on")
    return true;
  if (word == "false" || word == "no" || word == "off")
    return false;
  throw UsageError(name + " takes true or false, not \"" + value + "\"");
}

bool is_ldap(const std::string& value) {
  const std::string word = base::lower(value);
  if (word == "ldap" || word == "ldap://")
    return true;
  if (word == "gc" || word == "gc://")
    return false;
  throw UsageError("Search takes gc or ldap, not \"" + value + "\"");
}

/// An empty number means the default.
void set_number(controls::TextBox& field, const std::string& name, const std::string& value) {
  if (!value.empty() && base::to_number(value).value_or(0) < 1)
    throw UsageError(name + " takes a number from 1 up, not \"" + value + "\"");
  field.text = value;
}

/// Sets the controls of one option as a person does.
void set_option(frmADOptions& window, const std::string& name, const std::string& value) {
  if (name == "PageSize")
    set_number(window.PageSize, name, value);
  else if (name == "UserLimit")
    set_number(window.UserLimit, name, value);
  else if (name == "SkipUsers")
    window.SkipUsers.value = to_flag(name, value) ? 1 : 0;
  else if (name == "SkipGroups")
    window.SkipGroups.value = to_flag(name, value) ? 1 : 0;
  else if (name == "LoadAllUsers")
    choose(window.LoadAllUsersoption, window.DontLoadAllUsers, to_flag(name, value));
  else if (name == "TemplateGroupsOnly")
    window.TemplateGroups.value = to_flag(name, value) ? 1 : 0;
  else if (name == "Search")
    choose(window.UseLDAP, window.UseGC, is_ldap(value));
  else if (name == "Sort")
    choose(window.Sorton, window.Sortoff, to_flag(name, value));
}

int set_options(Context& context, const std::vector<std::string>& assignments) {
  session::Session& session = context.session(Depth::kSettings);
  directory::frmADOptions_Load(session);
  std::vector<std::string> names;
  names.reserve(kFields.size());
  for (const Column& field : kFields)
    names.push_back(field.title);
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == base::npos)
      throw UsageError("\"" + assignment + "\" is not NAME=VALUE");
    set_option(session.ad_options, find_name("option", assignment.substr(0, equals), names),
               assignment.substr(equals + 1));
  }
  if (!directory::btnApply_Click(session))
    throw Refused("The options were not stored.");
  return show_options(context);
}

}  // namespace

void add_options_commands(Command& app, Context& context) {
  auto* options = app.add_subcommand("options", "How a directory is loaded");
  options->require_subcommand();
  auto* show = options->add_subcommand("show", "Show the options");
  show->callback([&context] { context.set_action([&context] { return show_options(context); }); });

  auto assignments = std::make_shared<std::vector<std::string>>();
  auto* set = options->add_subcommand("set", "Change options; others stay as they are");
  set->add_option("NAME=VALUE", *assignments, "Such as PageSize=500")->required();
  set->callback(
      [=, &context] { context.set_action([=, &context] { return set_options(context, *assignments); }); });
}

}  // namespace twk::cli
