#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/load_options.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kOptionFields = {{"pageSize", "PageSize"},
                                           {"userLimit", "UserLimit"},
                                           {"skipUsers", "SkipUsers"},
                                           {"skipGroups", "SkipGroups"},
                                           {"loadAllUsers", "LoadAllUsers"},
                                           {"templateGroupsOnly", "TemplateGroupsOnly"},
                                           {"search", "Search"},
                                           {"sort", "Sort"}};

int show_options(Context& context, session::Session& session) {
  const directory::LoadOptions options = directory::read_load_options(session);
  context.output().details(kOptionFields, {{"pageSize", options.PageSize},
                                           {"userLimit", options.UserLimit},
                                           {"skipUsers", options.SkipUsers},
                                           {"skipGroups", options.SkipGroups},
                                           {"loadAllUsers", options.LoadAllUsers},
                                           {"templateGroupsOnly", options.TemplateGroupsOnly},
                                           {"search", options.Search},
                                           {"sort", options.Sort}});
  return kExitGreen;
}

/// As the window that shows them would store them.
directory::LoadOptionTexts texts_of(const directory::LoadOptions& options) {
  return {.PageSize = base::to_text(options.PageSize),
          .UserLimit = base::to_text(options.UserLimit),
          .SkipUsers = options.SkipUsers,
          .SkipGroups = options.SkipGroups,
          .LoadAllUsers = options.LoadAllUsers,
          .TemplateGroupsOnly = options.TemplateGroupsOnly,
          .over_ldap = options.Search == "LDAP://",
          .Sort = options.Sort};
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
void set_number(std::string& number, const std::string& name, const std::string& value) {
  if (!value.empty() && base::to_number(value).value_or(0) < 1)
    throw UsageError(name + " takes a number from 1 up, not \"" + value + "\"");
  number = base::trim(value);
}

void set_option(directory::LoadOptionTexts& options, const std::string& name, const std::string& value) {
  if (name == "PageSize")
    set_number(options.PageSize, name, value);
  else if (name == "UserLimit")
    set_number(options.UserLimit, name, value);
  else if (name == "SkipUsers")
    options.SkipUsers = to_flag(name, value);
  else if (name == "SkipGroups")
    options.SkipGroups = to_flag(name, value);
  else if (name == "LoadAllUsers")
    options.LoadAllUsers = to_flag(name, value);
  else if (name == "TemplateGroupsOnly")
    options.TemplateGroupsOnly = to_flag(name, value);
  else if (name == "Search")
    options.over_ldap = is_ldap(value);
  else if (name == "Sort")
    options.Sort = to_flag(name, value);
}

int set_options(Context& context, const std::vector<std::string>& assignments) {
  session::Session& session = context.session(Depth::kSettings);
  directory::LoadOptionTexts options = texts_of(directory::read_load_options(session));
  std::vector<std::string> names;
  names.reserve(kOptionFields.size());
  for (const Column& field : kOptionFields)
    names.push_back(field.title);
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == base::npos)
      throw UsageError("\"" + assignment + "\" is not NAME=VALUE");
    set_option(options, find_name("option", assignment.substr(0, equals), names),
               assignment.substr(equals + 1));
  }
  directory::store_load_options(session, options);
  return show_options(context, session);
}

}  // namespace

void add_options_commands(Command& app, Context& context) {
  auto* options = app.add_subcommand("options", "How a directory is loaded");
  options->require_subcommand();
  auto* show = options->add_subcommand("show", "Show the options");
  show->callback([&context] {
    context.set_action([&context] { return show_options(context, context.session(Depth::kSettings)); });
  });

  auto assignments = std::make_shared<std::vector<std::string>>();
  auto* set = options->add_subcommand("set", "Change options; others stay as they are");
  set->add_option("NAME=VALUE", *assignments, "Such as PageSize=500")->required();
  set->callback(
      [=, &context] { context.set_action([=, &context] { return set_options(context, *assignments); }); });
}

}  // namespace twk::cli
