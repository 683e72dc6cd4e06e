#pragma once

#include <string>

namespace twk::session {
struct Session;
}

/// Keeps the tree and the lists in step with the changes of units, see `directory/units.hpp`.
namespace twk::directory {

/// A unit was renamed or moved with everything in it: its nodes stand in their new place, and every row below
/// it has its new path. Under a unit that was not read yet they come with its first expansion.
void follow_unit(session::Session& session, const std::string& before, const std::string& now);

/// A unit is gone with everything in it.
void forget_unit(session::Session& session, const std::string& unit);

}  // namespace twk::directory
