#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/find_user.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kFoundColumns = {{"name", "Name"}, {"dn", "Location"}};

std::vector<Json> found_in_directory(session::Session& session, const std::string& text) {
  std::vector<directory::FoundUser> found;
  base::Trap trap;
  if (!trap([&] { found = directory::find_users(session, text); }))
    throw Refused("Error Searching AD for users. " + base::in_words(trap.number(), trap.description()));
  std::vector<Json> rows;
  rows.reserve(found.size());
  for (const directory::FoundUser& user : found)
    rows.push_back({{"name", user.name}, {"dn", user.place}});
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
  context.output().table(kFoundColumns, rows);
  if (rows.empty())
    complain("No user found");
  return kExitGreen;
}

}  // namespace

void add_user_find(Command& user, Context& context) {
  auto text = std::make_shared<std::string>();
  auto* find = user.add_subcommand("find", "Find users by part of their name");
  find->add_option("TEXT", *text, "Part of the name; * means any text in Active Directory")->required();
  add_csv_option(*find, context);
  find->callback([=, &context] { context.set_action([=, &context] { return find_users(context, *text); }); });
}

}  // namespace twk::cli
