#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "live/files/smb_path.hpp"
#include "live/logon/credentials.hpp"
#include "platform/files.hpp"

struct _SMBCCTX;  // NOLINT(bugprone-reserved-identifier): the library's name

namespace twk::live {

/// An open file; closed with the object.
class SmbFile {
 public:
  virtual ~SmbFile() = default;
  /// Fewer bytes than `count` at the end of the file.
  virtual std::string read(std::uint64_t offset, std::size_t count) = 0;
  /// All bytes.
  virtual void write(std::uint64_t offset, std::string_view bytes) = 0;
  virtual std::uint64_t size() = 0;
};

enum class SmbOpen {
  kRead,
  kWrite,    ///< created when there is none
  kReplace,  ///< created, or emptied
  kNew       ///< refused when it exists
};

/// The file protocol of servers, with the logon of the settings: the Kerberos ticket, or user and password.
///
/// A connection that was lost is opened once more. What is safe to repeat is repeated; for a new folder,
/// it is first checked whether it was made.
///
/// Every call raises the numbers of `platform::Files`, with the path in the text.
class SmbClient {
 public:
  explicit SmbClient(std::shared_ptr<Credentials> credentials);
  /// With a logon that never prompts.
  explicit SmbClient(const LiveSettings& settings)
      : SmbClient(std::make_shared<Credentials>(settings, Prompts{})) {}
  SmbClient(const SmbClient&) = delete;
  SmbClient& operator=(const SmbClient&) = delete;
  ~SmbClient();

  /// What a path refers to; `name` is left empty. A link counts as what it leads to.
  platform::FileEntry status(const SmbPath& path);
  /// What a folder holds, in the server's order, without itself and its parent.
  std::vector<platform::FileEntry> list(const SmbPath& path);
  void make_directory(const SmbPath& path);
  void remove_directory(const SmbPath& path);
  void remove_file(const SmbPath& path);
  /// Sets the time of the last change, in nanoseconds since 1970 UTC, to the microsecond.
  void set_modified(const SmbPath& path, std::int64_t modified);
  /// Within one share. A file of the new name is removed first.
  void rename(const SmbPath& from, const SmbPath& to);
  std::unique_ptr<SmbFile> open(const SmbPath& path, SmbOpen how);

  /// An extended attribute: security descriptors are read and written as such. Raises the numbers of
  /// `platform::Security`.
  std::string attribute(const SmbPath& path, const std::string& name);
  void set_attribute(const SmbPath& path, const std::string& name, const std::string& value);

 private:
  friend class SmbOpenFile;
  _SMBCCTX* context();
  /// Raises 53 when the server is silent, and kStopped when the person does not wait for it. A server is
  /// asked before the first call to it. While it is silent, it is asked again at times, with a short wait: a
  /// run over many users is not to wait for it at each.
  void require_answer(const std::string& server);
  /// Runs a call on a path, and once more when the connection or its session was lost and `done` does not
  /// report it as made. Returns 0 or a value of errno.
  int run(const SmbPath& path, const std::function<bool()>& call, const std::function<bool()>& done = {});
  /// Raises what is wrong with the person's ticket, if anything.
  void require_ticket(std::string_view action, const SmbPath& path);
  [[noreturn]] void fail(int error, std::string_view action, const SmbPath& path);
  [[noreturn]] void fail_security(int error, std::string_view action, const SmbPath& path);
  [[nodiscard]] bool answers(const SmbPath& path);
  [[nodiscard]] bool is_empty_folder(const SmbPath& path);

  std::shared_ptr<Credentials> credentials_;
  struct Handle;
  std::unique_ptr<Handle> handle_;
  struct Server {
    std::string silence;  ///< why it cannot be talked to; empty when it answers
    std::chrono::steady_clock::time_point asked;
  };
  std::map<std::string, Server> servers_;
};

}  // namespace twk::live
