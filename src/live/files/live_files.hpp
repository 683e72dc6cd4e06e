#pragma once

#include "live/files/smb_client.hpp"
#include "platform/files.hpp"

namespace twk::live {

/// Network paths on real file servers; any other path is the workstation's.
///
/// Raises 53 for a server or share that does not exist, 76 for a path with "..". Limits of servers:
///
///   - A new file is written in place, because the right to create a file need not include renaming it: a
///     crash leaves a part. An existing file is replaced by a finished one.
///   - Renaming within a share first removes what is in the way: a crash in between leaves the new file under
///     its old name. Between shares nothing is renamed (74).
///   - A shared folder may be renamed and removed: a server does not protect it.
///   - Nothing is copied from a server to the workstation (75).
///   - Records are not read or written on a network path, because the library cannot lock parts of a file
///     there: `open_random` and `open_random_read` raise 75. A database folder on a server must be mounted.
class LiveFiles final : public platform::Files {
 public:
  LiveFiles(SmbClient& client, platform::Files& workstation) : client_(client), workstation_(workstation) {}

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
  bool is_there(const SmbPath& path);
  SmbClient& client_;
  platform::Files& workstation_;
};

}  // namespace twk::live
