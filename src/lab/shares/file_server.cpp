#include "lab/shares/file_server.hpp"

#include <sys/stat.h>

#include <algorithm>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAccounts = "CN=Accounts";

/// A link counts as itself.
bool is_there(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

bool is_drive(std::string_view name) {
  const char letter = name.size() == 1 ? name.front() : '\0';
  return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

}  // namespace

// A file server does not wait for its disk after each change of a share or a descriptor.
FileServer::FileServer(fs::path folder, std::shared_ptr<local::FoldedNames> names, local::TurnPtr turn,
                       const std::function<void(const std::string&)>& warn)
    : folder_(std::move(folder)),
      root_(folder_.string()),
      name_(folder_.filename().string()),
      names_(std::move(names)),
      store_(open_entry_store(folder_, "server", warn, {std::move(turn), false})),
      shares_(
          *store_, [this] { return drives(); }, [this](std::string_view path) { return has_folder(path); }),
      descriptors_(*store_, [this](std::string_view path) { return has_folder(path); }) {}

std::vector<std::string> FileServer::parts_of(std::string_view path) const {
  const auto refuse = [&] {
    raise(base::error::kPathNotFound, "The server has no path " + std::string(path));
  };
  if (path.size() < 2 || path[1] != ':' || !is_drive(path.substr(0, 1)))
    refuse();
  if (path.find('\0') != base::npos)
    refuse();
  std::string rest(path.substr(2));
  std::replace(rest.begin(), rest.end(), '/', '\\');
  std::vector<std::string> parts{std::string(path.substr(0, 1))};
  for (std::string& part : base::split(rest, '\\')) {
    if (part == "..")
      refuse();
    if (!part.empty() && part != ".")
      parts.push_back(std::move(part));
  }
  return parts;
}

std::string FileServer::spelled_path(std::string_view path) const {
  std::string spelled = root_;
  for (const std::string& part : parts_of(path))
    spelled += "/" + part;
  return spelled;
}

std::string FileServer::local_path(std::string_view path) const {
  // A path that exists as spelled needs no check of each part.
  std::string spelled = spelled_path(path);
  return is_there(spelled) ? spelled : folded_path(parts_of(path));
}

std::string FileServer::local_path_of_new(std::string_view path) const {
  return folded_path(parts_of(path));
}

std::string FileServer::folded_path(const std::vector<std::string>& parts) const {
  std::string folder = root_;
  for (std::size_t i = 0; i + 1 < parts.size(); ++i)
    folder += "/" + parts[i];
  // Nor does one in a folder that exists as spelled.
  if (parts.size() > 1) {
    const auto found = names_->find_other_case(folder, parts.back());
    if (found.folder_is_there)
      return folder + "/" + found.name.value_or(parts.back());
  }
  const auto drive = names_->find(root_, parts.front());
  if (!drive)
    raise(base::error::kPathNotFound, "The server has no drive " + parts.front());
  folder = root_ + "/" + *drive;
  for (std::size_t i = 1; i < parts.size(); ++i)
    folder += "/" + names_->find(folder, parts[i]).value_or(parts[i]);
  return folder;
}

bool FileServer::has_folder(std::string_view path) const {
  std::error_code unreadable;
  base::Trap trap;
  bool found = false;
  trap([&] {
    const std::string spelled = spelled_path(path);
    found = fs::is_directory(spelled, unreadable);
    if (!found && !is_there(spelled))
      found = fs::is_directory(local_path_of_new(path), unreadable);
  });
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

FileServers::FileServers(fs::path folder, std::shared_ptr<local::FoldedNames> names, local::TurnPtr turn,
                         std::function<void(const std::string&)> warn)
    : folder_(std::move(folder)), names_(std::move(names)), turn_(std::move(turn)), warn_(std::move(warn)) {}

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
    server = std::make_unique<FileServer>(folder_ / *found, names_, turn_, warn_);
  else
    server->refresh();
  return server.get();
}

}  // namespace twk::lab
