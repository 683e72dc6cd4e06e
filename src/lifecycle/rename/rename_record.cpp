#include "lifecycle/rename/rename_record.hpp"

#include <algorithm>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::ShareInfo502;
using session::Session;
using Fields = std::vector<std::string>;

constexpr std::string_view kPrefix = "Rename-";
constexpr std::string_view kRun = "run";
constexpr std::string_view kSuffix = ".txt";
constexpr std::string_view kFirstLine = "Renaming under way, kept until it is done\n";
constexpr std::string_view kEnd = "end\n";
/// What a run's file says between two accounts.
constexpr std::string_view kNobody = "Renaming under way, kept until it is done\nend\n";

[[noreturn]] void not_readable() {
  base::raise(base::error::kTypeMismatch, "The record of a renaming cannot be read");
}

std::string file_of(const Session& session, std::string_view identifier) {
  return session.dbpath + std::string(kPrefix) + std::string(identifier) + std::string(kSuffix);
}

/// So that no text breaks its line or field.
std::string escaped(std::string_view text) {
  std::string out;
  for (const char sign : text) {
    const auto byte = static_cast<unsigned char>(sign);
    if (byte < 0x20 || sign == '%')
      out += "%" + base::hex_byte(byte);
    else
      out += sign;
  }
  return out;
}

std::string unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      out += text[i];
      continue;
    }
    const auto high = i + 2 < text.size() ? base::hex_digit(text[i + 1]) : std::nullopt;
    const auto low = high ? base::hex_digit(text[i + 2]) : std::nullopt;
    if (!low)
      not_readable();
    out += static_cast<char>(*high * 16 + *low);
    i += 2;
  }
  return out;
}

std::string line(const Fields& fields) {
  std::string text;
  for (const std::string& field : fields)
    text += (text.empty() ? "" : "\t") + escaped(field);
  return text + "\n";
}

std::string number(std::int64_t value) {
  return base::to_text(value);
}

std::string bytes_of(const ShareInfo502& share) {
  if (!share.shi502_security_descriptor)
    return "-";
  std::string digits;
  for (const std::uint8_t byte : share.shi502_security_descriptor->encode())
    digits += base::hex_byte(byte);
  return digits;
}

Fields share_fields(const std::string& of, const ShareChange& change) {
  const ShareInfo502& share = change.before;
  return {"share",
          of,
          share.shi502_netname,
          share.shi502_path,
          change.after.shi502_netname,
          change.after.shi502_path,
          share.shi502_remark,
          number(share.shi502_type),
          number(share.shi502_permissions),
          number(share.shi502_max_uses),
          share.shi502_passwd,
          bytes_of(share)};
}

std::string lines_of(const std::string& of, const std::optional<FolderRenaming>& renaming) {
  if (!renaming)
    return {};
  std::string text = line({"folder", of, renaming->before.text(), renaming->after.text()});
  for (const ShareChange& share : renaming->shares)
    text += line(share_fields(of, share));
  for (const PathChange& path : renaming->paths)
    text += line({"path", of, path.is_home ? "home" : "profile", path.before, path.after});
  return text;
}

std::string text_of(const RenameRecord& record) {
  std::string text(kFirstLine);
  text += line({"account", record.identifier, record.account, record.old_name, record.new_name});
  for (const std::string& name : record.names)
    text += line({"name", name});
  return text + lines_of("home", record.home) + lines_of("profile", record.profile) + std::string(kEnd);
}

template <typename Number>
Number read_number(const std::string& text) {
  std::int64_t value = 0;
  for (const char sign : text.starts_with('-') ? text.substr(1) : text) {
    if (sign < '0' || sign > '9')
      not_readable();
    value = value * 10 + (sign - '0');
  }
  return static_cast<Number>(text.starts_with('-') ? -value : value);
}

std::optional<platform::SecurityDescriptor> read_descriptor(const std::string& digits) {
  if (digits == "-")
    return std::nullopt;
  base::Bytes bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    const auto high = base::hex_digit(digits[i]);
    const auto low = base::hex_digit(digits[i + 1]);
    if (!high || !low)
      not_readable();
    bytes.push_back(static_cast<std::uint8_t>(*high * 16 + *low));
  }
  return platform::SecurityDescriptor::decode(bytes);
}

ShareChange read_share(const Fields& fields) {
  constexpr std::size_t kFields = 12;
  if (fields.size() != kFields)
    not_readable();
  ShareChange change;
  ShareInfo502& share = change.before;
  share.shi502_netname = fields[2];
  share.shi502_path = fields[3];
  share.shi502_remark = fields[6];
  share.shi502_type = read_number<std::uint32_t>(fields[7]);
  share.shi502_permissions = read_number<std::uint32_t>(fields[8]);
  share.shi502_max_uses = read_number<std::int32_t>(fields[9]);
  share.shi502_passwd = fields[10];
  share.shi502_security_descriptor = read_descriptor(fields[11]);
  change.after = share;
  change.after.shi502_netname = fields[4];
  change.after.shi502_path = fields[5];
  return change;
}

void read_line(RenameRecord& record, const Fields& fields) {
  const auto has = [&](std::string_view kind, std::size_t count) {
    return fields.front() == kind && fields.size() >= count;
  };
  const auto renaming = [&]() -> std::optional<FolderRenaming>& {
    return fields[1] == "home" ? record.home : record.profile;
  };
  if (has("account", 5)) {
    record.identifier = fields[1];
    record.account = fields[2];
    record.old_name = fields[3];
    record.new_name = fields[4];
  } else if (has("name", 2)) {
    record.names.push_back(fields[1]);
  } else if (has("folder", 4)) {
    renaming() = FolderRenaming{parse_tree_path(fields[2]), parse_tree_path(fields[3]), {}, {}};
  } else if (has("share", 2) && renaming()) {
    renaming()->shares.push_back(read_share(fields));
  } else if (has("path", 5) && renaming()) {
    renaming()->paths.push_back({fields[2] == "home", fields[3], fields[4]});
  } else {
    not_readable();
  }
}

/// What follows the end is left of a longer record.
RenameRecord parse(const std::string& text) {
  const std::size_t end = text.find("\n" + std::string(kEnd), kFirstLine.size() - 1);
  if (!text.starts_with(kFirstLine) || end == base::npos)
    not_readable();
  RenameRecord record;
  const std::string body = text.substr(kFirstLine.size() - 1, end - kFirstLine.size() + 1);
  for (const std::string& one : base::split(body, '\n')) {
    if (one.empty())
      continue;
    Fields fields = base::split(one, '\t');
    for (std::string& field : fields)
      field = unescaped(field);
    read_line(record, fields);
  }
  return record;
}

}  // namespace

std::string record_identifier(const platform::ObjectPtr& user) {
  std::string text;
  base::Trap without;
  without([&] { text = user->Get("objectSid").text(); });
  return text;
}

std::optional<RenameRecord> read_rename_record(Session& session, std::string_view identifier) {
  const std::string file = file_of(session, identifier);
  if (identifier.empty() || !session.platform.files.exists(file))
    return std::nullopt;
  try {
    return parse(session.platform.files.read(file));
  } catch (const base::RuntimeError& failure) {
    base::raise(failure.number(), failure.description() + ": " + file +
                                      ". Check what it says was being renamed, then delete it");
  }
}

void write_rename_record(Session& session, const RenameRecord& record) {
  if (!record.identifier.empty() && !session.run.terms.rehearse)
    session.platform.files.write(file_of(session, record.identifier), text_of(record));
}

void remove_rename_record(Session& session, std::string_view identifier) {
  const std::string file = file_of(session, identifier);
  if (identifier.empty() || session.run.terms.rehearse || !session.platform.files.exists(file))
    return;
  base::Trap trap;
  if (!trap([&] { session.platform.files.remove(file); }))
    session.log.line("The record of the renaming stays: " + trap.description());
}

void settle_run_record(Session& session) {
  platform::Files& files = session.platform.files;
  const std::string path = file_of(session, kRun);
  if (session.run.terms.rehearse || !files.exists(path))
    return;
  base::Trap trap;
  trap([&] {
    const auto file = files.open_random(path);
    file->lock(0, 1);
    if (!file->is_current())
      return;
    std::optional<RenameRecord> left;
    base::Trap empty;
    empty([&] { left = parse(file->read(0, static_cast<std::size_t>(file->size()))); });
    if (left && !left->names.empty())
      write_rename_record(session, *left);
    files.remove(path);
  });
}

RunRecord::RunRecord(Session& session) : session_(session) {
  settle_run_record(session);
}

RunRecord::~RunRecord() {
  base::Trap trap;
  trap([&] {
    if (under_way_)
      write_rename_record(session_, *under_way_);
    if (file_ != nullptr)
      session_.platform.files.remove(file_of(session_, kRun));
  });
  if (trap.number() != 0)
    session_.log.line("The record of the renaming stays: " + trap.description());
}

void RunRecord::begin(const RenameRecord& record) {
  if (record.identifier.empty() || session_.run.terms.rehearse)
    return;
  if (under_way_)
    write_rename_record(session_, *under_way_);
  under_way_.reset();
  if (!std::exchange(opened_, true))
    open();
  if (file_ != nullptr)
    file_->put(0, text_of(record));
  else
    write_rename_record(session_, record);
  under_way_ = record;
}

void RunRecord::open() {
  base::Trap taken;
  if (!taken([&] {
        file_ = session_.platform.files.open_random(file_of(session_, kRun));
        file_->lock(0, 1);
      }) ||
      !file_->is_current())
    file_.reset();
}

void RunRecord::end() {
  if (!under_way_)
    return;
  base::Trap trap;
  if (file_ == nullptr)
    remove_rename_record(session_, under_way_->identifier);
  else if (!trap([&] { file_->put(0, kNobody); }))
    session_.log.line("The record of the renaming stays: " + trap.description());
  under_way_.reset();
}

std::optional<RenameRecord> find_rename_record(Session& session, std::string_view name) {
  std::vector<platform::FileEntry> entries;
  base::Trap unreadable;
  unreadable([&] { entries = session.platform.files.list(session.dbpath); });
  for (const platform::FileEntry& entry : entries) {
    if (!entry.name.starts_with(kPrefix) || !entry.name.ends_with(kSuffix))
      continue;
    std::optional<RenameRecord> record;
    unreadable([&] { record = parse(session.platform.files.read(session.dbpath + entry.name)); });
    const auto is_name = [&](const std::string& one) { return base::equals_fold(one, name); };
    if (!record || std::none_of(record->names.begin(), record->names.end(), is_name))
      continue;
    settle_run_record(session);
    return record;
  }
  return std::nullopt;
}

}  // namespace twk::lifecycle
