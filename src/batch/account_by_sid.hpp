#pragma once

#include <string>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

namespace twk::batch {

/// The account of that identifier, wherever it is by now and whatever it is called; none when it is gone.
platform::ObjectPtr account_by_sid(session::Session& session, const std::string& sid);

}  // namespace twk::batch
