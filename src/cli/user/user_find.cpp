#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/find_user.hpp"
#include "session/directory_windows.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kColumns = {{"name", "Name"}, {"dn", "Location"}};

std::vector<Json> found_in_directory(session::Session& session, const std::string& text) {
  session.find_user.txtFind.text = text;
  directory::btnGo_Click(session);
  const controls::ListView& list = session.find_user.ListView1;
  // A failed search said so in a box and counted nothing.
  if (list.empty() && session.find_user.Label2.caption.get().empty())
    throw Refused("Error Searching AD for users.");
  std::vector<Json> rows;
  for (std::size_t i = 0; i < list.size(); ++i)
    rows.push_back({{"name", list.at(i).text}, {"dn", list.at(i).sub_items.at(0)}});
  return rows;
}

std::vector<Json> found_in_tree(session::Session& session, const std::string& text) {
  std::vector<Json> rows;
  for (const controls::TreeNode* user = directory::next_user_with(session, nullptr, text); user != nullptr;
       user = directory::next_user_with(session, user, text)) {
    rows.push_back({{"name", user->text}, {"dn", ""}});
  }
  return rows;
}

int find_users(Context& context, const std::string& text) {
  session::Session& session = context.session(Depth::kDomain);
  const std::vector<Json> rows = session::is_active_directory(session) ? found_in_directory(session, text)
                                                                       : found_in_tree(session, text);
  if (rows.empty())
    complain("No user found");
  else
    context.output().table(kColumns, rows);
  return kExitGreen;
}

}  // namespace

void add_user_find(Command& user, Context& context) {
  auto text = std::make_shared<std::string>();
  auto* find = user.add_subcommand("find", "Find users by part of their name");
  find->add_option("TEXT", *text, "Part of the name; * means any text in Active Directory")->required();
  find->callback([=, &context] { context.set_action([=, &context] { return find_users(context, *text); }); });
}

}  // namespace twk::cli
