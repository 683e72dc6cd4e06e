#pragma once

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// The labels and boxes of the four custom attributes; those without a display name are
/// hidden.
void show_custom_fields(session::Session& session);

}  // namespace twk::directory
