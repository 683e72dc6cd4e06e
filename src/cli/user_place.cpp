#include "base/text.hpp"
#include "cli/failures.hpp"
#include "cli/near_matches.hpp"
#include "cli/user_commands.hpp"
#include "directory/tree.hpp"

namespace twk::cli {
namespace {

/// Expands a node as a person does who opens it to look inside.
void open_node(session::Session& session, controls::TreeNode& node) {
  directory::TreeView1_Expand(session, node);
}

/// The node of a distinguished name, what is above it opened first, since a node is read only when it is
/// opened. None when the tree does not show it.
controls::TreeNode* reach_node(session::Session& session, std::string_view dn, std::string_view root_dn) {
  controls::TreeView& tree = session.form1.TreeView1;
  if (controls::TreeNode* node = tree.find(dn))
    return node;
  std::size_t comma = dn.find(',');
  while (comma != base::npos && comma > 0 && dn[comma - 1] == '\\')
    comma = dn.find(',', comma + 1);
  if (comma == base::npos || dn.size() <= root_dn.size())
    return nullptr;
  controls::TreeNode* parent = reach_node(session, dn.substr(comma + 1), root_dn);
  if (parent != nullptr)
    open_node(session, *parent);
  return tree.find(dn);
}

void select_ou(Context& context, session::Session& session, const std::string& ou) {
  const Domain domain = context.domain();
  const std::string dn = locate_ou(domain, ou);
  controls::TreeNode* node = reach_node(session, dn, domain_dn(domain));
  if (node == nullptr)
    throw Refused("The tree does not show " + dn + ": it is no place for users, or not in the managed OU.");
  open_node(session, *node);
  session.form1.TreeView1.select(node);
}

void select_user(Context& context, session::Session& session, const std::string& name) {
  session.form1.TreeView1.select(&reach_user(context, session, name));
  session.form1.Copy_User.value = 1;
}

}  // namespace

controls::TreeNode& reach_user(Context& context, session::Session& session, const std::string& name) {
  const Domain domain = context.domain();
  const std::string located = locate_user(domain, name);
  controls::TreeView& tree = session.form1.TreeView1;
  controls::TreeNode* node = tree.find(located);
  if (domain.active_directory) {
    const std::string key = "LDAP://" + domain.name + "/" + located;
    const std::size_t comma = located.find(',');
    if (tree.find(key) == nullptr && comma != base::npos) {
      controls::TreeNode* parent =
          reach_node(session, std::string_view(located).substr(comma + 1), domain_dn(domain));
      if (parent != nullptr)
        open_node(session, *parent);
    }
    node = tree.find(key);
  }
  if (node == nullptr)
    throw Refused("The tree does not show the user " + located + ".");
  return *node;
}

void add_place_options(CLI::App& command, CreationPlace& place) {
  command.add_option("--template", place.template_name, "Template to create with")
      ->required()
      ->type_name("T");
  command.add_option("--site", place.site, "Site to create with")->required()->type_name("S");
  auto* ou = command.add_option("--ou", place.ou, "Organizational unit to create in")->type_name("DN");
  command.add_option("--like", place.like, "User to create beside, whose groups are copied")
      ->type_name("USER")
      ->excludes(ou);
}

void choose_place(Context& context, session::Session& session, const CreationPlace& place) {
  session::Form1& form = session.form1;
  const std::string template_name = find_name("template", place.template_name, form.nutemplate.items());
  const std::string site = find_name("site", place.site, form.NUsitename.items());
  if (session::is_active_directory(session) && place.ou.empty() && place.like.empty())
    throw UsageError("--ou DN or --like USER is needed to say where the user belongs");
  if (!place.ou.empty())
    select_ou(context, session, place.ou);
  if (!place.like.empty())
    select_user(context, session, place.like);
  form.nutemplate.text = template_name;
  form.NUsitename.text = site;
}

}  // namespace twk::cli
