#pragma once

#include "live/files/smb_client.hpp"
#include "platform/files.hpp"

namespace twk::live {

/// Network paths as the file servers give them; any other path is the workstation's.
///
/// Raises 53 for a server or share that is not there, 76 for a path with "..". What servers do not give:
/// - A new file is written in its place, since who may make a file may not always rename it: a crash leaves a
///   part. One that is there is replaced by a finished one.
/// - Renaming within a share takes what stands in the way away first: a crash in between leaves the new file
///   under its old name. Between shares nothing is renamed (74).
/// - A folder that a share holds may be renamed and taken away: a server does not guard it.
/// - Nothing is copied from a server to the workstation (75).
/// - Records are not read and written on a network path, for the library cannot lock parts of a file there:
///   `open_random` and `open_random_read` raise 75. A database folder on a server is to be mounted.
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
