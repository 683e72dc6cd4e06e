#pragma once

#include <string>
#include <string_view>

namespace twk::base {
class Trap;
}
namespace twk::session {
struct Session;
}

namespace twk::directory {

/// Reports a change that was not made, in a box and on the log tab. A fault that a person can fix by choosing
/// another name or place is "YELLOW", any other "RED".
void tell_refusal(session::Session& session, std::string_view title, const std::string& what,
                  const base::Trap& failure);
/// The same for what was refused before the directory was asked.
void tell_refusal(session::Session& session, std::string_view title, const std::string& what);

}  // namespace twk::directory
