#include "cli/user/user_commands.hpp"

#include "cli/frame/commands.hpp"
#include "cli/terminal/exit_codes.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kColumns = {{"name", "Name"},
                                      {"fullName", "Full name"},
                                      {"description", "Description"},
                                      {"disabled", "Disabled"},
                                      {"dn", "Distinguished name"}};

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

int show_user(Context& context, const std::string& name) {
  Json user = describe_user(context.domain(), name);
  if (!context.output().json() && user["expires"].is_null())
    user["expires"] = "Never";
  context.output().details(kFields, user);
  return kExitGreen;
}

int show_users(Context& context, const std::string& ou) {
  context.output().table(kColumns, list_users(context.domain(), ou));
  return kExitGreen;
}

}  // namespace

void add_user_commands(Command& app, Context& context) {
  auto* user = app.add_subcommand("user", "Create, import, show, change, move and delete users");
  user->require_subcommand();
  add_user_create(*user, context);
  add_user_import(*user, context);
  add_user_find(*user, context);
  add_user_move_ou(*user, context);
  add_user_set(*user, context);
  add_user_groups(*user, context);
  add_user_delete(*user, context);
  add_user_move(*user, context);
  add_user_rename(*user, context);
  add_user_reset_password(*user, context);

  auto name = std::make_shared<std::string>();
  auto* show = user->add_subcommand("show", "Show a user");
  show->add_option("NAME", *name, "Account name, common name, principal name or distinguished name")
      ->required();
  show->callback([=, &context] { context.set_action([=, &context] { return show_user(context, *name); }); });

  auto ou = std::make_shared<std::string>();
  auto* list = user->add_subcommand("list", "List the users of the domain");
  list->add_option("--ou", *ou, "Only those in this organizational unit and below it")->type_name("DN");
  list->add_flag(
      "--recurse", [] {}, "As for `twk users`; this list always has the users of the units below");
  list->callback([=, &context] { context.set_action([=, &context] { return show_users(context, *ou); }); });
}

}  // namespace twk::cli
