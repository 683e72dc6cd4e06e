#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "lab/services/process_identity.hpp"
#include "lab/shares/file_server.hpp"
#include "local/posix_files.hpp"
#include "platform/files.hpp"

namespace twk::lab {

/// A network path of the lab: the server, the share that it goes through, and the server's path that it leads
/// to.
struct ServerPath {
  FileServer& server;
  FileShare share;
  std::string path;  ///< "D:\Users\jo"
};

/// Takes a network path apart. None for a path of the workstation. Raises 52 for a path without server and
/// share, 53 for a server or share that does not exist. A server that is already `known` is used as it is,
/// without reading what others have written to it since.
std::optional<ServerPath> locate(FileServers& servers, std::string_view path, FileServer* known = nullptr);

/// What the program may do there, by the descriptor and by the share's list.
std::uint32_t rights_at(ProcessIdentity& identity, const ServerPath& place);
/// The same for a descriptor that is at hand.
std::uint32_t rights_by(ProcessIdentity& identity, const ServerPath& place,
                        const platform::SecurityDescriptor& descriptor);

/// Network paths of a lab's file servers, as folders of the lab: "\\FS1\D$\Users" is "servers/FS1/D/Users",
/// and "\\FS1\Users\jo" is what the share "Users" leads to. Every part folds case. Any other path is the
/// workstation's.
///
/// Raises 53 for a server or share that does not exist, 76 for a path with "..", 70 for what the access lists
/// of folder and share do not permit and for a file that is locked, and 75 when a shared folder would
/// be removed.
class LabFiles final : public platform::Files {
 public:
  LabFiles(FileServers& servers, ProcessIdentity& identity, local::PosixFiles& workstation)
      : servers_(servers), identity_(identity), workstation_(workstation) {}

  bool exists(std::string_view path) override;
  bool is_directory(std::string_view path) override;
  void make_directory(std::string_view path) override;
  std::vector<platform::FileEntry> list(std::string_view path) override;
  platform::FileEntry status(std::string_view path) override;
  void remove_directory(std::string_view path) override;
  std::string read(std::string_view path) override;
  void write(std::string_view path, std::string_view bytes) override;
  void remove(std::string_view path) override;
  bool copy_file(std::string_view from, std::string_view to, bool replace,
                 const platform::CopyProgress& progress) override;
  void rename(std::string_view from, std::string_view to, bool replace) override;
  std::unique_ptr<platform::AppendFile> open_append(std::string_view path, bool truncate) override;
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override;
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override;

 private:
  /// Calls `copy` with the workstation's path of a file, first with the path exactly as spelled.
  static bool copy_from(const ServerPath& source, const std::function<bool(const std::string&)>& copy);
  /// The workstation's path for `path`.
  std::string local_path(std::string_view path);
  /// What the workstation says of a path; false for one that leads nowhere.
  bool holds(std::string_view path, bool (local::PosixFiles::*question)(std::string_view));
  /// The same; raises 70 when the program does not have all of `rights` there, or would change a locked file.
  std::string path_for(std::string_view path, std::uint32_t rights);
  /// The same for what may have to be made first.
  std::string path_for_writing(std::string_view path);

  void require_rights(const ServerPath& place, std::uint32_t rights);
  void require_addable(const ServerPath& place, bool folder);
  void require_removable(const ServerPath& place);
  void rename_with_descriptors(const ServerPath& source, const ServerPath& target);
  /// Something new is there: it has no descriptor from a predecessor, and the program's owner.
  void made(const ServerPath& place);

  FileServers& servers_;
  ProcessIdentity& identity_;
  local::PosixFiles& workstation_;
};

}  // namespace twk::lab
