#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "batch/account_change.hpp"
#include "platform/files.hpp"
#include "records/json_line.hpp"
#include "session/session.hpp"

/// "Plan Record - <time>.jsonl" in the database directory, beside the records of imports: what the lines of a
/// plan did, written as it goes.
///
///     {"record":"plan","version":1,"begun":…,"file":…,"domain":…}
///     {"line":3,"command":"users disable --ou …"}                       before it begins
///     {"line":3,"change":"disabled","sid":"S-1-5-21-…","what":""}       one account, see `batch::add_change`
///     {"line":3,"command":…,"light":"GREEN","message":…,"import":…}     its end; of an import also its record
///     {"ended":"whole"}                                                 or "stopped"
///     {"line":3,"undone":true}                                          it was taken back
namespace twk::cli {

class PlanRecord {
 public:
  /// A file of its own, also within the same second. Raises what the files raise.
  PlanRecord(session::Session& session, const std::string& plan);

  [[nodiscard]] const std::string& path() const { return path_; }

  void begin(int line, const std::string& command);
  void change(const batch::AccountChange& change);
  void end(int line, const std::string& command, std::string_view light, const std::string& message,
           const std::string& import_record);
  void finish(std::string_view how);

 private:
  void write(const records::JsonLine& entry);

  std::string path_;
  std::unique_ptr<platform::AppendFile> file_;
  int line_ = 0;
};

}  // namespace twk::cli
