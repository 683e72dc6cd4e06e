#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_columns.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/attribute_text.hpp"

namespace twk::cli {
namespace {

struct ShowArguments {
  std::string name;
  bool all = false;
  std::string attributes;
};

const std::vector<Column> kFields = {{"name", "Name"},
                                     {"dn", "Distinguished name"},
                                     {"samAccountName", "Pre-2000 name"},
                                     {"userPrincipalName", "Principal name"},
                                     {"fullName", "Full name"},
                                     {"description", "Description"},
                                     {"homeDirectory", "Home directory"},
                                     {"homeDrive", "Home drive"},
                                     {"profilePath", "Profile path"},
                                     {"loginScript", "Logon script"},
                                     {"disabled", "Disabled"},
                                     {"locked", "Locked out"},
                                     {"passwordNeverExpires", "Password never expires"},
                                     {"cannotChangePassword", "Cannot change password"},
                                     {"mustChangePassword", "Must change password"},
                                     {"expires", "Expires"},
                                     {"primaryGroup", "Primary group"},
                                     {"groups", "Groups"},
                                     {"logonHours", "Logon hours"}};

int show_attributes(Context& context, const ShowArguments& arguments) {
  const Domain domain = context.domain();
  std::vector<std::string> names;
  if (!arguments.all) {
    for (const std::string& name : names_in("--attributes", arguments.attributes))
      names.push_back(attribute_named(domain, name));
  }
  const platform::ObjectPtr user = bind_user(domain, arguments.name);
  std::vector<directory::ReadAttribute> read;
  if (arguments.all)
    read = directory::all_attributes(domain, user);
  for (const std::string& name : names)
    read.push_back(directory::read_attribute(domain, user, name));
  std::vector<Column> fields;
  Json row = Json::object();
  for (const directory::ReadAttribute& attribute : read) {
    fields.push_back({attribute.name, attribute.name});
    row[attribute.name] = json_of(attribute.values);
  }
  context.output().details(fields, row);
  return kExitGreen;
}

int show_user(Context& context, const ShowArguments& arguments) {
  if (arguments.all || !arguments.attributes.empty())
    return show_attributes(context, arguments);
  Json user = describe_user(context.domain(), arguments.name);
  if (!context.output().json() && user["expires"].is_null())
    user["expires"] = "Never";
  context.output().details(kFields, user);
  return kExitGreen;
}

}  // namespace

void add_user_show(Command& user, Context& context) {
  auto arguments = std::make_shared<ShowArguments>();
  auto* show = user.add_subcommand("show", "Show a user");
  show->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  const Option* const all =
      show->add_flag("--all", arguments->all, "Every attribute that the directory returns, in words");
  show->add_option("--attributes", arguments->attributes, "Only these attributes, with commas between")
      ->type_name("NAMES")
      ->excludes(all);
  show->callback(
      [=, &context] { context.set_action([=, &context] { return show_user(context, *arguments); }); });
}

}  // namespace twk::cli
