#pragma once

#include "lab/lab_domain.hpp"
#include "platform/security.hpp"

namespace twk::lab {

/// Accounts' identifiers, descriptors of the file servers' folders, privileges of the process.
class LabSecurity final : public platform::Security {
 public:
  explicit LabSecurity(LabDomain& domain) : domain_(domain) {}

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
  LabDomain& domain_;
};

}  // namespace twk::lab
