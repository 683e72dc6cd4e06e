#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// A domain is read into the session: with its lists of users and groups and the tree, all of it or OU by OU
/// as the load options of the domain say.
namespace twk::directory {

/// Switches the session to a domain: determines its mode, then loads it into the tree and the lists. True
/// when the domain was loaded; False also for an empty name and for a domain of which no controller answers.
bool Select_Domain(session::Session& session, std::string_view name);

/// What the status bar shows when a domain could not be loaded.
inline constexpr std::string_view kNoController = "Can't Find Domain Controller.";

}  // namespace twk::directory
