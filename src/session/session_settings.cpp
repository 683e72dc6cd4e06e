#include "session/session_settings.hpp"

#include "base/text.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::session {
namespace {

std::string read_trimmed(Session& session, std::string_view name) {
  return std::string(base::trim(read_setting(session, kSetup, name)));
}

void read_data_version(Session& session) {
  read_setting(session, kVersion, "DBVersion");
  if (!session.LastRegResult)
    write_setting(session, kVersion, "DBVersion", kDataVersion);
}

std::string database_directory(Session& session) {
  std::string path = read_trimmed(session, "DataBasePath");
  if (path.empty())
    path = session.program_directory;
  if (!path.ends_with('\\'))
    path += '\\';
  return path;
}

void read_managed_ou(Session& session) {
  std::uint32_t hive = platform::kHiveLocalMachine;
  session.ManagedOU = read_setting(session, kSetup, "OU", hive);
  // A limit that was lifted leaves an empty text, which must not hide the person's own.
  if (!session.LastRegResult || session.ManagedOU.empty()) {
    hive = platform::kHiveCurrentUser;
    session.ManagedOU = read_setting(session, kSetup, "OU", hive);
  }
  session.ManageSubOUs = read_setting(session, kSetup, "SUBOU", hive) != "No";
}

}  // namespace

void read_session_settings(Session& session) {
  read_data_version(session);
  session.DomainName = read_setting(session, kSetup, "Domain");
  if (session.DomainName.empty())
    session.DomainName = kNoDomain;
  session.dbpath = database_directory(session);
  session.ProfileTemplateFile = read_trimmed(session, "Profiles");
  if (session.ProfileTemplateFile.empty())
    session.ProfileTemplateFile = "NTUser.dat";
  read_managed_ou(session);
  session.LoadAllUsersFlag = read_switch(session, kADO, "LoadAllUsers");
}

}  // namespace twk::session
