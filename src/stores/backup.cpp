#include "stores/backup.hpp"

#include <array>

#include "controls/basic.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {
namespace {

struct Backup {
  std::string_view source;
  std::string_view copy;
};

constexpr std::array<Backup, 7> kBackups = {{
    {kSiteFile, "site.bak"},
    {kTemplateFile, "template.bak"},
    {kMailFile, "mail.bak"},
    {kPermissionFile, "Permissions.bak"},
    {kSharePermissionFile, "SharePerm.bak"},
    {kWtsFile, "WTS.bak"},
    {kW2kFile, "W2K.bak"},
}};

/// False when the file exists but could not be copied.
bool back_up(session::Session& session, const Backup& backup) {
  platform::Files& files = session.platform.files;
  const std::string source = database_path(session, backup.source);
  if (!files.exists(source))
    return true;
  base::Trap trap;
  trap([&] { files.write(database_path(session, backup.copy), files.read(source)); });
  if (trap.number() == 0)
    return true;
  session.platform.dialogs.MsgBox("Cannot back up " + std::string(backup.source) + " to " +
                                      std::string(backup.copy) + ".\r\n" + trap.description(),
                                  platform::Buttons::kOk, platform::Icon::kCritical, "Backup DataBase Files");
  return false;
}

}  // namespace

bool Backup_Databases(session::Session& session) {
  bool complete = true;
  for (const Backup& backup : kBackups)
    complete = back_up(session, backup) && complete;
  session.status.panel1 =
      complete ? "Databases Backed up ( *.BAK)..." : "Not all databases could be backed up.";
  return complete;
}

}  // namespace twk::stores
