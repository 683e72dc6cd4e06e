#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::controls {
struct StatusBar;
}
namespace twk::session {
struct Session;
}

/// Loading an Active Directory domain into the tree and the lists.
namespace twk::directory {

/// Fills the tree with OUs (and users, as the load options say) and every group list. False when the OUs
/// could not be read, which a box reports, or when neither a user nor a group was found although users were
/// requested. Writes its steps to "Log.txt".
bool Load_AD_Domain(session::Session& session);

/// Reads all groups into their lists, unless the load options leave groups out.
void Load_AD_Groups(session::Session& session);

/// Reads the groups of these names into the same lists, of a session that looks groups up
/// (`LoadedDomain::looked_up`); each name is asked for once. Raises what the query raises.
void look_up_groups(session::Session& session, const std::vector<std::string>& names);

/// Which list a load of users fills.
enum class UserList {
  kSelection,  ///< `LoadedDomain::users`, of the window for several users
  kMembers     ///< `LoadedDomain::NotMembers`, of the groups window
};

/// Reads users below `base` ("GC://twk.test" …) with the given scope word. Unless `skip_tree`, users that the
/// load options or the managed OU ask for get a node. Each goes to the list. Raises what the query raises.
bool Load_AD_Users(session::Session& session, std::string_view base, bool skip_tree, std::string_view scope,
                   std::string_view search_prefix, UserList which);

/// "Show all users" of the groups window and of the window for several users: asks first, and shows in that
/// window's status bar how it goes.
void show_all_users(session::Session& session, UserList which, controls::StatusBar& status);

}  // namespace twk::directory
