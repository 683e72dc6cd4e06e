#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// Switches the session to a domain: determines its mode, then loads it into the tree and the lists. True
/// when the domain was loaded; False also for an empty name and for a domain of which no controller answers.
bool Select_Domain(session::Session& session, std::string_view name);

}  // namespace twk::directory
