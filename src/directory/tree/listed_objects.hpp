#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// What the tree and the lists hold of the loaded domain, for runs that look something up there or add to it.
namespace twk::directory {

struct ListedGroup {
  std::string name;
  std::string key;  ///< its path in Active Directory
};
/// The groups of that name, in any case. A session that looks groups up lists all of them at the first
/// question.
std::vector<ListedGroup> find_groups(session::Session& session, std::string_view name);

/// An account that was just made.
struct NewUser {
  std::string container;  ///< key of the node that it belongs under
  std::string node_key;
  std::string list_key;
  std::string shown;    ///< its name in the tree and the list of users
  std::string user_id;  ///< its name in the list of those that are in no group
};
/// Shows it in the tree, unless the users of its container come with the first expansion, and in the lists,
/// unless they leave users out.
void show_new_user(session::Session& session, const NewUser& user);
/// The same for an account that is not made: `User_Exist` finds it.
void foresee_new_user(session::Session& session, const NewUser& user);
/// False in Active Directory for a container whose users are not in the tree, which is not told of new ones
/// then.
bool is_container_shown(session::Session& session, std::string_view container);

}  // namespace twk::directory
