#include "lab/shares/file_shares.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/store/errors.hpp"
#include "platform/share_name.hpp"

namespace twk::lab {
namespace {

using platform::SecurityDescriptor;

constexpr std::string_view kContainer = "CN=Shares";
constexpr std::string_view kShareClass = "fileShare";
constexpr std::string_view kDescriptor = "nTSecurityDescriptor";

std::string share_dn(std::string_view name) {
  return ads::make_rdn("CN", name) + "," + std::string(kContainer);
}

bool is_share(const Entry& entry) {
  const auto object_class = entry.value("objectClass");
  return object_class && base::equals_fold(*object_class, kShareClass);
}

FileShare to_share(const Entry& entry) {
  FileShare share;
  share.name = ads::parse_rdn(ads::first_rdn(entry.dn())).value;
  share.path = entry.value("path").value_or(std::string());
  share.comment = entry.value("description").value_or(std::string());
  share.max_users = base::to_number(entry.value("maxUserCount").value_or(std::string())).value_or(-1);
  const auto bytes = entry.value(kDescriptor);
  if (!bytes)
    return share;
  try {
    share.descriptor = SecurityDescriptor::decode(base::Bytes(bytes->begin(), bytes->end()));
  } catch (const base::RuntimeError& failure) {
    base::raise(platform::security_error::kInvalidDescriptor,
                "The security descriptor of the share " + share.name + " (" + entry.dn() +
                    " in server.ldif) cannot be read: " + failure.description());
  }
  return share;
}

std::vector<LdifAttribute> to_attributes(const FileShare& share) {
  std::vector<LdifAttribute> attributes = {{"objectClass", {std::string(kShareClass)}},
                                           {"path", {share.path}},
                                           {"maxUserCount", {base::to_text(share.max_users)}}};
  if (!share.comment.empty())
    attributes.push_back({"description", {share.comment}});
  if (share.descriptor) {
    const base::Bytes bytes = share.descriptor->encode();
    attributes.push_back({std::string(kDescriptor), {std::string(bytes.begin(), bytes.end())}});
  }
  return attributes;
}

/// The changes that turn the stored share into the other one.
std::vector<Modification> replacement(const Entry& stored, const FileShare& share) {
  std::vector<Modification> changes;
  for (const char* const name : {"description", "nTSecurityDescriptor"}) {
    if (stored.has(name))
      changes.push_back({ModifyKind::kReplace, name, {}});
  }
  for (LdifAttribute& attribute : to_attributes(share))
    changes.push_back({ModifyKind::kReplace, std::move(attribute.name), std::move(attribute.values)});
  return changes;
}

FileShare drive_share(std::string_view drive) {
  FileShare share;
  share.name = base::upper(drive) + "$";
  share.path = base::upper(drive) + ":\\";
  share.comment = "Default share";
  share.administrative = true;
  return share;
}

[[noreturn]] void refuse_drive_share(std::string_view name) {
  raise(ads_error::kUnwilling, std::string(name) + " is a drive's own share");
}

}  // namespace

std::string folded_path(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  std::string folded;
  for (const std::string& part : base::split(text, '\\')) {
    if (!part.empty() && part != ".")
      folded += base::upper(part) + "\\";
  }
  return folded;
}

FileShares::FileShares(EntryStore& store, std::function<std::vector<std::string>()> drives,
                       std::function<bool(std::string_view)> has_folder)
    : store_(store), drives_(std::move(drives)), has_folder_(std::move(has_folder)) {}

bool FileShares::is_drive_share(std::string_view name) const {
  if (name.size() != 2 || name[1] != '$')
    return false;
  if (known_drives_.find(name[0]) != std::string::npos)
    return true;
  if (!has_folder_(std::string(name.substr(0, 1)) + ":\\"))
    return false;
  known_drives_ += name[0];
  return true;
}

void FileShares::check(const FileShare& share) const {
  if (const std::string fault = platform::share_name_fault(share.name); !fault.empty())
    raise(ads_error::kConstraint, "The share name \"" + base::to_valid_utf8(share.name) + "\" " + fault);
  if (share.path.empty() || !has_folder_(share.path))
    raise(base::error::kPathNotFound, "The server has no folder " + share.path);
}

std::vector<FileShare> FileShares::all() {
  std::vector<FileShare> shares;
  for (const std::string& drive : drives_())
    shares.push_back(drive_share(drive));
  store_.children(kContainer, [&](const Entry& entry) {
    if (is_share(entry))
      shares.push_back(to_share(entry));
    return true;
  });
  return shares;
}

std::optional<FileShare> FileShares::find(std::string_view name) {
  if (is_drive_share(name))
    return drive_share(name.substr(0, 1));
  const Entry* const entry = store_.find(share_dn(name));
  return entry != nullptr && is_share(*entry) ? std::optional(to_share(*entry)) : std::nullopt;
}

void FileShares::store(const FileShare& share, bool replace) {
  if (is_drive_share(share.name))
    refuse_drive_share(share.name);
  check(share);
  if (store_.find(kContainer) == nullptr)
    store_.add(std::string(kContainer), {{"objectClass", {"container"}}}, nullptr);
  const std::string dn = share_dn(share.name);
  const Entry* const stored = store_.find(dn);
  if (stored == nullptr) {
    try {
      store_.add(dn, to_attributes(share), nullptr);
    } catch (const base::RuntimeError& failure) {
      // Another program was faster.
      if (failure.number() == ads_error::kObjectExists)
        raise(kShareExists, "The server has a share " + share.name + " already");
      throw;
    }
    paths_.insert(folded_path(share.path));
    return;
  }
  if (!replace)
    raise(kShareExists, "The server has a share " + share.name + " already");
  const std::string old_path = to_share(*stored).path;
  store_.modify(dn, replacement(*stored, share), nullptr);
  forget_path(old_path);
  paths_.insert(folded_path(share.path));
}

void FileShares::remove(std::string_view name) {
  if (is_drive_share(name))
    refuse_drive_share(name);
  const auto share = find(name);
  if (!share)
    raise(kShareNotFound, "The server has no share " + std::string(name));
  store_.remove(share_dn(name), nullptr);
  forget_path(share->path);
}

void FileShares::forget_path(std::string_view path) {
  const auto found = paths_.find(folded_path(path));
  if (found != paths_.end())
    paths_.erase(found);
}

/// Reads the paths again when others may have changed the store.
void FileShares::read_paths() {
  if (paths_read_ == store_.readings())
    return;
  paths_.clear();
  for (const FileShare& share : all()) {
    if (!share.administrative)
      paths_.insert(folded_path(share.path));
  }
  paths_read_ = store_.readings();
}

bool FileShares::hold(std::string_view path) {
  read_paths();
  const std::string top = folded_path(path);
  const auto found = paths_.lower_bound(top);
  return found != paths_.end() && found->starts_with(top);
}

}  // namespace twk::lab
