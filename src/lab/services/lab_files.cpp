#include "lab/services/lab_files.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "lab/store/errors.hpp"
#include "platform/access_check.hpp"
#include "platform/network_path.hpp"

namespace twk::lab {
namespace {

namespace access = platform::access;

constexpr std::uint32_t kChanging = access::kFileWriteData | access::kFileAppendData;

/// The folder that contains something; a drive contains itself.
ServerPath folder_of(const ServerPath& place) {
  ServerPath folder = place;
  const std::size_t end = place.path.find_last_not_of('\\');
  const std::size_t slash = place.path.rfind('\\', end);
  if (slash != base::npos)
    folder.path = place.path.substr(0, std::max<std::size_t>(slash, 2)) + (slash <= 2 ? "\\" : "");
  return folder;
}

/// True when renaming alone cannot take a file from one to the other.
bool is_other_drive(const std::optional<ServerPath>& source, const std::optional<ServerPath>& target) {
  if (!source || !target)
    return source.has_value() != target.has_value();
  return &source->server != &target->server ||
         base::upper(source->path.substr(0, 1)) != base::upper(target->path.substr(0, 1));
}

[[noreturn]] void deny(const ServerPath& place) {
  raise(base::error::kPermissionDenied, "Access is denied: " + place.path + " on " + place.server.name());
}

}  // namespace

std::optional<ServerPath> locate(FileServers& servers, std::string_view path, FileServer* known) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  if (!text.starts_with("\\\\") || path.starts_with('/'))
    return std::nullopt;
  const platform::NetworkPath parts = platform::take_apart(text);
  if (parts.server.empty())
    raise(base::error::kBadFileName, "Not a path of a file server: " + std::string(path));
  const std::string name(parts.server);
  const bool is_known = known != nullptr && base::equals_fold(known->name(), name);
  FileServer* const server = is_known ? known : servers.find(name);
  if (server == nullptr)
    raise(base::error::kFileNotFound, "The network path was not found: \\\\" + name);
  auto share = server->shares().find(parts.share);
  if (!share)
    raise(base::error::kFileNotFound,
          "The network name was not found: \\\\" + name + "\\" + std::string(parts.share));
  std::string server_path = share->path + std::string(parts.tail);
  return ServerPath{*server, *std::move(share), std::move(server_path)};
}

std::uint32_t rights_by(ProcessIdentity& identity, const ServerPath& place,
                        const platform::SecurityDescriptor& descriptor) {
  const std::uint32_t rights = identity.rights(descriptor);
  if (!place.share.descriptor)
    return rights;
  return rights & platform::granted_access(*place.share.descriptor, identity.identifiers());
}

std::uint32_t rights_at(ProcessIdentity& identity, const ServerPath& place) {
  return rights_by(identity, place, place.server.descriptors().effective(place.path));
}

std::string LabFiles::local_path(std::string_view path) {
  const auto place = locate(servers_, path);
  return place ? place->server.local_path(place->path) : std::string(path);
}

void LabFiles::require_rights(const ServerPath& place, std::uint32_t rights) {
  if ((rights_at(identity_, place) & rights) != rights)
    deny(place);
  if ((rights & kChanging) != 0 && place.server.descriptors().is_locked(place.path)) {
    raise(base::error::kPermissionDenied,
          "The file is open in another program: " + place.path + " on " + place.server.name());
  }
}

void LabFiles::require_addable(const ServerPath& place, bool folder) {
  require_rights(folder_of(place), folder ? access::kFileAppendData : access::kFileWriteData);
}

void LabFiles::require_removable(const ServerPath& place) {
  if (place.server.shares().hold(place.path))
    raise(base::error::kPathFileAccess, "The folder is shared: " + place.path);
  if (place.server.descriptors().is_locked(place.path)) {
    raise(base::error::kPermissionDenied,
          "The file is open in another program: " + place.path + " on " + place.server.name());
  }
  const bool may = (rights_at(identity_, place) & access::kDelete) != 0 ||
                   (rights_at(identity_, folder_of(place)) & access::kFileDeleteChild) != 0;
  if (!may)
    deny(place);
}

void LabFiles::made(const ServerPath& place) {
  FolderDescriptors& descriptors = place.server.descriptors();
  descriptors.forget(place.path);
  if (identity_.is_administrator())
    return;
  platform::SecurityDescriptor descriptor = descriptors.effective(place.path);
  descriptor.owner = identity_.default_owner();
  descriptors.store(place.path, descriptor);
}

std::string LabFiles::path_for(std::string_view path, std::uint32_t rights) {
  const auto place = locate(servers_, path);
  if (!place)
    return std::string(path);
  std::string local = place->server.local_path(place->path);
  if (workstation_.exists(local))
    require_rights(*place, rights);
  return local;
}

std::string LabFiles::path_for_writing(std::string_view path) {
  const auto place = locate(servers_, path);
  if (!place)
    return std::string(path);
  std::string local = place->server.local_path(place->path);
  if (workstation_.exists(local)) {
    require_rights(*place, access::kFileWriteData);
  } else {
    require_addable(*place, false);
    made(*place);
  }
  return local;
}

bool LabFiles::copy_from(const ServerPath& source, const std::function<bool(const std::string&)>& copy) {
  const std::string spelled = source.server.spelled_path(source.path);
  bool whole = false;
  base::Trap trap;
  if (trap([&] { whole = copy(spelled); }))
    return whole;
  const bool missing =
      trap.number() == base::error::kFileNotFound || trap.number() == base::error::kPathNotFound;
  std::string folded;
  if (missing)
    folded = source.server.local_path(source.path);
  if (!missing || folded == spelled)
    base::raise(trap.number(), trap.description());
  return copy(folded);
}

bool LabFiles::holds(std::string_view path, bool (local::PosixFiles::*question)(std::string_view)) {
  bool found = false;
  base::Trap unreachable;
  unreachable([&] {
    const auto place = locate(servers_, path);
    const std::string spelled = place ? place->server.spelled_path(place->path) : std::string(path);
    found = (workstation_.*question)(spelled);
    if (found || !place)
      return;
    const std::string folded = place->server.local_path_of_new(place->path);
    found = folded != spelled && (workstation_.*question)(folded);
  });
  return found;
}

bool LabFiles::exists(std::string_view path) {
  return holds(path, &local::PosixFiles::exists);
}

bool LabFiles::is_directory(std::string_view path) {
  return holds(path, &local::PosixFiles::is_directory);
}

void LabFiles::make_directory(std::string_view path) {
  const auto place = locate(servers_, path);
  if (!place)
    return workstation_.make_directory(path);
  const std::string local = place->server.local_path_of_new(place->path);
  base::Trap refused;
  // A folder that exists is reported as such.
  if (!refused([&] { require_addable(*place, true); }) && !workstation_.exists(local))
    base::raise(refused.number(), refused.description());
  workstation_.make_directory(local);
  made(*place);
}

std::vector<platform::FileEntry> LabFiles::list(std::string_view path) {
  return workstation_.list(path_for(path, access::kFileReadData));
}

platform::FileEntry LabFiles::status(std::string_view path) {
  return workstation_.status(local_path(path));
}

void LabFiles::remove_directory(std::string_view path) {
  const auto place = locate(servers_, path);
  if (!place)
    return workstation_.remove_directory(path);
  require_removable(*place);
  workstation_.remove_directory(place->server.local_path(place->path));
  place->server.descriptors().forget(place->path);
}

std::string LabFiles::read(std::string_view path) {
  return workstation_.read(path_for(path, access::kFileReadData));
}

void LabFiles::write(std::string_view path, std::string_view bytes) {
  workstation_.write(path_for_writing(path), bytes);
}

void LabFiles::remove(std::string_view path) {
  const auto place = locate(servers_, path);
  if (!place)
    return workstation_.remove(path);
  require_removable(*place);
  workstation_.remove(place->server.local_path(place->path));
  place->server.descriptors().forget(place->path);
}

bool LabFiles::copy_file(std::string_view from, std::string_view to, bool replace,
                         const platform::CopyProgress& progress) {
  const auto source = locate(servers_, from);
  if (source) {
    // A folder is refused by the copy itself.
    const auto descriptor = source->server.descriptors().effective_of_file(source->path);
    if ((rights_by(identity_, *source, descriptor) & access::kFileReadData) == 0)
      deny(*source);
  }
  const auto target = replace ? std::nullopt : locate(servers_, to, source ? &source->server : nullptr);
  if (!source || !target) {
    const std::string local_source = source ? source->server.local_path(source->path) : std::string(from);
    return workstation_.copy_file(local_source, path_for_writing(to), replace, progress);
  }
  require_addable(*target, false);
  const std::string local_target = target->server.local_path_of_new(target->path);
  const bool whole = copy_from(*source, [&](const std::string& local_source) {
    return workstation_.copy_to_new(local_source, local_target, progress);
  });
  if (whole)
    made(*target);
  return whole;
}

void LabFiles::rename(std::string_view from, std::string_view to, bool replace) {
  const auto source = locate(servers_, from);
  const auto target = locate(servers_, to);
  if (is_other_drive(source, target))
    raise(base::error::kDifferentDrive, "cannot rename " + std::string(from) + " to another drive");
  if (source)
    require_removable(*source);
  if (target)
    require_addable(*target, status(from).directory);
  const bool same_server = source && target && &source->server == &target->server;
  if (same_server && !workstation_.exists(local_path(to)))
    return rename_with_descriptors(*source, *target);
  workstation_.rename(local_path(from), local_path(to), replace);
  if (same_server)
    source->server.descriptors().move(source->path, target->path);
}

/// The descriptors first: should the program be killed in between, the same renaming finds them in their
/// place.
void LabFiles::rename_with_descriptors(const ServerPath& source, const ServerPath& target) {
  FolderDescriptors& descriptors = source.server.descriptors();
  descriptors.move(source.path, target.path);
  try {
    workstation_.rename(source.server.local_path(source.path), target.server.local_path(target.path), false);
  } catch (const base::RuntimeError&) {
    descriptors.move(target.path, source.path);
    throw;
  }
}

std::unique_ptr<platform::AppendFile> LabFiles::open_append(std::string_view path, bool truncate) {
  return workstation_.open_append(path_for_writing(path), truncate);
}

std::unique_ptr<platform::RandomFile> LabFiles::open_random(std::string_view path) {
  return workstation_.open_random(path_for_writing(path));
}

std::unique_ptr<platform::RandomFile> LabFiles::open_random_read(std::string_view path) {
  return workstation_.open_random_read(path_for(path, access::kFileReadData));
}

}  // namespace twk::lab
