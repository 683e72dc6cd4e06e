#include "lab/shares/folder_descriptors.hpp"

#include <algorithm>
#include <optional>
#include <vector>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/access_check.hpp"

namespace twk::lab {
namespace {

using platform::Acl;
using platform::SecurityDescriptor;
namespace access = platform::access;
namespace ace_flag = platform::ace_flag;
namespace well_known = platform::well_known;

constexpr std::string_view kFolders = "CN=Folders";
constexpr std::string_view kFolderDescriptor = "nTSecurityDescriptor";

/// The parts of a path, the drive as its letter in front.
std::vector<std::string> parts_of(std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of("\\/"), path.size());
    const std::string_view part = path.substr(0, end);
    if (!part.empty() && part != ".")
      parts.emplace_back(part);
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  if (!parts.empty() && parts.front().ends_with(':'))
    parts.front().pop_back();
  return parts;
}

std::string record_dn(const std::vector<std::string>& parts, std::size_t count) {
  std::string dn;
  for (std::size_t i = count; i > 0; --i)
    dn.append(ads::make_rdn("CN", parts[i - 1])).append(",");
  return dn.append(kFolders);
}
std::string record_dn(std::string_view path) {
  const std::vector<std::string> parts = parts_of(path);
  return record_dn(parts, parts.size());
}

/// Of the first parts of a path; the same for all spellings.
std::string folded_prefix(const std::vector<std::string>& parts, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += base::upper(parts[i]) + "\\";
  return text;
}

SecurityDescriptor drive_default() {
  constexpr std::uint8_t kForAll = ace_flag::kObjectInherit | ace_flag::kContainerInherit;
  constexpr std::uint32_t kReadAndExecute = access::kFileGenericRead | access::kFileGenericExecute;
  const std::vector<platform::Ace> entries = {
      {platform::ace_type::kAllow, kForAll, access::kFileAll, well_known::administrators()},
      {platform::ace_type::kAllow, kForAll, access::kFileAll, well_known::local_system()},
      {platform::ace_type::kAllow, kForAll | ace_flag::kInheritOnly, access::kGenericAll,
       well_known::creator_owner()},
      {platform::ace_type::kAllow, kForAll, kReadAndExecute, well_known::users()}};
  std::size_t size = Acl::kHeaderSize;
  for (const platform::Ace& ace : entries)
    size += ace.size();
  Acl list(size);
  for (const platform::Ace& ace : entries)
    list.add(Acl::kAtEnd, ace);
  SecurityDescriptor descriptor;
  descriptor.owner = well_known::administrators();
  descriptor.group = well_known::administrators();
  descriptor.set_dacl(std::move(list));
  return descriptor;
}

/// The first parts of a path as the server has it, "D:\\Users".
std::string path_text(const std::vector<std::string>& parts, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += i == 0 ? parts[i] + ":" : "\\" + parts[i];
  return text;
}

std::optional<SecurityDescriptor> stored_in(const Entry& entry, const std::string& path) {
  const auto bytes = entry.value(kFolderDescriptor);
  if (!bytes)
    return std::nullopt;
  try {
    return SecurityDescriptor::decode(base::Bytes(bytes->begin(), bytes->end()));
  } catch (const base::RuntimeError& failure) {
    base::raise(platform::security_error::kInvalidDescriptor, "The security descriptor of " + path + " (" +
                                                                  entry.dn() + " in server.ldif) cannot be " +
                                                                  "read: " + failure.description());
  }
}

SecurityDescriptor inherited(const SecurityDescriptor& folder, bool is_folder) {
  SecurityDescriptor descriptor;
  descriptor.owner = well_known::administrators();
  descriptor.group = folder.group;
  auto list = platform::inherited_list(folder, is_folder, *descriptor.owner);
  descriptor.dacl_present = list.has_value();
  descriptor.dacl = std::move(list);
  return descriptor;
}

}  // namespace

FolderDescriptors::FolderDescriptors(EntryStore& store, std::function<bool(std::string_view)> is_folder)
    : store_(store), is_folder_(std::move(is_folder)) {}

std::optional<SecurityDescriptor> FolderDescriptors::own(const std::vector<std::string>& parts,
                                                         std::size_t count) const {
  const Entry* const entry = store_.find(record_dn(parts, count));
  return entry == nullptr ? std::nullopt : stored_in(*entry, path_text(parts, count));
}

FolderDescriptors::Folder& FolderDescriptors::folder(const std::vector<std::string>& parts,
                                                     std::size_t count) const {
  std::string key = folded_prefix(parts, count);
  const auto known = folders_.find(key);
  if (known != folders_.end())
    return known->second;
  std::optional<SecurityDescriptor> descriptor = count == 0 ? std::nullopt : own(parts, count);
  if (!descriptor)
    descriptor = count <= 1 ? drive_default() : inherited(folder(parts, count - 1).own, true);
  return folders_.emplace(std::move(key), Folder{*std::move(descriptor)}).first->second;
}

void FolderDescriptors::forget_remembered(const std::string& key) const {
  const auto first = folders_.lower_bound(key);
  auto last = first;
  while (last != folders_.end() && last->first.starts_with(key))
    ++last;
  folders_.erase(first, last);
}

void FolderDescriptors::forget_outdated() const {
  constexpr std::size_t kMostRemembered = 1000;
  if (readings_ != store_.readings() || folders_.size() > kMostRemembered)
    folders_.clear();
  readings_ = store_.readings();
}

SecurityDescriptor FolderDescriptors::effective(std::string_view path) const {
  forget_outdated();
  const std::vector<std::string> parts = parts_of(path);
  const auto known = folders_.find(folded_prefix(parts, parts.size()));
  if (known != folders_.end())
    return known->second.own;
  const bool is_folder = parts.size() < 2 || is_folder_(path);
  return is_folder ? folder(parts, parts.size()).own : effective_of_file(path);
}

SecurityDescriptor FolderDescriptors::effective_of_file(std::string_view path) const {
  forget_outdated();
  const std::vector<std::string> parts = parts_of(path);
  if (parts.size() < 2)
    return folder(parts, parts.size()).own;
  if (auto descriptor = own(parts, parts.size()))
    return *std::move(descriptor);
  Folder& above = folder(parts, parts.size() - 1);
  if (!above.of_files)
    above.of_files = inherited(above.own, false);
  return *above.of_files;
}

std::string FolderDescriptors::make_record(const std::vector<std::string>& parts, std::size_t count,
                                           const std::string& descriptor) {
  std::string dn = record_dn(parts, count);
  const bool is_there = store_.find(dn) != nullptr;
  if (is_there && !descriptor.empty())
    store_.modify(dn, {{ModifyKind::kReplace, std::string(kFolderDescriptor), {descriptor}}}, nullptr);
  if (is_there)
    return dn;
  if (count > 0)
    make_record(parts, count - 1, {});
  std::vector<LdifAttribute> attributes{{"objectClass", {count == 0 ? "container" : "fileObject"}}};
  if (!descriptor.empty())
    attributes.push_back({std::string(kFolderDescriptor), {descriptor}});
  store_.add(dn, std::move(attributes), nullptr);
  return dn;
}

void FolderDescriptors::store(std::string_view path, const SecurityDescriptor& descriptor) {
  const std::vector<std::string> parts = parts_of(path);
  SecurityDescriptor stored = descriptor;
  if (stored.dacl)
    stored.dacl = stored.dacl->trimmed();
  const base::Bytes bytes = stored.encode();
  make_record(parts, parts.size(), std::string(bytes.begin(), bytes.end()));
  std::string key = folded_prefix(parts, parts.size());
  const bool is_folder = folders_.contains(key);
  forget_remembered(key);
  if (is_folder)
    folders_.emplace(std::move(key), Folder{SecurityDescriptor::decode(bytes)});
}

bool FolderDescriptors::is_locked(std::string_view path) const {
  const Entry* const entry = store_.find(record_dn(path));
  if (entry == nullptr)
    return false;
  const auto locked = entry->value("locked");
  return locked && base::equals_fold(*locked, "TRUE");
}

void FolderDescriptors::forget(std::string_view path) {
  const std::vector<std::string> parts = parts_of(path);
  forget_remembered(folded_prefix(parts, parts.size()));
  const Entry* const top = store_.find(record_dn(parts, parts.size()));
  if (top == nullptr)
    return;
  std::vector<std::string> names;
  store_.subtree(*top, [&](const Entry& entry) {
    names.push_back(entry.dn());
    return true;
  });
  for (auto name = names.rbegin(); name != names.rend(); ++name)
    store_.remove(*name, nullptr);
}

void FolderDescriptors::move(std::string_view from, std::string_view to) {
  folders_.clear();
  const std::string old_dn = record_dn(from);
  if (store_.find(old_dn) == nullptr)
    return;
  std::string new_dn = record_dn(to);
  if (ads::normalize_dn(new_dn) != ads::normalize_dn(old_dn))
    forget(to);
  const std::vector<std::string> parts = parts_of(to);
  const std::string parent = make_record(parts, parts.size() - 1, {});
  store_.rename(old_dn, ads::make_rdn("CN", parts.back()), parent, nullptr);
}

}  // namespace twk::lab
