#include "windows/load_domain.hpp"

#include "batch/multi_user_window.hpp"
#include "directory/loading/select_domain.hpp"

namespace twk::windows {

bool load_domain(session::Session& session, std::string_view name) {
  if (!directory::Select_Domain(session, name))
    return false;
  batch::MultiUser_Load(session);
  return true;
}

}  // namespace twk::windows
