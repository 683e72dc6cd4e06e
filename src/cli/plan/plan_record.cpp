#include "cli/plan/plan_record.hpp"

#include <cstdint>

#include "base/dates.hpp"
#include "base/text.hpp"
#include "local/posix_files.hpp"
#include "session/activity_log.hpp"
#include "stores/database_files.hpp"

namespace twk::cli {
namespace {

std::string free_path(session::Session& session) {
  const base::Date now = session.platform.clock.now();
  const std::string name = "Plan Record - " + base::format_compact_date(now) + base::format_compact_time(now);
  std::string suffix;
  for (int next = 2;; ++next) {
    std::string path = stores::database_path(session, name + suffix + ".jsonl");
    if (!session.platform.files.exists(path))
      return path;
    suffix = " (" + base::to_text(next) + ")";
  }
}

}  // namespace

PlanRecord::PlanRecord(session::Session& session, const std::string& plan)
    : path_(local::to_local_path(free_path(session))), file_(session.platform.files.open_append(path_)) {
  write({{"record", std::string("plan")},
         {"version", std::int64_t{1}},
         {"begun", session::date_and_time(session.platform.clock)},
         {"file", plan},
         {"domain", session.DomainName}});
}

void PlanRecord::begin(int line, const std::string& command) {
  line_ = line;
  write({{"line", std::int64_t{line}}, {"command", command}});
}

void PlanRecord::change(const batch::AccountChange& change) {
  records::JsonLine entry = {{"line", std::int64_t{line_}}};
  batch::add_change(entry, change);
  write(entry);
}

void PlanRecord::end(int line, const std::string& command, std::string_view light, const std::string& message,
                     const std::string& import_record) {
  records::JsonLine entry = {{"line", std::int64_t{line}},
                             {"command", command},
                             {"light", std::string(light)},
                             {"message", message}};
  if (!import_record.empty())
    entry.add("import", import_record);
  write(entry);
}

void PlanRecord::finish(std::string_view how) {
  write({{"ended", std::string(how)}});
}

void PlanRecord::write(const records::JsonLine& entry) {
  file_->write(entry.bytes());
}

}  // namespace twk::cli
