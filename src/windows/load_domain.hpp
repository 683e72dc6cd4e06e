#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Loads a domain into the session and into the window for several users. True when the domain
/// was loaded.
bool load_domain(session::Session& session, std::string_view name);

}  // namespace twk::windows
