#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "directory/user_columns.hpp"

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

/// Finding a user: in Active Directory by a search, in a WinNT domain in the tree.
namespace twk::directory {

struct FoundUser {
  std::string key;    ///< the LDAP path
  std::string name;   ///< the common name
  std::string place;  ///< the distinguished name
  UserColumns::Row columns;
};

/// The users whose common name contains the text, ordered by name. "*" means any text, as does an empty text;
/// any other character means itself. In that unit and below, otherwise wherever the tree begins. Raises what
/// the directory raises, and when no domain is loaded.
std::vector<FoundUser> find_users(session::Session& session, std::string_view text,
                                  std::string_view unit = {});

/// The first user after `node`, or in the whole tree when it is null, whose name contains the text in any
/// case; null when there is none.
controls::TreeNode* next_user_with(session::Session& session, const controls::TreeNode* node,
                                   std::string_view text);

}  // namespace twk::directory
