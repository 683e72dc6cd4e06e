#pragma once

#include <string>

#include "lifecycle/rehearsal/rehearsed_directory.hpp"
#include "platform/platform.hpp"

namespace twk::lifecycle {

/// Access lists that are reported instead of written. An account that would have been made has an invented
/// identifier, a folder that would have been made no list yet.
class RehearsedSecurity final : public platform::Security {
 public:
  RehearsedSecurity(platform::Security& real, platform::Files& files, RehearsedDirectory& directory,
                    const RehearsedDirectory::Tell& tell)
      : real_(real), files_(files), directory_(directory), tell_(tell) {}

  platform::AccountSid LookupAccountName(std::string_view server, std::string_view account) override;
  std::string LookupAccountSid(std::string_view server, const platform::Sid& sid) override {
    return real_.LookupAccountSid(server, sid);
  }
  std::vector<platform::Sid> account_identifiers(std::string_view account) override;
  platform::SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                               std::size_t buffer) override;
  void SetFileSecurity(std::string_view path, std::uint32_t parts,
                       const platform::SecurityDescriptor& descriptor) override;
  std::unique_ptr<platform::ProcessToken> OpenProcessToken() override { return real_.OpenProcessToken(); }
  std::uint64_t LookupPrivilegeValue(std::string_view name) override {
    return real_.LookupPrivilegeValue(name);
  }

 private:
  /// The name of an account that would have been made, without its domain; empty for any other.
  std::string made_account(std::string_view account);
  [[nodiscard]] bool is_domain(const std::string& name);

  platform::Security& real_;
  platform::Files& files_;
  RehearsedDirectory& directory_;
  const RehearsedDirectory::Tell& tell_;
  std::string known_domain_;
  std::string told_;  ///< last report; each row of a table rewrites the list of the same folder
};

}  // namespace twk::lifecycle
