#pragma once

#include <string>

namespace twk::windows {

struct Desktop;

/// Loads a domain into the session and into the window for several users. True when the domain
/// was loaded.
bool load_domain(Desktop& session, const std::string& name);

}  // namespace twk::windows
