#include <algorithm>

#include "base/text.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "creation/known_person.hpp"
#include "creation/stored_request.hpp"
#include "directory/tree/tree.hpp"
#include "directory/tree/tree_path.hpp"
#include "directory/user_details.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

void select_ou(Context& context, session::Session& session, const std::string& ou) {
  const Domain domain = context.domain();
  const std::string dn = locate_ou(domain, ou);
  controls::TreeNode* node = directory::reach_node(session, dn);
  if (node == nullptr)
    throw Refused("The tree does not show " + dn + ": it cannot contain users, or is not in the managed OU.");
  directory::TreeView1_Expand(session, *node);
  session.domain.tree.select(node);
}

void select_user(Context& context, session::Session& session, const std::string& name) {
  session.domain.tree.select(&reach_user(context, session, name));
}

/// "employeeNumber=%IMPORT5%".
creation::PersonKey person_key(const std::string& text) {
  if (text.empty())
    return {};
  const std::size_t equals = text.find('=');
  const std::string attribute = text.substr(0, equals);
  if (equals == std::string::npos || equals + 1 == text.size() || !creation::is_attribute_name(attribute))
    throw UsageError("--key takes an attribute and what it holds, such as employeeNumber=%IMPORT5%");
  return {attribute, text.substr(equals + 1)};
}

}  // namespace

controls::TreeNode& reach_user(Context& context, session::Session& session, const std::string& name) {
  return reach_located_user(context, session, locate_user(context.domain(), name));
}

controls::TreeNode& reach_located_user(Context& context, session::Session& session,
                                       const std::string& located) {
  const Domain domain = context.domain();
  controls::TreeNode* const node = directory::reach_user(
      session, domain.active_directory ? "LDAP://" + domain.name + "/" + located : located);
  if (node == nullptr)
    throw Refused("The tree does not show the user " + located + ".");
  return *node;
}

directory::UserDetails read_details(Context& context, session::Session& session, const std::string& name) {
  const controls::TreeNode& node = reach_user(context, session, name);
  auto details =
      directory::read_user_details(session, session::is_active_directory(session) ? node.key : node.text);
  if (!details)
    throw Refused(session.status.panel1);
  return std::move(*details);
}

void add_place_options(Command& command, CreationPlace& place, bool required) {
  auto* template_name =
      command.add_option("--template", place.template_name, "Template to create with")->type_name("T");
  auto* site = command.add_option("--site", place.site, "Site to create with")->type_name("S");
  if (required) {
    template_name->required();
    site->required();
  }
  auto* ou = command.add_option("--ou", place.ou, "Organizational unit to create in")->type_name("DN");
  command.add_option("--like", place.like, "User whose container and groups the new one gets")
      ->type_name("USER")
      ->excludes(ou);
  command.add_flag("--keep-names", place.keep_names,
                   "Take the names as they are written; otherwise they get a capital letter");
  command.add_flag("--plain-letters", place.plain_letters,
                   "Write account names in the letters a to z: \"ü\" as \"ue\", \"Ł\" as \"L\"");
  command
      .add_option("--key", place.key,
                  "Make no account for a person whom an account has already: the attribute and what it holds "
                  "for this person, such as employeeNumber=%IMPORT5%; a new account gets it")
      ->type_name("ATTRIBUTE=TEXT");
}

void choose_place(Context& context, session::Session& session, const CreationPlace& place,
                  creation::NewUserRequest& request) {
  request.TemplateName = find_name("template", place.template_name, session.database.templates);
  request.SiteName = find_name("site", place.site, session.database.sites);
  if (session::is_active_directory(session) && place.ou.empty() && place.like.empty())
    throw UsageError("--ou DN or --like USER is needed to say where the user belongs");
  if (!place.ou.empty())
    select_ou(context, session, place.ou);
  if (!place.like.empty())
    select_user(context, session, place.like);
  request.CopyUser = !place.like.empty();
  request.keeps_names = place.keep_names;
  request.plain_letters = place.plain_letters;
  request.key = person_key(place.key);
  controls::TreeView& tree = session.domain.tree;
  creation::take_place(request, tree.selected() != nullptr ? tree.selected() : tree.first());
}

}  // namespace twk::cli
