#pragma once

#include "lab/domain/lab_domain.hpp"
#include "lab/services/process_identity.hpp"
#include "platform/files.hpp"
#include "platform/security.hpp"

namespace twk::lab {

/// Accounts' identifiers, descriptors of what is on the lab's file servers, privileges of the process.
///
/// A path of the workstation has no descriptor: it raises kNotImplementedByProvider. The owner of a file may
/// be set to the program's account, or to "Administrators" by an administrator; to anyone with
/// "SeRestorePrivilege" on.
class LabSecurity final : public platform::Security {
 public:
  LabSecurity(LabDomain& domain, ProcessIdentity& identity, platform::Files& files)
      : domain_(domain), identity_(identity), files_(files) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override;
  std::string LookupAccountSid(std::string_view server, const platform::Sid& sid) override;
  std::vector<platform::Sid> account_identifiers(std::string_view account) override;
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override;
  void SetFileSecurity(std::string_view path, std::uint32_t parts,
                       const platform::SecurityDescriptor& descriptor) override;
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override;
  std::uint64_t LookupPrivilegeValue(std::string_view name) override;

 private:
  void require_settable_owner(const platform::Sid& owner);

  LabDomain& domain_;
  ProcessIdentity& identity_;
  platform::Files& files_;
};

}  // namespace twk::lab
