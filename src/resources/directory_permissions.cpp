#include "resources/directory_permissions.hpp"

#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/replace.hpp"
#include "resources/file_permission.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"

namespace twk::resources {
namespace {

using format::FRString;
using records::PermissionRecord;
using session::Session;

/// Row by row. A word that is not an access word means the same as the row before.
void set_rows(Session& session, std::string& server, const std::string& path, const std::string& userName,
              const std::vector<PermissionRecord>& rows, std::int16_t& RunWarning) {
  FilePermission permission;
  permission.mode = 0;
  permission.replaceAll = rows.front().NewSecurity;
  for (const PermissionRecord& row : rows) {
    permission.account =
        base::trim(FRString(FRString(row.Account, "%Domain%", session.DomainName), "%UserName%", userName));
    permission.mode = mode_of_access_word(base::trim(row.Access)).value_or(permission.mode);
    if (SetFilePermission(session, server, path, permission)) {
      session.log.line("Set Permissions for " + permission.account);
    } else {
      session.log.line("Failed to set Permissions for " + permission.account);
      session.platform.dialogs.beep();
      RunWarning = 2;
    }
    permission.replaceAll = false;
  }
}

void set_owner(Session& session, std::string& server, const std::string& path, const std::string& userName,
               std::string_view prescribed, std::int16_t& RunWarning) {
  if (prescribed.empty())
    return;
  const std::string owner = format::Filling(session, std::string(prescribed))
                                .tag("%username%", userName)
                                .tag("%Domain%", session.NTDomainName)
                                .take();
  session.log.line("Setting Owner of Folder " + path + " to " + owner);
  if (SetFilePermission(session, server, path, {.account = owner, .ownerOnly = true}))
    return;
  session.platform.dialogs.beep();
  session.log.line("Setting Owner failed");
  RunWarning = 2;
}

}  // namespace

bool Set_Permissions(Session& session, std::string& server, const std::string& path,
                     const std::string& userName, std::int16_t& RunWarning) {
  try {
    const std::vector<PermissionRecord> rows = stores::read_permissions(session, stores::kPermissionFile);
    if (rows.empty()) {
      session.log.line("No Users found in permissions file");
      return false;
    }
    session.log.line("Setting Permissions on " + path);
    set_rows(session, server, path, userName, rows, RunWarning);
    set_owner(session, server, path, userName, base::trim(rows.front().Owner), RunWarning);
    return true;
  } catch (const base::RuntimeError& failure) {
    session.log.reason(base::in_words(failure.number(), failure.description()));
    return false;
  }
}

}  // namespace twk::resources
