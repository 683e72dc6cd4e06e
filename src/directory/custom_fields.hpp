#pragma once

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// The labels and boxes of the four custom attributes; those whose display name is not set, or
/// is empty, are hidden.
void show_custom_fields(session::Session& session);

}  // namespace twk::directory
