#pragma once

#include <csignal>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.hpp"
#include "live/live_settings.hpp"

namespace twk::live {

/// The interfaces that are called.
enum class RpcInterface {
  kServerService,  ///< shares, [MS-SRVS]
  kAccounts        ///< accounts of a domain, [MS-SAMR]
};

/// The pipe to one interface of one server over SMB, sealed, with the logon of the settings: made when it is
/// first needed and kept. Connecting ends by itself after 60 seconds, a bound of the library; each call after
/// the settings' time.
class RpcPipe {
 public:
  /// `server` may have two backslashes in front.
  RpcPipe(LiveSettings settings, std::string_view server, RpcInterface interface);
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
  /// The same for an operation whose arguments the library has as a structure. The answer's parts belong to
  /// the talloc context `memory`.
  void call(std::uint32_t operation, void* arguments, void* memory);

 private:
  struct Handle;

  Handle& opened();
  void connect();
  /// Raises for a failure of the way there, not of the operation.
  void check(std::uint32_t status);

  LiveSettings settings_;
  std::string host_;
  RpcInterface interface_;
  std::unique_ptr<Handle> handle_;
};

/// ERROR_NETNAME_DELETED, [MS-ERREF] 2.2: the pipe broke during a call.
inline constexpr std::uint32_t kRpcLost = 64;
/// ERROR_LOGON_FAILURE.
inline constexpr std::uint32_t kRpcLogonFailure = 1326;

/// A logon with a password as Windows protocols take it.
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

/// The number of the directory for one of the remote calls: kServerDown for a pipe that broke, else 0x80070000
/// and the number. One that is the directory's already stays.
std::uint32_t directory_number(std::uint32_t number);

/// "FS1" of "\\FS1".
std::string_view without_backslashes(std::string_view server);

}  // namespace twk::live
