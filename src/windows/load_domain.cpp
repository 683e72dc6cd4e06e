#include "windows/load_domain.hpp"

#include "directory/loading/select_domain.hpp"
#include "windows/multi_user/multi_user_window.hpp"

namespace twk::windows {

bool load_domain(session::Session& session, std::string_view name) {
  if (!directory::Select_Domain(session, name))
    return false;
  windows::MultiUser_Load(session);
  return true;
}

}  // namespace twk::windows
