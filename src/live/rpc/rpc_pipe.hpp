#pragma once

#include <csignal>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/bytes.hpp"
#include "base/errors.hpp"
#include "live/logon/credentials.hpp"

struct dcerpc_binding_handle;

namespace twk::live {

/// The interfaces that are called.
enum class RpcInterface {
  kServerService,  ///< shares, [MS-SRVS]
  kAccounts,       ///< accounts of a domain, [MS-SAMR]
  kLogon           ///< controllers of a domain, [MS-NRPC]
};

/// The pipe to one interface of one server over a signed SMB connection, with the logon of the settings:
/// opened on first use and kept. The data is sealed too, except on the accounts' pipe, where passwords are
/// encrypted with the key of the SMB session. Connecting times out after 60 seconds, a limit of the library;
/// each call after the time in the settings.
class RpcPipe {
 public:
  /// `server` may begin with two backslashes.
  RpcPipe(std::shared_ptr<Credentials> credentials, std::string_view server, RpcInterface interface);
  /// Over what `open` makes, in the talloc context passed to it, instead of a connection to a server. Such
  /// a pipe has no key.
  using Open = std::function<dcerpc_binding_handle*(void* memory)>;
  RpcPipe(Open open, RpcInterface interface);
  RpcPipe(RpcPipe&&) noexcept;
  RpcPipe& operator=(RpcPipe&&) = delete;
  RpcPipe(const RpcPipe&) = delete;
  RpcPipe& operator=(const RpcPipe&) = delete;
  ~RpcPipe();

  [[nodiscard]] const std::string& host() const { return host_; }
  /// Connects, unless connected already. Raises as a call does.
  void open();
  /// The next call connects again.
  void close();

  /// Calls an operation by its number, with its arguments in NDR ([C706] chapter 14, little-endian); returns
  /// the answer's bytes. Raises kBadNetPath (53) for a server that does not answer in time, 1326 for a wrong
  /// logon, kAccessDenied (5), kRpcLost for a pipe that broke: whether the call was made is then unknown.
  base::Bytes call(std::uint32_t operation, std::span<const std::uint8_t> arguments);
  /// Calls once more on a new pipe when the first one broke; `repeated` says so.
  base::Bytes call_again(std::uint32_t operation, std::span<const std::uint8_t> arguments,
                         bool* repeated = nullptr);
  /// The same for an operation whose arguments the library has as a structure. The answer's parts belong to
  /// the talloc context `memory`.
  void call(std::uint32_t operation, void* arguments, void* memory);
  /// Raises kStopped when the person asks to stop: between the parts of a long answer.
  void require_going_on() const;
  /// The key of the session, 16 bytes.
  base::Bytes session_key();

 private:
  struct Handle;

  Handle& opened();
  void connect();
  void connect_to_server();
  /// A refused password is not sent again over another connection.
  [[noreturn]] void refuse(std::uint32_t number, const std::string& text);
  /// Raises for a failure of the connection, not of the operation.
  void check(std::uint32_t status);

  std::shared_ptr<Credentials> credentials_;
  Open open_;  ///< none: a server is connected to
  std::string host_;
  RpcInterface interface_;
  std::unique_ptr<Handle> handle_;
};

/// ERROR_NETNAME_DELETED, [MS-ERREF] 2.2: the pipe broke during a call.
inline constexpr std::uint32_t kRpcLost = 64;
/// ERROR_LOGON_FAILURE.
inline constexpr std::uint32_t kRpcLogonFailure = 1326;

/// Raises kBadNetPath for a server that does not accept an SMB connection or does not answer on it within
/// that time, and for an invalid server name; kStopped when the person asks to stop. The library itself would
/// search for an unknown one in every possible way, and wait for a silent one, for a minute in which nothing
/// stops it.
void require_file_server(const std::string& host, int seconds, const std::function<bool()>& is_stopped);

/// Holds off SIGPIPE for a scope: the library writes to a socket that the server may have closed, which would
/// otherwise end the program.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal();
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;
  ~WithoutPipeSignal();

 private:
  struct sigaction before_ {};
};

/// The number of [MS-ERREF] 2.2 for one of 2.3.
std::uint32_t win32_of_status(std::uint32_t status);

/// The number of the directory for one of the remote calls: kServerDown for a pipe that broke, otherwise
/// 0x80070000 and the number. A directory's number stays.
std::uint32_t directory_number(std::uint32_t number);

/// Runs `call`, and raises the directory's number for what it raises.
template <typename Call>
auto as_directory_call(Call&& call) {
  try {
    return std::forward<Call>(call)();
  } catch (const base::RuntimeError& failure) {
    base::raise(directory_number(failure.number()), failure.description());
  }
}

}  // namespace twk::live
