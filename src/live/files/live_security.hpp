#pragma once

#include <map>
#include <optional>

#include "live/domain/live_domain.hpp"
#include "live/files/smb_client.hpp"
#include "platform/security.hpp"

namespace twk::live {

/// Accounts' identifiers as the directory tells them, descriptors as the file servers give them.
///
/// The rights that a server's own token gives the administrator there are in force in every call, so
/// privileges can be switched on and off and that changes nothing. A path of the workstation has no
/// descriptor: it raises kNotImplementedByProvider.
class LiveSecurity final : public platform::Security {
 public:
  LiveSecurity(LiveDomain& domain, SmbClient& client) : domain_(domain), client_(client) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override;
  std::string LookupAccountSid(std::string_view server, const platform::Sid& sid) override;
  std::vector<platform::Sid> account_identifiers(std::string_view account) override;
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override;
  /// The owner is written also where the list lets the caller read nothing, and before the list is. The
  /// library puts the entries of a list in an order of its own: those that deny first, and by identifier.
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
