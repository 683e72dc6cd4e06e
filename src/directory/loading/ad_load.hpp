#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Loading an Active Directory domain into the tree and the lists.
namespace twk::directory {

/// Fills the tree with OUs (and users, as the load options say) and every group list. False when the OUs
/// could not be read, which a box reports, or when neither a user nor a group was found although users were
/// requested. Writes its steps to "Log.txt".
bool Load_AD_Domain(session::Session& session);

/// Reads users below `base` ("GC://twk.test" …) with the given scope word. Unless `skip_tree`, users that the
/// load options or the managed OU ask for get a node. Each goes to the list of the multi-user window or to
/// that of the groups window. Raises what the query raises.
bool Load_AD_Users(session::Session& session, std::string_view base, bool skip_tree, std::string_view scope,
                   std::string_view search_prefix, bool to_multi_user);

/// The "Show all users" buttons of the groups window and of the multi-user window; each asks first.
void btn_showGrpusers_Click(session::Session& session);
void btn_Showusers_Click(session::Session& session);

}  // namespace twk::directory
