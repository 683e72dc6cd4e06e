#include "windows/log_lights.hpp"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/dates.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import_record.hpp"
#include "session/text_file.hpp"
#include "stores/database_files.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/log_window.hpp"

namespace twk::windows {
namespace {

constexpr std::string_view kStart = "Starting Import from: ";
constexpr std::string_view kFinish = "Import Finished";
constexpr std::string_view kCreating = "Creating User:";
/// The record of more lines than the end of a log shows.
constexpr std::uint64_t kLargestRecord = 32U << 20U;
/// Between the block that begins an import and its record, in seconds.
constexpr std::int64_t kLongestStart = 5;

bool is_worse(std::string_view light, std::string_view than) {
  return than.empty() || light == session::kRed || (light == session::kYellow && than == session::kGreen);
}

void take_rows(Desktop& session, std::vector<LogBlock>& blocks) {
  std::unordered_map<std::string_view, std::string_view> lights;
  for (std::size_t place = 0; place < session.log_rows.size(); ++place) {
    const controls::ListRow& row = session.log_rows.at(place);
    if (row.sub_items.size() < 2)
      continue;
    std::string_view& light = lights[row.sub_items[1]];
    if (is_worse(row.icon, light))
      light = row.icon;
  }
  for (LogBlock& block : blocks) {
    if (const auto found = lights.find(block.name); found != lights.end()) {
      block.light = found->second;
      block.told_by = "the log tab";
    }
  }
}

/// How the lines of an import ended, taken up in the order in which the log names their users.
class RecordedLights {
 public:
  explicit RecordedLights(const batch::RecordedRun& run) {
    for (std::size_t place = 0; place < run.lines.size(); ++place) {
      const batch::RecordedLine& line = run.lines[place];
      const bool is_light =
          line.ended == session::kGreen || line.ended == session::kYellow || line.ended == session::kRed;
      if (is_light || line.ended == "refused" || line.ended == "known")
        places_[session::text_in_log(line.user)].push_back({place, is_light ? line.ended
                                                                   : line.ended == "known"
                                                                       ? std::string(session::kYellow)
                                                                       : std::string(session::kRed)});
    }
  }

  /// Empty for a user of whom the record says nothing, or nothing more. A name that was taken is followed by
  /// a block of its own for the next one.
  std::string next(const std::string& user) {
    const auto found = places_.find(user);
    if (found == places_.end())
      return {};
    std::deque<Ended>& ends = found->second;
    while (!ends.empty() && ends.front().place < next_)
      ends.pop_front();
    if (ends.empty())
      return {};
    next_ = ends.front().place + 1;
    return ends.front().light;
  }

 private:
  struct Ended {
    std::size_t place;
    std::string light;
  };

  std::unordered_map<std::string, std::deque<Ended>> places_;
  std::size_t next_ = 0;
};

/// The record of the import of a file that began at that time, by its name; without a path for none.
batch::RecordedRun record_of(Desktop& session, std::string_view file, base::Date begun) {
  platform::Files& files = session.platform.files;
  for (std::int64_t late = 0; late <= kLongestStart; ++late) {
    const base::Date time = base::plus_seconds(begun, late);
    const std::string path =
        stores::database_path(session, "Import Record - " + base::format_compact_date(time) +
                                           base::format_compact_time(time) + ".jsonl");
    if (!files.exists(path) || files.status(path).size > kLargestRecord)
      continue;
    batch::RecordedRun run;
    base::Trap trap;
    if (trap([&] { run = batch::load_import_record(files, path); }) &&
        session::text_in_log(run.order.text("file")) == file)
      return run;
  }
  return {};
}

void take_records(Desktop& session, std::vector<LogBlock>& blocks) {
  std::unique_ptr<RecordedLights> import;
  std::string told_by;
  for (LogBlock& block : blocks) {
    const std::string_view subject = block.subject;
    if (subject.starts_with(kStart)) {
      import.reset();
      const auto begun = base::parse_date(block.time);
      const batch::RecordedRun run =
          begun ? record_of(session, subject.substr(kStart.size()), *begun) : batch::RecordedRun();
      if (run.path.empty())
        continue;
      import = std::make_unique<RecordedLights>(run);
      told_by = run.path.substr(run.path.find_last_of("\\/") + 1);
    } else if (subject == kFinish) {
      import.reset();
    } else if (import != nullptr && subject.starts_with(kCreating)) {
      const std::string light = import->next(std::string(subject.substr(kCreating.size())));
      if (!light.empty() && block.light.empty()) {
        block.light = light;
        block.told_by = told_by;
      }
    }
  }
}

}  // namespace

void give_lights(Desktop& session, std::vector<LogBlock>& blocks) {
  take_rows(session, blocks);
  take_records(session, blocks);
}

}  // namespace twk::windows
