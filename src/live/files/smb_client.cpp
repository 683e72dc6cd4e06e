#include "live/files/smb_client.hpp"

#include <fcntl.h>
#include <libsmbclient.h>
#include <netdb.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/logon/logon_name.hpp"
#include "live/logon/network_probe.hpp"
#include "live/terms/error_numbers.hpp"
#include "local/file_errors.hpp"
#include "platform/acl.hpp"

namespace twk::live {
namespace {

constexpr mode_t kNewMode = 0770;
constexpr std::size_t kFirstAttributeBuffer = 8192;
constexpr std::size_t kLastAttributeBuffer = std::size_t{1} << 20;
constexpr std::uint16_t kDirectoryAttribute = 0x10;  // FILE_ATTRIBUTE_DIRECTORY, [MS-FSCC] 2.6
constexpr std::uint16_t kReparseAttribute = 0x400;   // FILE_ATTRIBUTE_REPARSE_POINT

bool is_server_lost(int error) {
  constexpr std::array kLost = {ECONNRESET, ECONNABORTED, ENOTCONN, EPIPE, ESHUTDOWN, ENETRESET};
  return std::find(kLost.begin(), kLost.end(), error) != kLost.end();
}

/// A server that does not answer counts as missing.
std::uint32_t file_number(int error) {
  constexpr std::array kUnreachable = {ENODEV, EHOSTUNREACH, ENETUNREACH, ECONNREFUSED, ETIMEDOUT};
  if (std::find(kUnreachable.begin(), kUnreachable.end(), error) != kUnreachable.end())
    return base::error::kFileNotFound;
  return local::number_of_file_error(error, true);
}

void put(char* target, int size, std::string_view text) {
  if (size <= 0)
    return;
  const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
  std::copy_n(text.begin(), count, target);
  target[count] = '\0';
}

/// Called by the library for the logon to a share.
void give_logon(SMBCCTX* context, const char* /*server*/, const char* /*share*/, char* workgroup,
                int workgroup_size, char* user, int user_size, char* password, int password_size) {
  auto& credentials = *static_cast<Credentials*>(smbc_getOptionUserData(context));
  const LiveSettings& settings = credentials.settings();
  if (settings.user.empty())
    return;
  // Otherwise the library gives the workgroup of the workstation's smb.conf, of which the server knows
  // nobody.
  WindowsLogon logon = windows_logon(settings);
  if (const std::string& name = credentials.kerberos_name(); !name.empty())
    logon = {name, {}};
  if (!logon.domain.empty())
    put(workgroup, workgroup_size, logon.domain);
  put(user, user_size, logon.user);
  put(password, password_size, settings.password);
}

/// To the microsecond, which is what the library can set.
std::int64_t nanoseconds_of(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec / 1000 * 1000;
}

/// Drops what the library would print. A failed call reports its error.
void keep_quiet(void* /*data*/, int /*level*/, const char* /*text*/) {}

/// The library fails without a reason where a server refuses a security descriptor.
int reason_of(int error) {
  return error == 0 ? EACCES : error;
}

/// Keeps standard output closed for a scope: there the library reports, among the results, a server that
/// cannot encrypt.
class WithoutOutput {
 public:
  WithoutOutput() : kept_(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    std::fflush(stdout);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (kept_ >= 0 && nowhere >= 0)
      ::dup2(nowhere, STDOUT_FILENO);
    if (nowhere >= 0)
      ::close(nowhere);
  }
  WithoutOutput(const WithoutOutput&) = delete;
  WithoutOutput& operator=(const WithoutOutput&) = delete;
  ~WithoutOutput() {
    if (kept_ < 0)
      return;
    const int reason = errno;
    std::fflush(stdout);
    ::dup2(kept_, STDOUT_FILENO);
    ::close(kept_);
    errno = reason;
  }

 private:
  int kept_;
};

/// Keeps the variable that names the person's ticket cache for a scope: the library points it at the cache of
/// the ticket that it gets with a password.
class WithOwnTicketCache {
 public:
  WithOwnTicketCache() {
    if (const char* const value = std::getenv(kName))  // NOLINT(concurrency-mt-unsafe): the library writes it
      kept_ = value;
  }
  WithOwnTicketCache(const WithOwnTicketCache&) = delete;
  WithOwnTicketCache& operator=(const WithOwnTicketCache&) = delete;
  ~WithOwnTicketCache() {
    const int reason = errno;
    if (kept_)
      setenv(kName, kept_->c_str(), 1);  // NOLINT(concurrency-mt-unsafe): see above
    else
      unsetenv(kName);  // NOLINT(concurrency-mt-unsafe): see above
    errno = reason;
  }

 private:
  static constexpr const char* kName = "KRB5CCNAME";
  std::optional<std::string> kept_;
};

bool is_host_known(const std::string& name) {
  addrinfo* addresses = nullptr;
  const bool known = getaddrinfo(name.c_str(), nullptr, nullptr, &addresses) == 0;
  if (addresses != nullptr)
    freeaddrinfo(addresses);
  return known;
}

}  // namespace

struct SmbClient::Handle {
  explicit Handle(Credentials& credentials) : context(smbc_new_context()) {
    const LiveSettings& settings = credentials.settings();
    if (context == nullptr)
      base::raise(base::error::kPathFileAccess, "The SMB library could not be set up");
    smbc_setLogCallback(context, nullptr, keep_quiet);
    smbc_setDebug(context, 0);
    smbc_setOptionUserData(context, &credentials);
    smbc_setFunctionAuthDataWithContext(context, give_logon);
    // With a password the library gets a ticket of its own; NTLM is for servers for which there is none.
    const bool ticket = settings.user.empty();
    const bool can_get_ticket = !ticket && !credentials.kerberos_name().empty();
    smbc_setOptionUseKerberos(context, ticket || can_get_ticket ? 1 : 0);
    smbc_setOptionFallbackAfterKerberos(context, can_get_ticket ? 1 : 0);
    smbc_setOptionNoAutoAnonymousLogin(context, 1);
    smbc_setOptionFullTimeNames(context, 1);
    smbc_setTimeout(context, settings.timeout_seconds * 1000);
    if (smbc_init_context(context) == nullptr) {
      const int error = errno;
      smbc_free_context(context, 1);
      base::raise(base::error::kPathFileAccess,
                  "The SMB library could not be set up: " + std::generic_category().message(error));
    }
    require_signing();
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { smbc_free_context(context, 1); }

  SMBCCTX* context;

 private:
  /// Signed, and encrypted where the server can. The library reads the signing option only from a file. The
  /// machine's file may demand less; its other options stay.
  void require_signing() {
    constexpr std::string_view kSettings =
        "[global]\nclient signing = required\nclient smb encrypt = desired\nclient min protocol = SMB2_02\n";
    const int file = memfd_create("smb", MFD_CLOEXEC);
    const bool written =
        file >= 0 && ::write(file, kSettings.data(), kSettings.size()) == std::ssize(kSettings);
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    const bool taken = written && smbc_setConfiguration(context, path.c_str()) == 0;
    if (file >= 0)
      ::close(file);
    if (!taken) {
      smbc_free_context(context, 1);
      base::raise(base::error::kPathFileAccess, "The SMB library does not accept signed connections");
    }
  }
};

class SmbOpenFile final : public SmbFile {
 public:
  SmbOpenFile(SmbClient& client, SmbPath path, SMBCFILE* file)
      : client_(client), path_(std::move(path)), file_(file) {}
  SmbOpenFile(const SmbOpenFile&) = delete;
  SmbOpenFile& operator=(const SmbOpenFile&) = delete;
  ~SmbOpenFile() override { smbc_getFunctionClose(context())(context(), file_); }

  std::string read(std::uint64_t offset, std::size_t count) override {
    seek(offset);
    std::string bytes(count, '\0');
    std::size_t used = 0;
    while (used < count) {
      const ssize_t got =
          smbc_getFunctionRead(context())(context(), file_, bytes.data() + used, count - used);
      if (got < 0)
        client_.fail(errno, "read", path_);
      if (got == 0)
        break;
      used += static_cast<std::size_t>(got);
    }
    bytes.resize(used);
    return bytes;
  }

  void write(std::uint64_t offset, std::string_view bytes) override {
    seek(offset);
    for (std::string_view rest = bytes; !rest.empty();) {
      const ssize_t done = smbc_getFunctionWrite(context())(context(), file_, rest.data(), rest.size());
      if (done < 0)
        client_.fail(errno, "write to", path_);
      rest.remove_prefix(static_cast<std::size_t>(done));
    }
  }

  std::uint64_t size() override {
    struct stat status = {};
    if (smbc_getFunctionFstat(context())(context(), file_, &status) < 0)
      client_.fail(errno, "look at", path_);
    return static_cast<std::uint64_t>(status.st_size);
  }

 private:
  SMBCCTX* context() { return client_.context(); }
  void seek(std::uint64_t offset) {
    if (smbc_getFunctionLseek(context())(context(), file_, static_cast<off_t>(offset), SEEK_SET) < 0)
      client_.fail(errno, "find a place in", path_);
  }

  SmbClient& client_;
  SmbPath path_;
  SMBCFILE* file_;
};

SmbClient::SmbClient(std::shared_ptr<Credentials> credentials) : credentials_(std::move(credentials)) {}
SmbClient::~SmbClient() = default;

SMBCCTX* SmbClient::context() {
  if (handle_ == nullptr) {
    // Asked for now, because no exception may pass through the library.
    if (credentials_->has_user())
      credentials_->password();
    handle_ = std::make_unique<Handle>(*credentials_);
  }
  return handle_->context;
}

void SmbClient::require_answer(const std::string& server) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::seconds kMemory{15};
  constexpr int kSecondWait = 1;  // seconds
  const auto [found, is_new] = servers_.try_emplace(server);
  Server& known = found->second;
  if (is_new || (!known.silence.empty() && Clock::now() - known.asked > kMemory)) {
    const int patience = credentials_->settings().timeout_seconds;
    const int seconds = is_new ? patience : std::min(patience, kSecondWait);
    base::Trap unknown;
    unknown([&] {
      known.silence = why_no_file_server(server, seconds, [this] { return credentials_->is_stopped(); });
    });
    known.asked = Clock::now();
    if (unknown.number() == kStopped) {
      servers_.erase(found);
      base::raise(unknown.number(), unknown.description());
    }
  }
  if (!known.silence.empty())
    base::raise(base::error::kFileNotFound,
                "The network path was not found: \\\\" + server + " (" + known.silence + ")");
}

int SmbClient::run(const SmbPath& path, const std::function<bool()>& call,
                   const std::function<bool()>& done) {
  context();
  require_answer(path.server);
  const WithoutOutput quiet;
  const WithOwnTicketCache own_cache;
  errno = 0;
  if (call())
    return 0;
  const int error = errno;
  const bool lost = is_server_lost(error);
  if (lost || error == ETIMEDOUT)
    servers_.erase(path.server);
  // A server ends a session with the ticket that it began with, and the library calls that an invalid
  // argument.
  if (!lost && error != EINVAL)
    return reason_of(error);
  smbc_getFunctionPurgeCachedServers(context())(context());
  if (lost && done && done())
    return 0;
  errno = 0;
  return call() ? 0 : reason_of(errno);
}

void SmbClient::require_ticket(std::string_view action, const SmbPath& path) {
  if (credentials_->has_user())
    return;
  base::Trap trap;
  if (!trap([&] { Ticket::current(credentials_->settings().domain); }))
    base::raise(base::error::kPathFileAccess,
                "cannot " + std::string(action) + " " + path.text() + ": " + trap.description());
}

void SmbClient::fail(int error, std::string_view action, const SmbPath& path) {
  if (error == EINVAL && !is_host_known(path.server))
    base::raise(base::error::kFileNotFound, "The network path was not found: \\\\" + path.server);
  if (error == EINVAL || error == EACCES || error == EPERM)
    require_ticket(action, path);
  std::uint32_t number = file_number(error);
  if (error == ENOENT) {
    const SmbPath share{path.server, path.share, {}};
    if (!answers(share))
      base::raise(base::error::kFileNotFound, "The network name was not found: " + share.text());
    if (const auto folder = path.folder(); folder && !answers(*folder))
      number = base::error::kPathNotFound;
  }
  base::raise(number, "cannot " + std::string(action) + " " + path.text() + ": " +
                          std::generic_category().message(error));
}

bool SmbClient::answers(const SmbPath& path) {
  const std::string url = path.url();
  struct stat status = {};
  return run(path, [&] { return smbc_getFunctionStat(context())(context(), url.c_str(), &status) == 0; }) ==
         0;
}

platform::FileEntry SmbClient::status(const SmbPath& path) {
  const std::string url = path.url();
  struct stat status = {};
  const int error =
      run(path, [&] { return smbc_getFunctionStat(context())(context(), url.c_str(), &status) == 0; });
  if (error != 0)
    fail(error, "look at", path);
  platform::FileEntry entry;
  entry.directory = S_ISDIR(status.st_mode);
  entry.size = entry.directory ? 0 : static_cast<std::uint64_t>(status.st_size);
  entry.modified = nanoseconds_of(status.st_mtim);
  return entry;
}

std::vector<platform::FileEntry> SmbClient::list(const SmbPath& path) {
  const std::string url = path.url();
  SMBCFILE* folder = nullptr;
  const int error = run(path, [&] {
    folder = smbc_getFunctionOpendir(context())(context(), url.c_str());
    return folder != nullptr;
  });
  if (error != 0)
    fail(error, "list", path);
  std::vector<platform::FileEntry> entries;
  errno = 0;
  while (const libsmb_file_info* const info = smbc_getFunctionReaddirPlus(context())(context(), folder)) {
    platform::FileEntry entry;
    entry.name = info->name;
    entry.link = (info->attrs & kReparseAttribute) != 0;
    entry.directory = !entry.link && (info->attrs & kDirectoryAttribute) != 0;
    entry.size = entry.link || entry.directory ? 0 : info->size;
    entry.modified = nanoseconds_of(info->mtime_ts);
    if (entry.name != "." && entry.name != "..")
      entries.push_back(std::move(entry));
    errno = 0;
  }
  const int broken = errno;
  smbc_getFunctionClosedir(context())(context(), folder);
  if (broken != 0)
    fail(broken, "list", path);
  return entries;
}

bool SmbClient::is_empty_folder(const SmbPath& path) {
  base::Trap trap;
  bool empty = false;
  trap([&] { empty = list(path).empty(); });
  return empty;
}

void SmbClient::make_directory(const SmbPath& path) {
  const std::string url = path.url();
  const int error = run(
      path, [&] { return smbc_getFunctionMkdir(context())(context(), url.c_str(), kNewMode) == 0; },
      [&] { return is_empty_folder(path); });
  if (error == EEXIST) {
    base::raise(base::error::kPathFileAccess,
                "cannot make the folder " + path.text() + ": something of that name exists");
  }
  if (error == ENOENT)
    base::raise(base::error::kPathNotFound,
                "cannot make the folder " + path.text() + ": its parent is missing");
  if (error != 0)
    fail(error, "make the folder", path);
}

void SmbClient::remove_directory(const SmbPath& path) {
  const std::string url = path.url();
  const int error = run(path, [&] { return smbc_getFunctionRmdir(context())(context(), url.c_str()) == 0; });
  if (error == ENOTEMPTY || error == EEXIST || error == ENOTDIR)
    base::raise(base::error::kPathFileAccess,
                "cannot remove the folder " + path.text() + ": it is not a folder, or not empty");
  if (error != 0)
    fail(error, "remove the folder", path);
}

void SmbClient::remove_file(const SmbPath& path) {
  const std::string url = path.url();
  const int error = run(path, [&] { return smbc_getFunctionUnlink(context())(context(), url.c_str()) == 0; });
  if (error != 0)
    fail(error, "remove", path);
}

void SmbClient::set_modified(const SmbPath& path, std::int64_t modified) {
  const std::string url = path.url();
  timeval times[2] = {};
  for (timeval& time : times) {
    time.tv_sec = static_cast<time_t>(modified / 1'000'000'000);
    time.tv_usec = static_cast<suseconds_t>(modified % 1'000'000'000 / 1000);
  }
  const int error =
      run(path, [&] { return smbc_getFunctionUtimes(context())(context(), url.c_str(), times) == 0; });
  if (error != 0)
    fail(error, "set the time of", path);
}

void SmbClient::rename(const SmbPath& from, const SmbPath& to) {
  const std::string source = from.url();
  const std::string target = to.url();
  const int error = run(from, [&] {
    return smbc_getFunctionRename(context())(context(), source.c_str(), context(), target.c_str()) == 0;
  });
  if (error != 0)
    fail(error, "rename", from);
}

std::unique_ptr<SmbFile> SmbClient::open(const SmbPath& path, SmbOpen how) {
  int flags = O_RDONLY;
  if (how != SmbOpen::kRead) {
    flags = O_RDWR | O_CREAT;
    if (how == SmbOpen::kReplace)
      flags |= O_TRUNC;
    if (how == SmbOpen::kNew)
      flags |= O_EXCL;
  }
  const std::string url = path.url();
  SMBCFILE* file = nullptr;
  const int error = run(path, [&] {
    file = smbc_getFunctionOpen(context())(context(), url.c_str(), flags, kNewMode);
    return file != nullptr;
  });
  if (error != 0)
    fail(error, "open", path);
  return std::make_unique<SmbOpenFile>(*this, path, file);
}

std::string SmbClient::attribute(const SmbPath& path, const std::string& name) {
  const std::string url = path.url();
  std::string value;
  int error = ERANGE;
  for (std::size_t size = kFirstAttributeBuffer; error == ERANGE && size <= kLastAttributeBuffer; size *= 4) {
    value.assign(size, '\0');
    error = run(path, [&] {
      return smbc_getFunctionGetxattr(context())(context(), url.c_str(), name.c_str(), value.data(), size) >=
             0;
    });
  }
  if (error != 0)
    fail_security(error, "read the security descriptor of", path);
  value.resize(std::min(value.size(), value.find('\0')));
  return value;
}

void SmbClient::set_attribute(const SmbPath& path, const std::string& name, const std::string& value) {
  const std::string url = path.url();
  const int error = run(path, [&] {
    return smbc_getFunctionSetxattr(context())(context(), url.c_str(), name.c_str(), value.c_str(),
                                               value.size() + 1, 0) == 0;
  });
  if (error != 0)
    fail_security(error, "write the security descriptor of", path);
}

void SmbClient::fail_security(int error, std::string_view action, const SmbPath& path) {
  std::uint32_t number = 0;
  if (error == EACCES || error == EPERM) {
    require_ticket(action, path);
    number = platform::security_error::kAccessDenied;
  } else if (error == EBUSY || error == ETXTBSY)
    number = platform::security_error::kSharingViolation;
  else
    fail(error, action, path);
  base::raise(number, "cannot " + std::string(action) + " " + path.text() + ": " +
                          std::generic_category().message(error));
}

}  // namespace twk::live
