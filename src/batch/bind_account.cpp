#include "batch/bind_account.hpp"

#include "base/text.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::batch {

using controls::ListRow;
using platform::ObjectPtr;
using session::Session;

ObjectPtr bind_account(Session& session, const ObjectPtr& user) {
  return session::is_active_directory(session) ? session.platform.directory.GetObject(directory::winnt_path(
                                                     session, user->Get("SamAccountName").text()))
                                               : user;
}

ObjectPtr bind_account(Session& session, const ListRow& row) {
  const std::string path =
      session::is_active_directory(session) ? row.key : directory::winnt_path(session, row.text);
  return bind_account(session, session.platform.directory.GetObject(path));
}

}  // namespace twk::batch
