#include "lab/file_server.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/errors.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAccounts = "CN=Accounts";

/// A link counts as itself.
bool is_there(const fs::path& path) {
  std::error_code unreadable;
  return fs::exists(fs::symlink_status(path, unreadable));
}

bool is_drive(std::string_view name) {
  return name.size() == 1 && base::upper(name) >= "A" && base::upper(name) <= "Z";
}

}  // namespace

FileServer::FileServer(fs::path folder, std::shared_ptr<local::FoldedNames> names,
                       const std::function<void(const std::string&)>& warn)
    : folder_(std::move(folder)),
      names_(std::move(names)),
      store_(open_entry_store(folder_, "server", warn)),
      shares_(
          *store_, [this] { return drives(); }, [this](std::string_view path) { return has_folder(path); }),
      descriptors_(*store_, [this](std::string_view path) { return has_folder(path); }) {
  // A file server does not wait for its disk at each change of a share or a descriptor.
  store_->begin_batch();
}

fs::path FileServer::local_path(std::string_view path) const {
  const auto refuse = [&] {
    raise(base::error::kPathNotFound, "The server has no path " + std::string(path));
  };
  if (path.size() < 2 || path[1] != ':' || !is_drive(path.substr(0, 1)))
    refuse();
  if (path.find('\0') != base::npos)
    refuse();
  std::string rest(path.substr(2));
  std::replace(rest.begin(), rest.end(), '/', '\\');
  std::vector<std::string> parts;
  for (std::string& part : base::split(rest, '\\')) {
    if (part == "..")
      refuse();
    if (!part.empty() && part != ".")
      parts.push_back(std::move(part));
  }
  fs::path spelled = folder_ / path.substr(0, 1);
  for (const std::string& part : parts)
    spelled /= part;
  // What stands as it is spelled, or in a folder that does, needs no look at each part.
  if (is_there(spelled))
    return spelled;
  if (!parts.empty()) {
    const fs::path above = spelled.parent_path();
    const auto found = names_->find_other_case(above.string(), parts.back());
    if (found.folder_is_there)
      return above / found.name.value_or(parts.back());
  }
  const auto drive = names_->find(folder_.string(), path.substr(0, 1));
  if (!drive)
    refuse();
  fs::path folder = folder_ / *drive;
  for (const std::string& part : parts)
    folder /= names_->find(folder.string(), part).value_or(part);
  return folder;
}

bool FileServer::has_folder(std::string_view path) const {
  std::error_code unreadable;
  base::Trap trap;
  bool found = false;
  trap([&] { found = fs::is_directory(local_path(path), unreadable); });
  return found;
}

std::vector<std::string> FileServer::drives() const {
  std::vector<std::string> letters;
  std::error_code unreadable;
  for (const auto& entry : fs::directory_iterator(folder_, unreadable)) {
    const std::string name = entry.path().filename().string();
    if (is_drive(name) && entry.is_directory(unreadable))
      letters.push_back(base::upper(name));
  }
  std::sort(letters.begin(), letters.end());
  return letters;
}

bool FileServer::is_domain_member() const {
  const Entry* const entry = store_->find("CN=Server");
  return entry == nullptr ||
         !base::equals_fold(entry->value("domainMember").value_or(std::string()), "FALSE");
}

std::optional<platform::Sid> FileServer::find_account(std::string_view name) const {
  const Entry* const entry = store_->find(ads::make_rdn("CN", name) + "," + std::string(kAccounts));
  return entry == nullptr ? std::nullopt
                          : platform::Sid::parse(entry->value("objectSid").value_or(std::string()));
}

std::optional<std::string> FileServer::account_name(const platform::Sid& sid) const {
  std::optional<std::string> name;
  store_->children(kAccounts, [&](const Entry& entry) {
    const auto stored = entry.value("objectSid");
    if (stored && platform::Sid::parse(*stored) == sid)
      name = ads::parse_rdn(ads::first_rdn(entry.dn())).value;
    return !name;
  });
  return name;
}

FileServers::FileServers(fs::path folder, std::shared_ptr<local::FoldedNames> names,
                         std::function<void(const std::string&)> warn)
    : folder_(std::move(folder)), names_(std::move(names)), warn_(std::move(warn)) {}

FileServer* FileServers::find(std::string_view name) {
  if (name.starts_with("\\\\"))
    name.remove_prefix(2);
  if (name.empty() || name == "." || name == ".." ||
      name.find_first_of(std::string_view("/\\\0", 3)) != base::npos)
    return nullptr;
  const auto known = servers_.find(name);
  if (known != servers_.end()) {
    known->second->refresh();
    return known->second.get();
  }
  const auto found = names_->find(folder_.string(), name);
  std::error_code unreadable;
  if (!found || !fs::is_directory(folder_ / *found, unreadable))
    return nullptr;
  std::unique_ptr<FileServer>& server = servers_[*found];
  if (server == nullptr)
    server = std::make_unique<FileServer>(folder_ / *found, names_, warn_);
  else
    server->refresh();
  return server.get();
}

}  // namespace twk::lab
