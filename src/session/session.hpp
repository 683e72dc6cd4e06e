#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/bytes.hpp"
#include "controls/basic.hpp"
#include "platform/logon_hours.hpp"
#include "platform/platform.hpp"
#include "records/records.hpp"
#include "session/activity_log.hpp"
#include "session/creation_outcome.hpp"
#include "session/current_run.hpp"
#include "session/foreseen_names.hpp"
#include "session/run_lookups.hpp"
#include "session/text_file.hpp"

namespace twk::session {

struct LoadedDatabase;
struct LoadedDomain;

inline constexpr std::int32_t kNativeMode = 0;
inline constexpr std::int32_t kMixedMode = 1;
inline constexpr std::int32_t kWinNtMode = 2;

/// The value of `DomainName` while no domain is configured.
inline constexpr std::string_view kNoDomain = "%Domain%";

/// Fields of one import line: 0 stays empty, field k of the line is element k.
inline constexpr std::size_t kMostImportFields = 100;

/// What became of one line of an import.
struct ImportRow {
  std::int32_t line = 0;  ///< counted from 1
  CreationOutcome outcome;
};

/// Values of an import, shared by the loop over the lines and the creation of each user.
struct ImportState {
  bool Importing = false;
  std::string ImportLine;
  std::array<std::string, kMostImportFields + 1> ImportFields;
  std::int16_t ImportFieldCount = 0;  ///< fields of the current line, including those beyond the last element
  /// Columns, from 1, by `format::heading_key` of their headings, without those that several columns have;
  /// empty for a file without headings.
  std::map<std::string, std::size_t> columns_by_heading;
  std::vector<std::string> fields_of_record;  ///< of the current line of a file with headings, all of them
  bool ImportDefaultLayout = true;            ///< first, middle, last are fields 1, 2, 3
  std::int16_t ImportFirstField = 0;
  std::int16_t ImportMiddleField = 0;
  std::int16_t ImportLastField = 0;
  bool ImportAccepted = false;
  bool ImportStopped = false;
  bool ImportHalt = false;
  bool ImportHaltWarning = false;
  std::int32_t ImportAddedCount = 0;
  bool holds_records = false;    ///< template and site are loaded: the lines of a rehearsal share one reading
  bool rehearsed = false;        ///< the lines are only checked: no file is opened, no account is made
  ForeseenNames foreseen_names;  ///< of accounts that a rehearsal would have made, in upper case
  RunLookups lookups;
  std::string error_path;  ///< "Import.err" of the run
  std::string summary_path;
  std::string record_path;
  std::string remaining_path;
  RunFile error_file;
  RunFile summary_file;
  std::string failure;  ///< why a file of the last run could not be read or written; empty when it could
  std::function<void(const ImportRow&)> row_done;  ///< called after each line; may be empty
};

/// One administrator's session: the services it works with, the domain and the database files that are
/// loaded, and what its routines share. Nothing here is shared between sessions.
struct Session {
  /// `command_line` is everything after the program's name, as one line; `program_directory` is the fallback
  /// for the database directory, without a final backslash.
  Session(const platform::Platform& services, std::string_view command_line,
          std::string_view program_directory);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

 private:
  struct Loaded;
  std::unique_ptr<Loaded> loaded_;

 public:
  platform::Platform platform;
  std::string command_line;
  std::string program_directory;
  /// The database directory, with a backslash at its end.
  std::string dbpath;

  // The directory.
  std::int32_t DirectoryMode = kWinNtMode;
  std::string DomainName{kNoDomain};
  std::string NTDomainName;
  std::string DnsServerName;
  std::string ManagedOU;  ///< distinguished name; empty for the whole domain
  bool ManageSubOUs = true;
  bool LoadAllUsersFlag = false;
  std::int32_t UserCount = 0;
  std::int16_t GroupCount = 0;
  platform::ObjectPtr CurrentUser;
  platform::ObjectPtr CurrentGroup;
  std::string UserPrimaryGroupID;       ///< of the account on the user details tab
  platform::ObjectPtr DomainContainer;  ///< WinNT mode: the domain, bound once by its load
  LoadedDomain& domain;

  // Records and names.
  LoadedDatabase& database;
  records::SiteRecord ActiveSite;
  records::TemplateRecord ActiveTemplate;
  std::int32_t LastRecordNo = 0;  ///< where the last search through the templates stopped
  base::Bytes TemplateLogonHours = base::Bytes(platform::kLogonHoursSize, 255);
  /// Groups of the template on the tab that cannot be shown because the domain's groups are not loaded. A
  /// save keeps them.
  std::vector<std::string> UnshownGroups;
  std::set<std::string> told_shadows;  ///< sites already reported as hidden by a deleted one
  std::string ProfileTemplateFile = "NTUser.dat";
  bool SerialTokenUsed = false;
  bool AltIdTried = false;
  std::int16_t SerialCounter = 0;

  CurrentRun run;
  controls::StatusBar& status;  ///< what is being done, and what came of it, in a sentence
  bool LastRegResult = false;
  bool MailWarning = false;  ///< a row of a new mailbox was refused
  std::string Error_Status_Text;
  std::string Error_Log_Text;
  ImportState import;
  CreationOutcome LastCreation;

  controls::ListView& log_rows;  ///< the log tab: icon, message, date and time
  ActivityLog log;
};

/// True in an Active Directory domain.
inline bool is_active_directory(const Session& session) {
  return session.DirectoryMode != kWinNtMode;
}
/// Started with "/DEBUG": details in the log, and errors are not trapped where a routine documents it.
bool is_debug(const Session& session);
/// Started with "/DEBUG" or "/DEBUG1": the load logs its steps.
bool logs_load(const Session& session);

}  // namespace twk::session
