#include "batch/import_record.hpp"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::batch {
namespace {

using records::JsonLine;
using session::Session;

[[noreturn]] void refuse(std::int32_t line, std::string_view fault) {
  base::raise(base::error::kTypeMismatch, "line " + base::to_text(line) + ": " + std::string(fault));
}

/// The place of each line among those of the run, by its number.
using Places = std::unordered_map<std::int32_t, std::size_t>;

RecordedLine& line_of(RecordedRun& run, Places& places, const JsonLine& entry) {
  const auto number = static_cast<std::int32_t>(entry.number("line"));
  const auto [place, is_new] = places.try_emplace(number, run.lines.size());
  if (is_new)
    run.lines.push_back({.number = number});
  return run.lines[place->second];
}

/// `making` is what the line in hand was about to make.
void take_entry(RecordedRun& run, Places& places, const JsonLine& entry,
                std::optional<RecordedThing>& making) {
  if (const std::string next = entry.text("resumed"); !next.empty())
    run.resumed_by = next;
  if (entry.number("line") == 0) {
    if (const std::string ended = entry.text("ended"); !ended.empty())
      run.ended = ended;
    return;
  }
  RecordedLine& line = line_of(run, places, entry);
  if (const std::string user = entry.text("user"); !user.empty())
    line.user = user;
  if (const std::string begun = entry.text("begins"); !begun.empty()) {
    line.begun = begun;
    line.begun_at = entry.number("utc");
  }
  if (const std::string kind = entry.text("makes"); !kind.empty())
    making = RecordedThing{kind, entry.text("path"), {}, {}, {}};
  if (const std::string kind = entry.text("made"); !kind.empty()) {
    making.reset();
    line.things.push_back(
        {kind, entry.text("path"), entry.text("sid"), entry.text("server"), entry.text("share")});
  }
  if (const std::string ended = entry.text("ended"); !ended.empty()) {
    making.reset();
    line.ended = ended;
    line.unsure = entry.is_set("unsure");
    line.unfinished = entry.is_set("unfinished");
  }
}

/// True when what follows a line was noted in the record after its run: that had been killed within the line.
bool is_torn(std::string_view bytes, std::size_t next) {
  const auto entry = JsonLine::parse(bytes.substr(next, bytes.find('\n', next) - next));
  return entry && (entry->text("ended") == kTakenBack || !entry->text("resumed").empty());
}

/// A column is named; a text that a person typed may be a password.
std::string column_format(const std::string& format) {
  constexpr std::string_view kTag = "%IMPORT";
  const bool is_tag = base::starts_with_fold(format, kTag) && format.size() > kTag.size() + 1 &&
                      format.find('%', kTag.size()) == format.size() - 1;
  return is_tag ? format : std::string();
}

}  // namespace

bool RecordedLine::has_account() const {
  return std::ranges::any_of(things, [](const RecordedThing& thing) { return thing.kind == "account"; });
}

bool RecordedLine::may_have_account() const {
  return !begun.empty() && !has_account() && (ended.empty() || unsure);
}

const RecordedLine* RecordedRun::broken_line() const {
  return lines.empty() || !lines.back().ended.empty() ? nullptr : &lines.back();
}

RecordedRun read_import_record(std::string_view bytes) {
  RecordedRun run;
  std::int32_t number = 0;
  Places places;
  std::optional<RecordedThing> making;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = bytes.find('\n', at);
    if (end == base::npos)
      break;
    const auto entry = JsonLine::parse(bytes.substr(at, end - at));
    at = end + 1;
    ++number;
    if (!entry && (number == 1 || !is_torn(bytes, at)))
      refuse(number, "this is no line of the record of an import");
    if (!entry)
      continue;
    if (number > 1) {
      take_entry(run, places, *entry, making);
      continue;
    }
    if (entry->text("record") != "import" || entry->number("version") != 1)
      refuse(number, "the file is not the record of an import that this version knows");
    run.order = *entry;
  }
  if (number == 0)
    refuse(1, "the file is not the record of an import");
  if (making && run.broken_line() != nullptr)
    run.lines.back().things.push_back(std::move(*making));
  return run;
}

RecordedRun load_import_record(platform::Files& files, const std::string& path) {
  RecordedRun run = read_import_record(files.read(path));
  run.path = path;
  return run;
}

void note_in_record(platform::Files& files, const std::string& path, const JsonLine& line) {
  // After a line that was not written to its end.
  const std::string bytes = files.read(path);
  const bool torn = !bytes.empty() && !bytes.ends_with('\n');
  files.open_append(path)->write((torn ? "\n" : "") + line.bytes());
}

std::string fingerprint(std::string_view bytes) {
  constexpr std::uint64_t kStart = 0xCBF29CE484222325U;
  constexpr std::uint64_t kPrime = 0x100000001B3U;
  std::uint64_t hash = kStart;
  for (const char c : bytes)
    hash = (hash ^ static_cast<unsigned char>(c)) * kPrime;
  return base::to_hex(static_cast<std::uint32_t>(hash >> 32U)).substr(2) +
         base::to_hex(static_cast<std::uint32_t>(hash)).substr(2);
}

JsonLine recorded_order(Session& session, std::string_view path, std::string_view bytes,
                        const ImportOrder& order) {
  const session::ImportState& state = session.import;
  const creation::NewUserRequest& user = order.user;
  JsonLine line{
      {"record", std::string("import")},
      {"version", std::int64_t{1}},
      {"begun", session::date_and_time(session.platform.clock)},
      {"file", std::string(path)},
      {"size", static_cast<std::int64_t>(bytes.size())},
      {"hash", fingerprint(bytes)},
      {"csv", order.csv},
      {"domain", session.DomainName},
      {"template", user.TemplateName},
      {"site", user.SiteName},
      {"copy_user", user.CopyUser},
      {"node_kind", user.SelectedNodeKind},
      {"node_key", user.SelectedNodeKey},
      {"node_text", user.SelectedNodeText},
      {"parent_key", user.ParentNodeKey},
      {"default_columns", state.ImportDefaultLayout},
      {"first", std::int64_t{state.ImportFirstField}},
      {"middle", std::int64_t{state.ImportMiddleField}},
      {"last", std::int64_t{state.ImportLastField}},
      {"account_column", column_format(user.formats.account)},
      {"password_column", user.password.formatted ? column_format(user.password.format) : std::string()},
      {"description", user.Description},
      {"expiry", user.Expiry},
      {"skip_prompts", user.skip_prompts},
      {"keeps_names", user.keeps_names},
      {"plain_letters", user.plain_letters},
      {"key_attribute", user.key.attribute},
      {"key_text", user.key.text},
      {"halt_on_errors", order.halt_on_errors},
      {"halt_on_warnings", order.halt_on_warnings}};
  for (const char* const bound : {"ImportGroupsStart", "ImportGroupsFinish"})
    line.add(bound, session::read_setting(session, session::kSetup, bound));
  return line;
}

ImportOrder order_of_record(Session& session, const JsonLine& record) {
  ImportOrder order = stored_order(session);
  creation::NewUserRequest& user = order.user;
  order.csv = record.is_set("csv");
  order.halt_on_errors = record.is_set("halt_on_errors");
  order.halt_on_warnings = record.is_set("halt_on_warnings");
  user.TemplateName = record.text("template");
  user.SiteName = record.text("site");
  user.CopyUser = record.is_set("copy_user");
  user.SelectedNodeKind = record.text("node_kind");
  user.SelectedNodeKey = record.text("node_key");
  user.SelectedNodeText = record.text("node_text");
  user.ParentNodeKey = record.text("parent_key");
  user.Description = record.text("description");
  user.Expiry = record.text("expiry");
  user.skip_prompts = record.is_set("skip_prompts");
  user.keeps_names = record.is_set("keeps_names");
  user.plain_letters = record.is_set("plain_letters");
  user.key = {record.text("key_attribute"), record.text("key_text")};
  if (const std::string format = record.text("account_column"); !format.empty())
    user.formats.account = format;
  if (const std::string format = record.text("password_column"); !format.empty()) {
    user.password.formatted = true;
    user.password.format = format;
  }
  session::ImportState& state = session.import;
  state.ImportDefaultLayout = record.is_set("default_columns");
  state.ImportFirstField = static_cast<std::int16_t>(record.number("first"));
  state.ImportMiddleField = static_cast<std::int16_t>(record.number("middle"));
  state.ImportLastField = static_cast<std::int16_t>(record.number("last"));
  return order;
}

}  // namespace twk::batch
