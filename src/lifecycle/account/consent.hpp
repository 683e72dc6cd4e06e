#pragma once

#include <string>
#include <string_view>

#include "session/current_run.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// True for a run without prompts: it asks nothing.
bool is_silent(const session::Session& session);

/// The person's consent to a harmful step: given in advance, otherwise the answer to a box that defaults to
/// No. A run without prompts and a rehearsal have nobody to ask, which means No.
bool has_consent(session::Session& session, session::Consent said, std::string_view question,
                 std::string_view title);

}  // namespace twk::lifecycle
