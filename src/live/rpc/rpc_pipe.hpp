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

/// The pipe to one interface of one server over a signed SMB connection, with the logon of the settings: made
/// when it is first needed and kept. What goes through is sealed too, but for the accounts', whose passwords
/// are encrypted with the key of the SMB session. Connecting ends by itself after 60 seconds, a bound of the
/// library; each call after the settings' time.
class RpcPipe {
 public:
  /// `server` may have two backslashes in front.
  RpcPipe(std::shared_ptr<Credentials> credentials, std::string_view server, RpcInterface interface);
  /// Over what `open` makes, in the talloc context that it is given, instead of a connection to a server.
  /// Such a pipe has no key.
  using Open = std::function<dcerpc_binding_handle*(void* memory)>;
  RpcPipe(Open open, RpcInterface interface);
  RpcPipe(RpcPipe&&) noexcept;
  RpcPipe& operator=(RpcPipe&&) = delete;
  RpcPipe(const RpcPipe&) = delete;
  RpcPipe& operator=(const RpcPipe&) = delete;
  ~RpcPipe();

  [[nodiscard]] const std::string& host() const { return host_; }
  /// Connects, unless that is done. Raises as a call does.
  void open();
  /// The next call connects anew.
  void close();

  /// Calls an operation by its number, with its arguments in NDR ([C706] chapter 14, little-endian); gives
  /// the answer's bytes. Raises kBadNetPath (53) for a server that does not answer in time, 1326 for a wrong
  /// logon, kAccessDenied (5), kRpcLost for a pipe that broke: nobody knows whether the call was made then.
  base::Bytes call(std::uint32_t operation, std::span<const std::uint8_t> arguments);
  /// Calls once more on a new pipe when the first one broke, which `repeated` tells.
  base::Bytes call_again(std::uint32_t operation, std::span<const std::uint8_t> arguments,
                         bool* repeated = nullptr);
  /// The same for an operation whose arguments the library has as a structure. The answer's parts belong to
  /// the talloc context `memory`.
  void call(std::uint32_t operation, void* arguments, void* memory);
  /// Raises kStopped when the person wants the work to end: between the parts of a long answer.
  void require_going_on() const;
  /// The key of the session, 16 bytes.
  base::Bytes session_key();

 private:
  struct Handle;

  Handle& opened();
  void connect();
  void connect_to_server();
  /// A password that was refused is not sent once more by another connection.
  [[noreturn]] void refuse(std::uint32_t number, const std::string& text);
  /// Raises for a failure of the way there, not of the operation.
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

/// A logon's user as Windows protocols take it.
struct WindowsLogon {
  std::string user;
  std::string domain;  ///< empty for "name@domain"
};
WindowsLogon windows_logon(const LiveSettings& settings);

/// Raises kBadNetPath for a server that does not take an SMB connection within that time, and for what is no
/// server's name. The library itself would look for an unknown one in every way there is, for a minute.
void require_listening(const std::string& host, int seconds);

/// While it lives: the library writes to a socket that the server may have closed, which would end the
/// program by a signal.
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

/// The number of the directory for one of the remote calls: kServerDown for a pipe that broke, else
/// 0x80070000 and the number. One that is the directory's already stays.
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
