#pragma once

namespace twk::session {
struct ImportState;
}
namespace twk::creation {
struct NewUserRequest;
}

namespace twk::batch {

/// The request takes the names of the line in hand.
void fill_names(const session::ImportState& state, creation::NewUserRequest& request);

}  // namespace twk::batch
