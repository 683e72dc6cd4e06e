#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "batch/import_order.hpp"
#include "platform/files.hpp"
#include "records/json_line.hpp"

/// "Import Record - <time>.jsonl": what a run was asked for and what it made, written as it goes. A run that
/// was broken off is taken up by it, and a run can be taken back.
///
///     {"record":"import","version":1,"begun":…,"file":…,"size":…,"hash":…,"domain":…, and the order}
///     {"line":2,"user":"Ann.Miller","made":"folder","path":"\\\\FS1\\D$\\Users\\Ann.Miller"}
///     {"line":2,"user":"Ann.Miller","begins":"LDAP://CN=Ann Miller,OU=…"}      before the account is made
///     {"line":2,"user":"Ann.Miller","made":"account","path":"LDAP://…","sid":"S-1-5-21-…"}
///     {"line":2,"makes":"mailbox","path":"LDAP://EX55/CN=Ann.Miller,CN=Recipients,…"}   before that is made
///     {"line":2,"made":"mailbox","path":"LDAP://EX55/CN=Ann.Miller,CN=Recipients,…"}
///     {"line":2,"user":"Ann.Miller","ended":"GREEN"}
///     {"line":2,"user":"Ann.Miller","ended":"RED","unsure":true}   the server was lost, and may have made it
///     {"line":2,"user":"Ann.Miller","ended":"YELLOW","unfinished":true}        the file server was gone by then
///     {"ended":"whole"}
///     {"resumed":"…/Import Record - ….jsonl"}                 the run that went on with this one
///     {"line":2,"ended":"taken back"}                         what it had made is gone
///
/// Nothing secret is in it: a fixed password is that of the settings.
namespace twk::batch {

/// How a line ended of which an earlier run had made an account.
inline constexpr std::string_view kMadeBefore = "before";
/// How a line ends that was undone: what stands at its paths since then is somebody else's.
inline constexpr std::string_view kTakenBack = "taken back";

/// Something that a run made; see `creation::MadeThing`.
struct RecordedThing {
  std::string kind;  ///< "account", "folder", "share", "group" or "mailbox"
  std::string path;
  std::string sid;
  std::string server;
  std::string share;
};

/// What a line came to.
struct RecordedLine {
  std::int32_t number = 0;
  std::string user = {};
  std::string begun = {};                  ///< path of the account that was about to be made; empty for none
  std::int64_t begun_at = 0;               ///< 100-nanosecond steps since 1601, UTC
  std::vector<RecordedThing> things = {};  ///< with what was being made when the run was broken off
  std::string ended = {};   ///< the light, "refused" without one, "known" of a person with an account; empty
                            ///< when the run was broken off here
  bool unsure = false;      ///< the server was lost when it was asked for the account
  bool unfinished = false;  ///< the file server was lost before all was made that belongs to the account

  [[nodiscard]] bool has_account() const;
  /// True for an account that may be there without an identifier in the record: the run or the server was
  /// lost while it was made.
  [[nodiscard]] bool may_have_account() const;
};

struct RecordedRun {
  std::string path;         ///< of the record
  records::JsonLine order;  ///< the first line
  std::vector<RecordedLine> lines;
  std::string ended;  ///< "whole", "stopped", "errors", "warnings" or "failed"; empty when it was broken off
  std::string resumed_by;  ///< the record of the run that went on with this one; empty for none

  /// The last line, on which the run was broken off; null when that ended.
  [[nodiscard]] const RecordedLine* broken_line() const;
};

/// Reads the bytes of a record; a last line that was not written to its end is left out. Raises 13 for what
/// is no record, with the line.
RecordedRun read_import_record(std::string_view bytes);

/// The same for the file of that path, whose reading raises what the files raise.
RecordedRun load_import_record(platform::Files& files, const std::string& path);
/// Adds a line to a record. Raises what the files raise.
void note_in_record(platform::Files& files, const std::string& path, const records::JsonLine& line);

/// FNV-1a of 64 bits in hexadecimal digits, by which a run knows its file.
std::string fingerprint(std::string_view bytes);

/// The first line of a record.
records::JsonLine recorded_order(session::Session& session, std::string_view path, std::string_view bytes,
                                 const ImportOrder& order);
/// The order of a recorded run, over what the settings ask of every import, with the columns in the state.
ImportOrder order_of_record(session::Session& session, const records::JsonLine& record);

}  // namespace twk::batch
