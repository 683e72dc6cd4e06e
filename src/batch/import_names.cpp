#include "batch/import_names.hpp"

#include "base/text.hpp"
#include "creation/new_user_request.hpp"
#include "session/session.hpp"

namespace twk::batch {

void fill_names(const session::ImportState& state, creation::NewUserRequest& request) {
  const auto field = [&state](std::int16_t index) {
    return std::string(base::trim(state.ImportFields.at(static_cast<std::size_t>(index))));
  };
  const bool standard = state.ImportDefaultLayout;
  request.FirstName = field(standard ? std::int16_t{1} : state.ImportFirstField);
  request.MiddleName = field(standard ? std::int16_t{2} : state.ImportMiddleField);
  request.LastName = field(standard ? std::int16_t{3} : state.ImportLastField);
}

}  // namespace twk::batch
