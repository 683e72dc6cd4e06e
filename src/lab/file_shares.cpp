#include "lab/file_shares.hpp"

#include <fcntl.h>

#include <algorithm>

#include "base/text.hpp"
#include "lab/dn.hpp"
#include "lab/errors.hpp"
#include "lab/ldif.hpp"
#include "local/descriptor.hpp"
#include "local/replace_file.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kShareClass = "fileShare";
constexpr std::size_t kLongestShareName = 80;

std::string attribute_of(const LdifRecord& record, std::string_view name) {
  for (const LdifAttribute& attribute : record.attributes) {
    if (base::equals_fold(attribute.name, name) && !attribute.values.empty())
      return attribute.values.front();
  }
  return {};
}

bool is_share(const LdifRecord& record) {
  return base::equals_fold(attribute_of(record, "objectClass"), kShareClass);
}

std::string share_name(const LdifRecord& record) {
  return parse_rdn(first_rdn(record.dn)).value;
}

FileShare to_share(const LdifRecord& record) {
  return {.name = share_name(record),
          .path = attribute_of(record, "path"),
          .comment = attribute_of(record, "description"),
          .max_users = base::to_number(attribute_of(record, "maxUserCount")).value_or(-1),
          .administrative = false};
}

LdifRecord to_record(const FileShare& share) {
  LdifRecord record;
  record.dn = make_rdn("CN", share.name) + ",CN=Shares";
  record.attributes = {{"objectClass", {std::string(kShareClass)}}, {"path", {share.path}}};
  if (!share.comment.empty())
    record.attributes.push_back({"description", {share.comment}});
  record.attributes.push_back({"maxUserCount", {base::to_text(share.max_users)}});
  return record;
}

std::vector<LdifRecord> read_records(const fs::path& server) {
  const std::string file = (server / "server.ldif").string();
  std::vector<LdifRecord> records;
  if (!fs::exists(file))
    return records;
  const local::Descriptor input = local::open_descriptor(file, O_RDONLY);
  read_ldif(local::read_all(input, file), [&](LdifRecord&& record) { records.push_back(std::move(record)); });
  return records;
}

/// Reads, changes and replaces "server.ldif" while no other process does.
void change_records(const fs::path& server, const std::function<void(std::vector<LdifRecord>&)>& change) {
  const std::string lock_file = (server / "server.lock").string();
  const local::Descriptor lock = local::open_descriptor(lock_file, O_RDWR | O_CREAT, 0600);
  local::lock_range(lock, local::Lock::kExclusive, 0, 1, lock_file);
  std::vector<LdifRecord> records = read_records(server);
  change(records);
  std::string text;
  for (const LdifRecord& record : records)
    append_ldif(text, record);
  local::replace_file((server / "server.ldif").string(), text, local::Access::kPrivate);
}

std::vector<LdifRecord>::iterator find_record(std::vector<LdifRecord>& records, std::string_view name) {
  return std::find_if(records.begin(), records.end(), [&](const LdifRecord& record) {
    return is_share(record) && base::equals_fold(share_name(record), name);
  });
}

bool is_drive(std::string_view name) {
  return name.size() == 1 && base::upper(name) >= "A" && base::upper(name) <= "Z";
}

/// The entry of `folder` whose name folds to `name`; one spelled the same wins.
std::optional<fs::path> find_folded(const fs::path& folder, std::string_view name,
                                    local::FoldedNames& names) {
  const auto found = names.find(folder.string(), name);
  return found ? std::optional(folder / *found) : std::nullopt;
}

std::optional<fs::path> find_folded(const fs::path& folder, std::string_view name) {
  local::FoldedNames names;
  return find_folded(folder, name, names);
}

void check_share(const fs::path& server, const FileShare& share) {
  static constexpr std::string_view kForbidden = "\"/\\[]:|<>+=;,*?";
  const auto refuse = [&](const std::string& why) {
    raise(ads_error::kConstraint, "The share name \"" + base::to_valid_utf8(share.name) + "\" " + why);
  };
  if (base::trim(share.name).empty())
    refuse("is empty");
  if (base::length(share.name) > kLongestShareName)
    refuse("is longer than 80 characters");
  if (share.name.find_first_of(kForbidden) != base::npos)
    refuse("holds a character that no share has");
  if (const auto control = base::find_control_character(share.name))
    refuse("holds the control character " + *control);
  local::FoldedNames names;
  if (share.path.empty() || !fs::is_directory(server_folder(server, share.path, names))) {
    raise(base::error::kPathNotFound, "The server has no folder " + share.path);
  }
}

FileShare drive_share(std::string_view drive) {
  const std::string letter = base::upper(drive);
  return {letter + "$", letter + ":\\", "Default share", -1, true};
}

bool is_drive_share(const fs::path& server, std::string_view name) {
  return name.size() == 2 && name[1] == '$' && is_drive(name.substr(0, 1)) &&
         find_folded(server, name.substr(0, 1)).has_value();
}

}  // namespace

std::optional<fs::path> find_server(const fs::path& servers, std::string_view name) {
  if (name.empty() || name == "." || name == ".." || name.find('/') != base::npos)
    return std::nullopt;
  auto found = find_folded(servers, name);
  return found && fs::is_directory(*found) ? found : std::nullopt;
}

std::vector<FileShare> read_shares(const fs::path& server) {
  std::vector<FileShare> shares;
  for (const fs::directory_entry& entry : fs::directory_iterator(server)) {
    const std::string name = entry.path().filename().string();
    if (!entry.is_directory() || !is_drive(name))
      continue;
    shares.push_back(drive_share(name));
  }
  std::sort(shares.begin(), shares.end(),
            [](const FileShare& a, const FileShare& b) { return a.name < b.name; });
  for (const LdifRecord& record : read_records(server)) {
    if (is_share(record))
      shares.push_back(to_share(record));
  }
  return shares;
}

std::optional<FileShare> find_share(const fs::path& server, std::string_view name) {
  if (is_drive_share(server, name))
    return drive_share(name.substr(0, 1));
  for (FileShare& share : read_shares(server)) {
    if (base::equals_fold(share.name, name))
      return std::move(share);
  }
  return std::nullopt;
}

void store_share(const fs::path& server, const FileShare& share, bool replace) {
  if (is_drive_share(server, share.name))
    raise(ads_error::kUnwilling, share.name + " is a drive's own share");
  check_share(server, share);
  change_records(server, [&](std::vector<LdifRecord>& records) {
    const auto found = find_record(records, share.name);
    if (found == records.end()) {
      records.push_back(to_record(share));
    } else if (replace) {
      *found = to_record(share);
    } else {
      raise(kShareExists, "The server has a share " + share.name + " already");
    }
  });
}

void remove_share(const fs::path& server, std::string_view name) {
  if (is_drive_share(server, name))
    raise(ads_error::kUnwilling, std::string(name) + " is a drive's own share");
  change_records(server, [&](std::vector<LdifRecord>& records) {
    const auto found = find_record(records, name);
    if (found == records.end())
      raise(kShareNotFound, "The server has no share " + std::string(name));
    records.erase(found);
  });
}

fs::path server_folder(const fs::path& server, std::string_view path, local::FoldedNames& names) {
  const auto refuse = [&] {
    raise(base::error::kPathNotFound, "The server has no path " + std::string(path));
  };
  if (path.size() < 2 || path[1] != ':' || !is_drive(path.substr(0, 1)))
    refuse();
  const auto drive = find_folded(server, path.substr(0, 1), names);
  if (!drive || path.find('\0') != base::npos)
    refuse();
  fs::path folder = *drive;
  std::string rest(path.substr(2));
  std::replace(rest.begin(), rest.end(), '/', '\\');
  for (const std::string& part : base::split(rest, '\\')) {
    if (part.empty() || part == ".")
      continue;
    if (part == "..")
      refuse();
    folder = find_folded(folder, part, names).value_or(folder / part);
  }
  return folder;
}

bool share_holds(const fs::path& server, const fs::path& folder) {
  const std::string top = folder.lexically_normal().string();
  local::FoldedNames names;
  for (const FileShare& share : read_shares(server)) {
    if (share.administrative)
      continue;
    const std::string held = server_folder(server, share.path, names).lexically_normal().string();
    if (held == top || held.starts_with(top + "/"))
      return true;
  }
  return false;
}

}  // namespace twk::lab
