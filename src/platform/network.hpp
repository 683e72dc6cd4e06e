#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/security_descriptor.hpp"

namespace twk::platform {

/// Numbers of the network calls, [MS-ERREF] 2.2.
namespace network_error {
inline constexpr std::uint32_t kBadNetPath = 53;    ///< no such server
inline constexpr std::uint32_t kInvalidName = 123;  ///< an invalid share name
inline constexpr std::uint32_t kUnknownDirectory =
    2116;                                               ///< NERR_UnknownDevDir: the server has no such folder
inline constexpr std::uint32_t kDuplicateShare = 2118;  ///< NERR_DuplicateShare
inline constexpr std::uint32_t kUserNotFound = 2221;    ///< NERR_UserNotFound
inline constexpr std::uint32_t kShareNotFound = 2310;   ///< NERR_NetNameNotFound
inline constexpr std::uint32_t kControllerNotFound = 2453;  ///< NERR_DCNotFound
}  // namespace network_error

/// The bit of a share's type for the shares that a server has for itself, "D$": STYPE_SPECIAL,
/// [MS-SRVS] 2.2.2.4.
inline constexpr std::uint32_t kAdministrativeShare = 0x80000000U;

/// SHARE_INFO_502, [MS-SRVS] 2.2.4.26.
struct ShareInfo502 {
  std::string shi502_netname;
  std::uint32_t shi502_type = 0;  ///< 0: a folder; `kAdministrativeShare` may be set
  std::string shi502_remark;
  std::uint32_t shi502_permissions = 0;
  std::int32_t shi502_max_uses = -1;  ///< -1 for no limit
  std::uint32_t shi502_current_uses = 0;
  std::string shi502_path;  ///< as the server sees it, "D:\Users"
  std::string shi502_passwd;
  std::optional<SecurityDescriptor> shi502_security_descriptor;  ///< none: the server's default list
};

/// A user's terminal-server settings, by the classes of WTS_CONFIG_CLASS.
enum class WtsConfigClass : std::int32_t {
  kInitialProgram = 0,
  kWorkingDirectory = 1,
  kInheritInitialProgram = 2,
  kAllowLogonTerminalServer = 3,
  kTimeoutSettingsConnections = 4,
  kTimeoutSettingsDisconnections = 5,
  kTimeoutSettingsIdle = 6,
  kDeviceClientDrives = 7,
  kDeviceClientPrinters = 8,
  kDeviceClientDefaultPrinter = 9,
  kBrokenTimeoutSettings = 10,
  kReconnectSettings = 11,
  kModemCallbackSettings = 12,
  kModemCallbackPhoneNumber = 13,
  kShadowingSettings = 14,
  kTerminalServerProfilePath = 15,
  kTerminalServerHomeDir = 16,
  kTerminalServerHomeDirDrive = 17,
  kTerminalServerRemoteHomeDir = 18
};

/// A text setting or a number setting; times are in milliseconds, switches 0 or 1.
using WtsConfigValue = std::variant<std::string, std::uint32_t>;

/// The calls of netapi32 and wtsapi32. A server's name may begin with two backslashes.
class Network {
 public:
  virtual ~Network() = default;

  /// The primary controller of a domain named by its DNS or NetBIOS name; it begins with two backslashes
  /// ("\\DC1"). An empty `server` means this machine. Raises kControllerNotFound when there is none.
  virtual std::string NetGetDCName(std::string_view server, std::string_view domain) = 0;

  /// Shares a folder of the server. Raises kBadNetPath, kDuplicateShare, kUnknownDirectory, kInvalidName,
  /// kAccessDenied (5).
  virtual void NetShareAdd(std::string_view server, const ShareInfo502& share) = 0;
  /// Looks, without writing, whether the server would let this account make shares and keep their access
  /// lists. Raises kAccessDenied (5) with the reason and the remedy when it would not, kBadNetPath. A world
  /// whose servers cannot be asked beforehand passes.
  virtual void require_share_rights(std::string_view /*server*/) {}
  /// Raises kBadNetPath, kShareNotFound.
  virtual ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) = 0;
  virtual std::vector<ShareInfo502> NetShareEnum(std::string_view server) = 0;
  /// Raises kBadNetPath, kShareNotFound, kAccessDenied (5).
  virtual void NetShareDel(std::string_view server, std::string_view name) = 0;

  /// Sets one terminal-server setting of a user on the domain controller `server`. Raises kUserNotFound,
  /// kBadNetPath, and 87 for a value of the wrong kind.
  virtual void WTSSetUserConfig(std::string_view server, std::string_view user, WtsConfigClass setting,
                                const WtsConfigValue& value) = 0;
  /// The setting, or the default for a user who has none.
  virtual WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                            WtsConfigClass setting) = 0;
};

}  // namespace twk::platform
