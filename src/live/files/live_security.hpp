#pragma once

#include <map>
#include <optional>

#include "live/domain/live_domain.hpp"
#include "live/files/smb_client.hpp"
#include "platform/security.hpp"

namespace twk::live {

/// Accounts' identifiers from the directory, descriptors from the file servers.
///
/// The server's own token decides which privileges the administrator has there, in every call, so switching
/// privileges on or off here changes nothing. A path of the workstation has no descriptor: it raises
/// kNotImplementedByProvider.
class LiveSecurity final : public platform::Security {
 public:
  LiveSecurity(LiveDomain& domain, SmbClient& client) : domain_(domain), client_(client) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override;
  std::string LookupAccountSid(std::string_view server, const platform::Sid& sid) override;
  std::vector<platform::Sid> account_identifiers(std::string_view account) override;
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override;
  /// The owner is written before the list, even when the list lets the caller read nothing. The library sorts
  /// the entries of a list: denials first, then by identifier.
  void SetFileSecurity(std::string_view path, std::uint32_t parts,
                       const platform::SecurityDescriptor& descriptor) override;
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override;
  std::uint64_t LookupPrivilegeValue(std::string_view name) override;

 private:
  void require_server(std::string_view server);
  void write_owner(const SmbPath& place, const std::optional<platform::Sid>& owner);

  LiveDomain& domain_;
  SmbClient& client_;
  std::map<std::string, bool> servers_;  ///< whether a host of that name is known, asked once
};

}  // namespace twk::live
