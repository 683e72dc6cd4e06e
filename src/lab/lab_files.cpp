#include "lab/lab_files.hpp"

#include <algorithm>
#include <optional>

#include "base/text.hpp"
#include "lab/errors.hpp"
#include "lab/file_shares.hpp"

namespace twk::lab {
namespace {

struct NetworkPath {
  std::string server;
  std::string share;
  std::string rest;  ///< with its leading backslash; may be empty
};

/// None for a path of the workstation.
std::optional<NetworkPath> split_network_path(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  if (!text.starts_with("\\\\") || path.starts_with('/'))
    return std::nullopt;
  const std::size_t server_end = text.find('\\', 2);
  if (server_end == base::npos || server_end == 2) {
    raise(base::error::kBadFileName, "Not a path of a file server: " + std::string(path));
  }
  const std::size_t share_end = std::min(text.find('\\', server_end + 1), text.size());
  return NetworkPath{text.substr(2, server_end - 2), text.substr(server_end + 1, share_end - server_end - 1),
                     text.substr(share_end)};
}

std::filesystem::path require_server(const std::filesystem::path& servers, const std::string& name) {
  auto folder = find_server(servers, name);
  if (!folder)
    raise(base::error::kFileNotFound, "The network path was not found: \\\\" + name);
  return *std::move(folder);
}

}  // namespace

LabFiles::LabFiles(std::filesystem::path servers, platform::Files& workstation,
                   std::shared_ptr<local::FoldedNames> names)
    : servers_(std::move(servers)), workstation_(workstation), names_(std::move(names)) {}

std::string LabFiles::local_path(std::string_view path) const {
  const auto network = split_network_path(path);
  if (!network)
    return std::string(path);
  const std::filesystem::path server = require_server(servers_, network->server);
  const auto share = find_share(server, network->share);
  if (!share) {
    raise(base::error::kFileNotFound,
          "The network name was not found: \\\\" + network->server + "\\" + network->share);
  }
  return server_folder(server, share->path + network->rest, *names_).string();
}

void LabFiles::require_not_held(std::string_view path) const {
  const auto network = split_network_path(path);
  if (!network)
    return;
  if (share_holds(require_server(servers_, network->server), local_path(path))) {
    raise(base::error::kPathFileAccess, "A share holds the folder " + std::string(path));
  }
}

bool LabFiles::exists(std::string_view path) {
  bool found = false;
  base::Trap unreachable;
  unreachable([&] { found = workstation_.exists(local_path(path)); });
  return found;
}

bool LabFiles::is_directory(std::string_view path) {
  bool found = false;
  base::Trap unreachable;
  unreachable([&] { found = workstation_.is_directory(local_path(path)); });
  return found;
}

void LabFiles::make_directory(std::string_view path) {
  workstation_.make_directory(local_path(path));
}
std::vector<platform::FileEntry> LabFiles::list(std::string_view path) {
  return workstation_.list(local_path(path));
}
std::string LabFiles::read(std::string_view path) {
  return workstation_.read(local_path(path));
}

void LabFiles::write(std::string_view path, std::string_view bytes) {
  workstation_.write(local_path(path), bytes);
}

void LabFiles::remove(std::string_view path) {
  require_not_held(path);
  workstation_.remove(local_path(path));
}

void LabFiles::rename(std::string_view from, std::string_view to, bool replace) {
  require_not_held(from);
  workstation_.rename(local_path(from), local_path(to), replace);
}

std::unique_ptr<platform::AppendFile> LabFiles::open_append(std::string_view path, bool truncate) {
  return workstation_.open_append(local_path(path), truncate);
}

std::unique_ptr<platform::RandomFile> LabFiles::open_random(std::string_view path) {
  return workstation_.open_random(local_path(path));
}

std::unique_ptr<platform::RandomFile> LabFiles::open_random_read(std::string_view path) {
  return workstation_.open_random_read(local_path(path));
}

}  // namespace twk::lab
