#pragma once

#include <functional>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Reads what is directly in a unit into the tree, all of it or what meets a condition, "(name=Sales)", RFC
/// 4515.
namespace twk::directory {

/// The units. False when the query failed, which a box reported.
bool add_units(session::Session& session, std::string_view unit, std::string_view condition);

/// The users, until `added` returns False. With a condition, those that the tree shows already are left as
/// they are. Raises what the query raises.
void add_users(session::Session& session, std::string_view unit, std::string_view condition,
               const std::function<bool()>& added);

/// In a session that looks up what is named (`LoadedDomain::looked_up`), the unit or the user of that
/// distinguished name directly in `unit`, if there is one.
void look_up_unit(session::Session& session, std::string_view unit, std::string_view name);
void look_up_user(session::Session& session, std::string_view unit, std::string_view name);

}  // namespace twk::directory
