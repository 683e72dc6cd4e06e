#include "batch/import_order.hpp"

#include "base/text.hpp"
#include "creation/stored_request.hpp"
#include "directory/account_expiry.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::batch {

using creation::NewUserRequest;
using session::Session;

ImportOrder stored_order(Session& session) {
  ImportOrder order;
  order.user = creation::stored_request(session);
  order.halt_on_errors = session::read_switch(session, session::kPreferences, "StopOnError");
  order.halt_on_warnings = session::read_switch(session, session::kPreferences, "StopOnWarning");
  return order;
}

std::string refused_expiry(Session& session, std::string_view text) {
  if (text.find('%') != base::npos || directory::is_open_expiry(text))
    return {};
  return directory::read_expiry(session.platform.clock, text).error;
}

std::string refused_place(const Session& session, const NewUserRequest& request) {
  const std::string& kind = request.SelectedNodeKind;
  const bool active_directory = session::is_active_directory(session);
  const bool good = !active_directory || request.CopyUser || kind == "OU";
  const bool named = !base::trim(request.TemplateName).empty() && !base::trim(request.SiteName).empty();
  const bool lacks_user = request.CopyUser && kind != "USER";
  if (named && good && !lacks_user)
    return {};
  if (!active_directory)
    return "To Import Users you must select a Template and a Site.";
  const std::string text = "To Import Users you must select a Template and a Site\r\n";
  if (lacks_user) {
    return text +
           "and select an User from the treeview.\r\nor turn off 'copy user' function, and select an OU";
  }
  return text + "and select an OU from the treeview.";
}

}  // namespace twk::batch
